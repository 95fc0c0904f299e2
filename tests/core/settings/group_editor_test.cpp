#include "core/settings/group_editor.h"

#include "core/database/defaults.h"
#include "core/points/points.h"
#include "core/shell/workspace.h"
#include "tests/support/scripted_prompter.h"
#include "tests/support/temp_dir.h"

#include <functional>
#include <gtest/gtest.h>

namespace rk4 {
namespace {

using Texts = std::vector<std::string>;
const char kLost[] = "All changes made to this Group will be lost.";

class GroupEditorTest : public ::testing::Test {
  protected:
    GroupEditorTest() { DefaultValues(space.image); }

    GroupControls& open(int group)
    {
        prompter.clear();
        editor = std::make_unique<GroupEditor>(space, group);
        editor->SetupWindow();
        return editor->controls;
    }
    GroupCheck ok() { return editor->CanClose(prompter, Leaving::Exit); }
    void discard() { editor->CanClose(prompter.expect(kLost, Answer::No), Leaving::Other); }
    HardwarePort& output(int number) { return space.image.hardware.port[kInputCount + number - 1]; }
    PointRecord& pointOn(int slot, bool isOutput, int number)
    {
        PointRecord& point = space.image.alm[slot];
        point.type = isOutput ? kPointOnOffOutput : kPointDigital;
        point.isOutput = isOutput ? 1 : 0;
        point.port = static_cast<std::uint16_t>(number - 1);
        point.groupMask = 0x04;
        return point;
    }

    test::TempDir dir;
    Workspace space{dir.path()};
    test::ScriptedPrompter prompter;
    std::unique_ptr<GroupEditor> editor;
};

TEST_F(GroupEditorTest, RefusalsWriteNothingAndNameTheirField)
{
    space.image.gen.ringOut = 5;
    space.image.gen.carrierDetectOut = 4;
    space.image.group[0].alarmOut = 3; // group 1's Alarm Out may be shared
    struct Case {
        std::function<void(GroupControls&)> set;
        const char* refusal; // nullptr: accepted
        GroupField focus;
    };
    const Case cases[] = {
        {[](GroupControls& c) { c.shortCycles = 9, c.shortTimer = 255, c.longTimer = 255, c.alarmOut = 3; }, nullptr,
         GroupField::None},
        {[](GroupControls& c) { c.shortCycles = 10; }, "Short Cycles is too large, maximum is 9.",
         GroupField::ShortCycles},
        {[](GroupControls& c) { c.shortTimer = 256; }, "Short Timer is too large, maximum is 255.",
         GroupField::ShortTimer},
        {[](GroupControls& c) { c.longTimer = 256; }, "Long Timer is too large, maximum is 255.",
         GroupField::LongTimer},
        {[](GroupControls& c) { c.ackCode = "12345678"; }, "Ack code has too many digits - maximum is 7.",
         GroupField::AckCode},
        {[](GroupControls& c) { c.interrogateCode = "12345678"; },
         "Interrogate code has too many digits - maximum is 7.", GroupField::InterrogateCode},
        {[](GroupControls& c) { c.interrogateCode = "1 2"; },
         "Invalid digit found in the Interrogate code, use 0-9, *, #, A, B, C and D only.",
         GroupField::InterrogateCode},
        {[](GroupControls& c) { c.alarmOut = c.ackOut = 2; },
         "Output 2 is being used for Alarm and Acknowledge - both are not allowed.", GroupField::AckOut},
        {[](GroupControls& c) { c.newAlarmOut = c.ackOut = 7; },
         "Output 7 is being used for New Alarm and Acknowledge - both are not allowed.", GroupField::AckOut},
        // Every Ring Output conflict is reported before a Carrier Detect one.
        {[](GroupControls& c) { c.alarmOut = 4, c.ackOut = 5; },
         "Output 5 is being used for Ack Out and for Ring Output (General) - both are not allowed.",
         GroupField::AckOut},
        {[](GroupControls& c) { c.newAlarmOut = 4; },
         "Output 4 is being used for New Alarm Out and for Carrier Detect Output (General) - both are not allowed.",
         GroupField::NewAlarmOut},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.refusal ? test.refusal : "accepted");
        const Database before = space.image;
        test.set(open(2));
        const GroupCheck result = ok();
        EXPECT_EQ(result.focus, test.focus);
        if (!test.refusal) {
            EXPECT_TRUE(result.accepted);
            continue;
        }
        EXPECT_EQ(prompter.texts(), Texts{test.refusal});
        EXPECT_EQ(prompter.messages().at(0).title, "Error");
        EXPECT_EQ(space.image, before);
        discard();
    }
    const GroupRecord& group = space.image.group[1];
    EXPECT_EQ(std::vector<int>({group.shortCycles, group.shortTimer, group.longTimer, group.alarmOut}),
              std::vector<int>({9, 255, 255, 3}));
}

TEST_F(GroupEditorTest, OutputPortsTakeTheTypeOfTheirFunction)
{
    output(1) = {1, 7, 0x02, 3, 9, 5}; // timed
    output(2) = {0, 7, 0x02, 3, 9, 5}; // on/off
    output(3) = {0, 7, 0x02, 3, 9, 5}; // on/off already: left alone
    GroupControls& c = open(4);
    c.alarmOut = 1, c.ackOut = 2, c.newAlarmOut = 3;
    EXPECT_TRUE(ok().accepted);
    EXPECT_EQ(prompter.texts(),
              (Texts{"Output 1 will be changed from a timed type to an on/off type for the Alarm Present Output.",
                     "Output 2 will be changed from an on/off type to a timed type for the Acknowledge Output."}));
    EXPECT_EQ(output(1), (HardwarePort{0, 2, 0, 0, 0, 0}));
    EXPECT_EQ(output(2), (HardwarePort{1, 2, 0, 0, 0, 400}));
    EXPECT_EQ(output(3), (HardwarePort{0, 7, 0x02, 3, 9, 5}));
}

TEST_F(GroupEditorTest, AckInDebounceNotice)
{
    struct Case {
        std::uint16_t debounce;
        std::uint8_t scaleFlags;
        Texts notice;
    };
    const Case cases[] = {
        {40, 0, {}},
        // 1.025 s, shown one millisecond low as every seconds field shows it.
        {41, 0, {"Input 2 has a debounce of 1.024 seconds - change it in Hardware if incorrect."}},
        {80, 0, {"Input 2 has a debounce of 2.000 seconds - change it in Hardware if incorrect."}},
        {1, 0x01, {"Input 2 has a debounce of 1 minute - change it in Hardware if incorrect."}},
        {2, 0x01, {"Input 2 has a debounce of 2 minutes - change it in Hardware if incorrect."}},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.debounce);
        space.image.group[0].ackIn = 0;
        space.image.hardware.port[1].debounce = test.debounce;
        space.image.hardware.port[1].scaleFlags = test.scaleFlags;
        open(1).ackIn = 2;
        EXPECT_TRUE(ok().accepted);
        EXPECT_EQ(prompter.texts(), test.notice);
    }
    open(1).name = "North"; // an Ack In kept is not reported again
    EXPECT_TRUE(ok().accepted);
    EXPECT_EQ(prompter.texts(), Texts{});
}

TEST_F(GroupEditorTest, PortsAreTakenFromAlarmPointsOnlyOnYes)
{
    pointOn(4, true, 6);
    pointOn(5, false, 3);
    const char kOutputQuestion[] = "Output 6 is presently being used as a controlled output in Points.  Changing it "
                                   "to the Acknowledge Out function will remove it from Points - Proceed?";
    const char kInputQuestion[] = "Input 3 is presently being used as an alarm input in Points.  Changing it to the "
                                  "Acknowledge Input function will remove it from Points - Proceed?";
    const Database before = space.image;
    GroupControls& c = open(2);
    c.ackOut = 6, c.ackIn = 3;
    prompter.expect(kOutputQuestion, Answer::Yes).expect(kInputQuestion, Answer::No);
    EXPECT_EQ(ok().focus, GroupField::AckIn);
    EXPECT_EQ(space.image, before);

    prompter.expect(kOutputQuestion, Answer::Yes).expect(kInputQuestion, Answer::Yes);
    EXPECT_TRUE(ok().accepted);
    EXPECT_EQ(space.image.alm[4].type, kPointUnused);
    EXPECT_EQ(space.image.alm[5].type, kPointUnused);
}

TEST_F(GroupEditorTest, ReleasedPortsAndThePointsLeftOnThem)
{
    GroupRecord& first = space.image.group[0];
    first.alarmOut = 6, first.newAlarmOut = 7, first.ackOut = 8, first.ackIn = 2;
    output(8).typeFlags = 1;
    space.image.group[1].alarmOut = 6;
    space.image.group[2].ackIn = 2;
    PointRecord& ackPoint = pointOn(9, false, 2);
    ackPoint.groupMask = 0, ackPoint.outFunction = kUseAckIn, ackPoint.outGroupMask = 0x05;

    GroupControls& c = open(1);
    c.alarmOut = 0, c.newAlarmOut = 8, c.ackOut = 0, c.ackIn = 0; // output 8 stays in use
    EXPECT_TRUE(ok().accepted);
    EXPECT_EQ(prompter.texts(), (Texts{"Output 8 will be changed from a timed type to an on/off type for the New "
                                       "Alarm Output.",
                                       "Output 7 is no longer used for New Alarm Out by any group - it is now "
                                       "available as a general purpose output."}));
    EXPECT_EQ(ackPoint.outGroupMask, 0x04);
    EXPECT_EQ(ackPoint.outFunction, kUseAckIn);

    open(2).alarmOut = 0;
    EXPECT_TRUE(ok().accepted);
    open(3).ackIn = 0;
    EXPECT_TRUE(ok().accepted);
    EXPECT_EQ(prompter.texts(), Texts{"Input 2 is no longer used for Ack In by any group - it is now available as an "
                                      "alarm input."});
    EXPECT_EQ(ackPoint.outFunction, kUseNone);
    EXPECT_EQ(ackPoint.type, kPointDigital) << "the point stays, as an alarm input again";
}

TEST_F(GroupEditorTest, LeavingWithoutOkAsksAndGivesTheCommandsBack)
{
    open(3).shortTimer = 300;
    EXPECT_FALSE(space.navigation.groupOn(2));
    EXPECT_FALSE(space.navigation.isOn(NavFlag::Points));
    prompter.expect(kLost, Answer::Cancel);
    EXPECT_FALSE(editor->CanClose(prompter, Leaving::Other).accepted);
    prompter.expect(kLost, Answer::Yes); // saving goes through the checks of OK
    EXPECT_EQ(editor->CanClose(prompter, Leaving::Other).focus, GroupField::ShortTimer);
    EXPECT_TRUE(editor->isOpen());
    discard();
    EXPECT_FALSE(space.DatabaseChanged);
    EXPECT_TRUE(space.navigation.groupOn(2));
    EXPECT_TRUE(space.navigation.fileon());
}

} // namespace
} // namespace rk4
