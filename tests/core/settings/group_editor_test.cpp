#include "core/settings/group_editor.h"

#include "core/database/defaults.h"
#include "core/database/dtmf.h"
#include "core/points/points.h"
#include "core/shell/workspace.h"
#include "tests/support/scripted_prompter.h"
#include "tests/support/temp_dir.h"

#include <functional>
#include <gtest/gtest.h>

namespace rk4 {
namespace {

using test::ScriptedPrompter;

class GroupEditorTest : public ::testing::Test {
  protected:
    GroupEditorTest() { DefaultValues(space.image); }

    GroupEditor& open(int group)
    {
        editor = std::make_unique<GroupEditor>(space, group);
        editor->SetupWindow();
        return *editor;
    }
    GroupCheck ok() { return editor->CanClose(prompter, Leaving::Exit); }
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
    std::vector<std::string> notices() const
    {
        std::vector<std::string> texts;
        for (const Message& message : prompter.messages())
            if (message.title == "Warning" && message.buttons == Buttons::Ok)
                texts.push_back(message.text);
        return texts;
    }

    test::TempDir dir;
    Workspace space{dir.path()};
    ScriptedPrompter prompter;
    std::unique_ptr<GroupEditor> editor;
};

TEST_F(GroupEditorTest, LimitsOfCodesCyclesAndTimers)
{
    struct Case {
        const char* what;
        std::function<void(GroupControls&)> set;
        const char* refusal; // nullptr: accepted
        GroupField focus;
    };
    const Case cases[] = {
        {"cycles 9", [](GroupControls& c) { c.shortCycles = 9; }, nullptr, GroupField::None},
        {"cycles 10", [](GroupControls& c) { c.shortCycles = 10; }, "Short Cycles is too large, maximum is 9.",
         GroupField::ShortCycles},
        {"short 255", [](GroupControls& c) { c.shortTimer = 255; }, nullptr, GroupField::None},
        {"short 256", [](GroupControls& c) { c.shortTimer = 256; }, "Short Timer is too large, maximum is 255.",
         GroupField::ShortTimer},
        {"long 255", [](GroupControls& c) { c.longTimer = 255; }, nullptr, GroupField::None},
        {"long 256", [](GroupControls& c) { c.longTimer = 256; }, "Long Timer is too large, maximum is 255.",
         GroupField::LongTimer},
        {"ack 7 digits", [](GroupControls& c) { c.ackCode = "1234567"; }, nullptr, GroupField::None},
        {"ack 8 digits", [](GroupControls& c) { c.ackCode = "12345678"; },
         "Ack code has too many digits - maximum is 7.", GroupField::AckCode},
        {"ack letter", [](GroupControls& c) { c.ackCode = "12E"; },
         "Invalid digit found in the Ack code, use 0-9, *, #, A, B, C and D only.", GroupField::AckCode},
        {"interrogate 8 digits", [](GroupControls& c) { c.interrogateCode = "*#*#*#*#"; },
         "Interrogate code has too many digits - maximum is 7.", GroupField::InterrogateCode},
        {"interrogate blank", [](GroupControls& c) { c.interrogateCode = "1 2"; },
         "Invalid digit found in the Interrogate code, use 0-9, *, #, A, B, C and D only.",
         GroupField::InterrogateCode},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.what);
        const Database before = space.image;
        prompter.clear();
        open(3);
        test.set(editor->controls);
        const GroupCheck result = ok();
        EXPECT_EQ(result.accepted, test.refusal == nullptr);
        EXPECT_EQ(result.focus, test.focus);
        if (test.refusal) {
            EXPECT_EQ(prompter.texts(), std::vector<std::string>{test.refusal});
            EXPECT_EQ(prompter.messages().at(0).title, "Error");
            EXPECT_EQ(space.image, before);
            EXPECT_TRUE(editor->isOpen());
            editor->CanClose(prompter.expect("All changes made to this Group will be lost.", Answer::No),
                             Leaving::Other);
        } else {
            EXPECT_TRUE(prompter.texts().empty());
            EXPECT_FALSE(editor->isOpen());
        }
    }
    const GroupRecord& group = space.image.group[2];
    EXPECT_EQ(group.shortCycles, 9);
    EXPECT_EQ(group.shortTimer, 255);
    EXPECT_EQ(group.longTimer, 255);
    EXPECT_EQ(dtmfCodeText(group.ackCode), "1234567");
}

TEST_F(GroupEditorTest, OutputConflictsWithinTheGroupAndWithTheGeneralOutputs)
{
    space.image.gen.ringOut = 5;
    space.image.gen.carrierDetectOut = 4;
    struct Case {
        int alarm, newAlarm, ack;
        const char* refusal;
        GroupField focus;
    };
    const Case cases[] = {
        {2, 2, 0, "Output 2 is being used for Alarm and New Alarm - both are not allowed.", GroupField::NewAlarmOut},
        {2, 0, 2, "Output 2 is being used for Alarm and Acknowledge - both are not allowed.", GroupField::AckOut},
        {0, 3, 3, "Output 3 is being used for New Alarm and Acknowledge - both are not allowed.", GroupField::AckOut},
        {0, 5, 0, "Output 5 is being used for New Alarm Out and for Ring Output (General) - both are not allowed.",
         GroupField::NewAlarmOut},
        // Every Ring Output conflict is reported before a Carrier Detect one.
        {4, 0, 5, "Output 5 is being used for Ack Out and for Ring Output (General) - both are not allowed.",
         GroupField::AckOut},
        {4, 0, 0,
         "Output 4 is being used for Alarm Out and for Carrier Detect Output (General) - both are not allowed.",
         GroupField::AlarmOut},
    };
    const Database before = space.image;
    for (const Case& test : cases) {
        SCOPED_TRACE(test.refusal);
        prompter.clear();
        open(1);
        editor->controls.alarmOut = test.alarm;
        editor->controls.newAlarmOut = test.newAlarm;
        editor->controls.ackOut = test.ack;
        const GroupCheck result = ok();
        EXPECT_FALSE(result.accepted);
        EXPECT_EQ(result.focus, test.focus);
        EXPECT_EQ(prompter.texts(), std::vector<std::string>{test.refusal});
        EXPECT_EQ(space.image, before);
        editor->CanClose(prompter.expect("All changes made to this Group will be lost.", Answer::No), Leaving::Other);
    }
}

TEST_F(GroupEditorTest, OtherGroupsMayShareAnAlarmOut)
{
    space.image.group[0].alarmOut = 3;
    open(2).controls.alarmOut = 3;
    EXPECT_TRUE(ok().accepted);
    EXPECT_EQ(space.image.group[1].alarmOut, 3);
    EXPECT_EQ(space.image.group[0].alarmOut, 3);
    EXPECT_TRUE(space.DatabaseChanged);
}

TEST_F(GroupEditorTest, OutputPortsTakeTheTypeOfTheirFunction)
{
    output(1) = {1, 7, 0x02, 3, 9, 5}; // timed
    output(2) = {0, 7, 0x02, 3, 9, 5}; // on/off
    output(3) = {0, 7, 0x02, 3, 9, 5}; // on/off already: left alone
    GroupControls& c = open(4).controls;
    c.alarmOut = 1;
    c.ackOut = 2;
    c.newAlarmOut = 3;
    EXPECT_TRUE(ok().accepted);
    EXPECT_EQ(notices(),
              (std::vector<std::string>{
                  "Output 1 will be changed from a timed type to an on/off type for the Alarm Present Output.",
                  "Output 2 will be changed from an on/off type to a timed type for the Acknowledge Output.",
              }));
    EXPECT_EQ(output(1), (HardwarePort{0, 2, 0, 0, 0, 0}));
    EXPECT_EQ(output(2), (HardwarePort{1, 2, 0, 0, 0, 400}));
    EXPECT_EQ(output(3), (HardwarePort{0, 7, 0x02, 3, 9, 5}));
}

TEST_F(GroupEditorTest, AckInDebounceNotice)
{
    struct Case {
        std::uint16_t debounce;
        std::uint8_t scaleFlags;
        const char* notice; // nullptr: none
    };
    const Case cases[] = {
        {40, 0, nullptr},
        // 1.025 s, shown one millisecond low as every seconds field shows it.
        {41, 0, "Input 2 has a debounce of 1.024 seconds - change it in Hardware if incorrect."},
        {80, 0, "Input 2 has a debounce of 2.000 seconds - change it in Hardware if incorrect."},
        {1, 0x01, "Input 2 has a debounce of 1 minute - change it in Hardware if incorrect."},
        {2, 0x01, "Input 2 has a debounce of 2 minutes - change it in Hardware if incorrect."},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.debounce);
        space.image.group[0].ackIn = 0;
        space.image.hardware.port[1].debounce = test.debounce;
        space.image.hardware.port[1].scaleFlags = test.scaleFlags;
        prompter.clear();
        open(1).controls.ackIn = 2;
        EXPECT_TRUE(ok().accepted);
        EXPECT_EQ(notices(), test.notice ? std::vector<std::string>{test.notice} : std::vector<std::string>{});
        EXPECT_EQ(space.image.group[0].ackIn, 2);
    }
    // An unchanged Ack In is not reported again.
    prompter.clear();
    open(1).controls.name = "North";
    EXPECT_TRUE(ok().accepted);
    EXPECT_TRUE(prompter.texts().empty());
}

TEST_F(GroupEditorTest, PortsTakenFromPointsOnlyOnYes)
{
    pointOn(4, true, 6);
    pointOn(5, false, 3);
    const char kOutputQuestion[] = "Output 6 is presently being used as a controlled output in Points.  Changing it "
                                   "to the Acknowledge Out function will remove it from Points - Proceed?";
    const char kInputQuestion[] = "Input 3 is presently being used as an alarm input in Points.  Changing it to the "
                                  "Acknowledge Input function will remove it from Points - Proceed?";
    const Database before = space.image;
    GroupControls& c = open(2).controls;
    c.ackOut = 6;
    c.ackIn = 3;

    prompter.expect(kOutputQuestion, Answer::No);
    EXPECT_EQ(ok().focus, GroupField::AckOut);
    prompter.expect(kOutputQuestion, Answer::Yes).expect(kInputQuestion, Answer::No);
    EXPECT_EQ(ok().focus, GroupField::AckIn);
    EXPECT_EQ(space.image, before);
    EXPECT_TRUE(editor->isOpen());

    prompter.expect(kOutputQuestion, Answer::Yes).expect(kInputQuestion, Answer::Yes);
    EXPECT_TRUE(ok().accepted);
    EXPECT_TRUE(prompter.finished());
    for (int slot : {4, 5}) {
        EXPECT_EQ(space.image.alm[slot].type, kPointUnused);
        EXPECT_EQ(space.image.alm[slot].inactive, 1);
    }
}

TEST_F(GroupEditorTest, AnInputThatAlreadyAcknowledgesAGroupKeepsItsPoint)
{
    space.image.group[0].ackIn = 5;
    PointRecord& point = pointOn(7, false, 5);
    point.outFunction = kUseAckIn;
    point.outGroupMask = 0x01;
    open(3).controls.ackIn = 5;
    EXPECT_TRUE(ok().accepted); // no question: the point is already an acknowledge point
    EXPECT_EQ(point.type, kPointDigital);
    EXPECT_EQ(point.outFunction, kUseAckIn);
    EXPECT_EQ(point.outGroupMask, 0x05);
    EXPECT_EQ(point.groupMask, 0);

    // Group 3 gives it up: the point keeps group 1 only.
    open(3).controls.ackIn = 0;
    EXPECT_TRUE(ok().accepted);
    EXPECT_EQ(point.outGroupMask, 0x01);
    EXPECT_EQ(point.outFunction, kUseAckIn);
    EXPECT_TRUE(notices().empty());
}

TEST_F(GroupEditorTest, ReleaseNoticesOnlyForPortsNoGroupUses)
{
    GroupRecord& first = space.image.group[0];
    first.alarmOut = 6;
    first.newAlarmOut = 7;
    first.ackOut = 8;
    first.ackIn = 2;
    output(8).typeFlags = 1;
    space.image.group[1].alarmOut = 6;

    GroupControls& c = open(1).controls;
    c.alarmOut = 0;
    c.newAlarmOut = 8; // Ack Out becomes New Alarm Out: output 8 stays in use
    c.ackOut = 0;
    c.ackIn = 0;
    EXPECT_TRUE(ok().accepted);
    EXPECT_EQ(notices(), (std::vector<std::string>{
                             "Output 8 will be changed from a timed type to an on/off type for the New Alarm Output.",
                             "Input 2 is no longer used for Ack In by any group - it is now available as an alarm "
                             "input.",
                             "Output 7 is no longer used for New Alarm Out by any group - it is now available as a "
                             "general purpose output.",
                         }));

    prompter.clear();
    open(2).controls.alarmOut = 0;
    EXPECT_TRUE(ok().accepted);
    EXPECT_EQ(notices(), std::vector<std::string>{"Output 6 is no longer used for Alarm Out by any group - it is now "
                                                  "available as a general purpose output."});
}

TEST_F(GroupEditorTest, CodesAndNameAreStoredAsTheUnitHoldsThem)
{
    GroupControls& c = open(6).controls;
    c.name = "Pumps";
    c.ackCode = "10*#A";
    c.shiftDir = {5, 0, 1, 2};
    EXPECT_TRUE(ok().accepted);
    const GroupRecord& group = space.image.group[5];
    EXPECT_EQ(nameText(group.name), "Pumps           ");
    EXPECT_EQ(std::string(group.ackCode.begin(), group.ackCode.begin() + 6), std::string("1:;<=\0", 6));
    EXPECT_EQ(group.shiftDir, (std::array<std::uint8_t, 4>{5, 0, 1, 2}));
    EXPECT_EQ(open(6).controls.ackCode, "10*#A");
    EXPECT_EQ(editor->controls.name, "Pumps");
}

TEST_F(GroupEditorTest, LeavingWithoutOkAsksAndGivesTheCommandsBack)
{
    open(3);
    EXPECT_FALSE(space.navigation.groupOn(2));
    EXPECT_FALSE(space.navigation.isOn(NavFlag::Points));
    EXPECT_FALSE(space.navigation.fileon());
    EXPECT_TRUE(space.navigation.groupOn(0));

    // No changes: no question.
    EXPECT_TRUE(editor->CanClose(prompter, Leaving::Other).accepted);
    EXPECT_TRUE(space.navigation.groupOn(2));
    EXPECT_TRUE(space.navigation.fileon());

    const Database before = space.image;
    open(3).controls.shortTimer = 300;
    prompter.expect("All changes made to this Group will be lost.", Answer::Cancel);
    EXPECT_FALSE(editor->CanClose(prompter, Leaving::Other).accepted);
    // Saving goes through the checks of OK.
    prompter.expect("All changes made to this Group will be lost.", Answer::Yes);
    EXPECT_EQ(editor->CanClose(prompter, Leaving::Other).focus, GroupField::ShortTimer);
    EXPECT_TRUE(editor->isOpen());
    editor->controls.shortTimer = 30;
    prompter.expect("All changes made to this Group will be lost.", Answer::No);
    EXPECT_TRUE(editor->CanClose(prompter, Leaving::Other).accepted);
    EXPECT_EQ(space.image, before);
    EXPECT_FALSE(space.DatabaseChanged);
    EXPECT_TRUE(space.navigation.groupOn(2));
}

} // namespace
} // namespace rk4
