#include "core/points/points_editor.h"

#include "core/database/defaults.h"
#include "core/database/dtmf.h"
#include "core/points/points.h"
#include "core/shell/workspace.h"
#include "tests/support/scripted_prompter.h"
#include "tests/support/temp_dir.h"

#include <gtest/gtest.h>

namespace rk4 {
namespace {

using test::ScriptedPrompter;

const char kMoveQuestion[] = "Changing the port will delete existing settings - Continue?";
const char kInputSpecial[] = "This input is being used for a special function and cannot be used as a point.";
const char kDiscardDigital[] = "All changes made to Digital will be lost.";

class PointsEditorTest : public ::testing::Test {
  protected:
    PointsEditorTest() { DefaultValues(space.image); }

    PointsEditor& open()
    {
        editor = std::make_unique<PointsEditor>(space);
        editor->SetupWindow();
        for (int line = 0; line < kPointCount; ++line)
            editor->DrawLine(line);
        return *editor;
    }
    PointRecord& point(int slot) { return space.image.alm[slot]; }
    void attach(int slot, std::uint8_t type, int port, bool output = false)
    {
        point(slot).type = type;
        point(slot).port = static_cast<std::uint16_t>(port);
        point(slot).isOutput = output ? 1 : 0;
        point(slot).inactive = 0;
        point(slot).groupMask = 1;
    }

    test::TempDir dir;
    Workspace space{dir.path()};
    ScriptedPrompter prompter;
    std::unique_ptr<PointsEditor> editor;
};

TEST_F(PointsEditorTest, PortListMarksEverySpecialFunction)
{
    space.image.hardware.port[0].resetMask = 0x04;
    space.image.group[7].ackIn = 1; // all eight group slots count here
    space.image.hardware.port[1].typeFlags = 0x01;
    space.image.hardware.port[2].typeFlags = 0x12;
    space.image.hardware.port[3].typeFlags = 0x10;
    space.image.hardware.port[4].typeFlags = 0x07;
    space.image.hardware.port[8].typeFlags = 1;
    space.image.group[2].ackOut = 1;
    space.image.group[4].alarmOut = 1;
    space.image.gen.ringOut = 2;
    space.image.gen.carrierDetectOut = 2;
    space.image.hardware.port[10].typeFlags = 7;
    const std::vector<std::string> lines = PortLines(space.image);
    ASSERT_EQ(lines.size(), 17u);
    EXPECT_EQ(lines[0], "I/P 1 DIGITAL           >RES<>ACK<");
    EXPECT_EQ(lines[1], "I/P 2 WATCHDOG  ");
    EXPECT_EQ(lines[2], "I/P 3 INTERVAL  ");
    EXPECT_EQ(lines[3], "I/P 4 ANALOG    ");
    EXPECT_EQ(lines[4], "I/P 5 DIGITAL   ");
    EXPECT_EQ(lines[5], "I/P 6 DIGITAL           ");
    EXPECT_EQ(lines[8], "O/P 1 TIMED            <ACK><ALM>");
    EXPECT_EQ(lines[9], "O/P 2 ON/OFF          <RING><CD>");
    EXPECT_EQ(lines[10], "O/P 3 ON/OFF          ");
    EXPECT_EQ(lines[16], "UNUSED");
}

TEST_F(PointsEditorTest, ChooserRefusesAnAcknowledgeInputAndAssignsAFreePort)
{
    space.image.group[1].ackIn = 2;
    space.image.hardware.port[12].typeFlags = 1;
    PointsEditor& points = open();
    points.selected = 4;
    std::vector<PointDialogKind> kinds;
    points.EditLine([&](PointEditor& dialog) {
        kinds.push_back(dialog.kind());
        if (dialog.kind() != PointDialogKind::New)
            return;
        EXPECT_EQ(dialog.portIndex, kUnusedLine);
        dialog.portIndex = 1;
        EXPECT_FALSE(dialog.SetPort(prompter));
        dialog.portIndex = 12;
        ASSERT_TRUE(dialog.SetPort(prompter));
        EXPECT_TRUE(dialog.CanClose(prompter, true).accepted);
    });
    EXPECT_EQ(prompter.texts(), std::vector<std::string>{kInputSpecial});
    EXPECT_EQ(prompter.messages()[0].title, "Warning");
    EXPECT_EQ(kinds, (std::vector<PointDialogKind>{PointDialogKind::New, PointDialogKind::Output}));
    const PointRecord& edited = points.copy()[4];
    EXPECT_EQ(edited.type, kPointTimerOutput);
    EXPECT_EQ(edited.isOutput, 1);
    EXPECT_EQ(edited.port, 4);
    EXPECT_EQ(point(4).type, kPointUnused) << "the image waits for Exit";
}

TEST_F(PointsEditorTest, ChooserRefusesAPortAnotherPointAcknowledgesOn)
{
    // An acknowledge input whose marker no longer shows: the points' own record still refuses it.
    attach(6, kPointDigital, 2);
    PointsEditor& points = open();
    PointList& list = const_cast<PointList&>(points.copy());
    list[6].groupMask = 0;
    list[6].outFunction = kUseAckIn;
    PointRecord record;
    PointEditor dialog(space, list, 3, record, PointDialogKind::New);
    dialog.portIndex = 2;
    EXPECT_FALSE(dialog.SetPort(prompter));
    EXPECT_EQ(prompter.texts(),
              std::vector<std::string>{
                  "Point 7 is using this input for the Acknowledge Input function - select a different I/O"});
}

TEST_F(PointsEditorTest, UnusedEmptiesTheSlotsTypeAndPort)
{
    attach(2, kPointOnOffOutput, 5, true);
    PointsEditor& points = open();
    points.selected = 2;
    prompter.expect(kMoveQuestion, Answer::Yes);
    int opened = 0;
    points.EditLine([&](PointEditor& dialog) {
        ++opened;
        EXPECT_EQ(dialog.portIndex, 13);
        EXPECT_TRUE(dialog.ChangeIO(kUnusedLine, prompter));
        EXPECT_TRUE(dialog.CanClose(prompter, false).accepted);
    });
    EXPECT_EQ(opened, 1);
    EXPECT_EQ(points.copy()[2].type, kPointUnused);
    EXPECT_EQ(points.copy()[2].port, 0);
    EXPECT_EQ(points.copy()[2].isOutput, 0);
    EXPECT_EQ(points.DrawLine(2).substr(0, 4), " 3  ");
    EXPECT_NE(points.DrawLine(2).find("UNUSED"), std::string::npos);
}

TEST_F(PointsEditorTest, WatchdogMovedToAnOutputIsEmptiedAndOpensTheOutputEditor)
{
    space.image.hardware.port[1].typeFlags = 0x01;
    space.image.hardware.port[9].typeFlags = 1;
    attach(0, kPointWatchdog, 1);
    setName(point(0).name, "PUMP");
    storeDtmfCode("12", point(0).onCode);
    point(0).latching = 1;
    PointsEditor& points = open();
    points.selected = 0;
    prompter.expect(kMoveQuestion, Answer::Yes);
    prompter.expect(kMoveQuestion, Answer::Yes);
    std::vector<PointDialogKind> kinds;
    PointRecord seenByOutputEditor;
    points.EditLine([&](PointEditor& dialog) {
        kinds.push_back(dialog.kind());
        if (dialog.kind() == PointDialogKind::Wdog) {
            EXPECT_TRUE(dialog.ChangeIO(9, prompter));
        } else if (dialog.kind() == PointDialogKind::Output) {
            seenByOutputEditor = dialog.working();
            EXPECT_TRUE(dialog.ChangeIO(3, prompter)); // back to an input
        }
        dialog.CanClose(prompter, false);
    });
    EXPECT_EQ(kinds,
              (std::vector<PointDialogKind>{PointDialogKind::Wdog, PointDialogKind::Output, PointDialogKind::Digital}));
    PointRecord expected;
    expected.name.fill(' ');
    expected.type = kPointTimerOutput;
    expected.isOutput = 1;
    expected.port = 1;
    expected.inactive = 1;
    EXPECT_EQ(seenByOutputEditor, expected);
    const PointRecord& moved = points.copy()[0];
    EXPECT_EQ(moved.type, kPointDigital);
    EXPECT_EQ(moved.port, 3);
    EXPECT_EQ(moved.inactive, 0) << "a move made in the output editor leaves the point enabled";
}

TEST_F(PointsEditorTest, OutputEditorRefusesSpecialOutputsInOrder)
{
    attach(0, kPointOnOffOutput, 0, true);
    space.image.group[5].ackOut = 3;
    space.image.group[1].newAlarmOut = 3; // tested before the acknowledge out
    space.image.gen.carrierDetectOut = 4;
    space.image.gen.ringOut = 4;
    space.image.group[6].alarmOut = 5; // group 7 is not one of the six
    PointsEditor& points = open();
    prompter.expect(kMoveQuestion, Answer::No);
    points.EditLine([&](PointEditor& dialog) {
        EXPECT_FALSE(dialog.ChangeIO(10, prompter));
        EXPECT_FALSE(dialog.ChangeIO(11, prompter));
        EXPECT_FALSE(dialog.ChangeIO(12, prompter));
        EXPECT_EQ(dialog.portIndex, 8);
        dialog.CanClose(prompter, false);
    });
    EXPECT_EQ(prompter.texts(), (std::vector<std::string>{
                                    "One of the Groups is using this output for the New Alarm Out special function.  "
                                    "This output is not available as a general purpose output.",
                                    "The General section is using this output for the Carrier Detect Out special "
                                    "function.  This output is not available as a general purpose output.",
                                    kMoveQuestion}));
    EXPECT_EQ(points.copy()[0], point(0));
}

TEST_F(PointsEditorTest, DigitalEditorStoresTheGroupAndRefusesABadTag)
{
    attach(1, kPointDigital, 0);
    PointsEditor& points = open();
    points.selected = 1;
    points.EditLine([&](PointEditor& dialog) {
        dialog.name = "FRONT DOOR";
        dialog.groupIndex = 2;
        dialog.whenActive = false;
        dialog.code = "12E";
        const PointCheck refused = dialog.CanClose(prompter, true);
        EXPECT_FALSE(refused.accepted);
        EXPECT_EQ(refused.focus, PointField::Code);
        dialog.code = "12#a";
        EXPECT_TRUE(dialog.CanClose(prompter, true).accepted);
    });
    EXPECT_EQ(prompter.texts(),
              std::vector<std::string>{"Invalid digit found in the DTMF code, use 0-9, *, #, A, B, C and D only."});
    const PointRecord& edited = points.copy()[1];
    EXPECT_EQ(edited.groupMask, 4);
    EXPECT_EQ(edited.latching, 1);
    EXPECT_EQ(nameText(edited.name), "FRONT DOOR      ");
    EXPECT_EQ(edited.onCode, (DtmfCode{'1', '2', '<', '=', 0, 0, 0, 0}));
    EXPECT_EQ(points.DrawLine(1), " 2  FRONT DOOR        DIGITAL    I/P 1  Normal: High, Group 3, Latching, Tag: 12#A");
    EXPECT_TRUE(space.DatabaseChanged) << "raised by the dialog's OK, before the window's Exit";
}

TEST_F(PointsEditorTest, DiscardedRenameLeavesTheRecordButRaisesTheChangeFlag)
{
    attach(3, kPointDigital, 3);
    setName(point(3).name, "GATE");
    PointsEditor& points = open();
    points.selected = 3;
    prompter.expect(kDiscardDigital, Answer::Cancel).expect(kDiscardDigital, Answer::No);
    points.EditLine([&](PointEditor& dialog) {
        dialog.name = "BACK GATE";
        EXPECT_FALSE(dialog.CanClose(prompter, false).accepted) << "Go Back stays";
        EXPECT_TRUE(dialog.CanClose(prompter, false).accepted);
    });
    EXPECT_EQ(points.copy()[3], point(3));
    EXPECT_TRUE(space.DatabaseChanged);
    EXPECT_TRUE(prompter.finished());
}

TEST_F(PointsEditorTest, OutputCodesAreRefusedOnAGroupsNewAlarmOutput)
{
    attach(5, kPointOnOffOutput, 1, true);
    space.image.group[2].newAlarmOut = 2;
    const char kNewAlarm[] =
        "This output is being used to indicate a new alarm is present - DTMF codes are not allowed.";
    const char kInvalid[] = "Invalid digit found in the DTMF ON code, use 0-9, *, #, A, B, C and D only.";
    PointsEditor& points = open();
    points.selected = 5;
    points.EditLine([&](PointEditor& dialog) {
        dialog.code = "1";
        EXPECT_EQ(dialog.CanClose(prompter, true).focus, PointField::Code);
        dialog.code = "";
        dialog.offCode = "2";
        EXPECT_EQ(dialog.CanClose(prompter, true).focus, PointField::OffCode);
        space.image.group[2].newAlarmOut = 0;
        dialog.offCode = "2X";
        EXPECT_EQ(dialog.CanClose(prompter, true).focus, PointField::OffCode);
        dialog.code = "7";
        dialog.offCode = "8";
        EXPECT_TRUE(dialog.CanClose(prompter, true).accepted);
    });
    EXPECT_EQ(prompter.texts(), (std::vector<std::string>{kNewAlarm, kNewAlarm, kInvalid}));
    EXPECT_EQ(points.copy()[5].onCode[0], '7');
    EXPECT_EQ(points.copy()[5].offCode[0], '8');
}

TEST_F(PointsEditorTest, NewAnalogPointTakesTheAnalogDefaults)
{
    space.image.hardware.port[6].typeFlags = 0x10;
    PointsEditor& points = open();
    points.selected = 9;
    std::vector<PointDialogKind> kinds;
    points.EditLine([&](PointEditor& dialog) {
        kinds.push_back(dialog.kind());
        if (dialog.kind() == PointDialogKind::New) {
            dialog.portIndex = 6;
            ASSERT_TRUE(dialog.SetPort(prompter));
            dialog.CanClose(prompter, true);
        } else {
            dialog.CanClose(prompter, false);
        }
    });
    EXPECT_EQ(kinds, (std::vector<PointDialogKind>{PointDialogKind::New, PointDialogKind::Analog}));
    std::array<std::uint8_t, PointRecord::size> bytes{};
    writeRecord(points.copy()[9], bytes);
    // Offsets and values of the new analog point, byte by byte.
    const std::pair<int, int> expected[] = {
        {30, 1},    {24, 0},   {25, 0}, {26, 63},   {27, 0}, {28, 191}, {29, 0},   {31, 0x13}, {32, 0}, {41, 6},
        {46, 0xE8}, {47, 3},   {48, 0}, {50, 88},   {52, 3}, {53, 235}, {54, 235}, {55, 166},  {56, 0}, {57, 0},
        {59, 0},    {62, 255}, {63, 0}, {64, 0xEE}, {65, 2}, {66, 250}, {67, 0},   {68, 1}};
    for (auto [offset, value] : expected)
        EXPECT_EQ(bytes[offset], value) << "byte " << offset;
    EXPECT_NE(points.DrawLine(9).find("Range: 0.0 to 100.0"), std::string::npos);
}

TEST_F(PointsEditorTest, AcknowledgeInputOpensTheSpecialEditorAndIsDrawnWithItsGroups)
{
    attach(0, kPointDigital, 4);
    space.image.hardware.port[4].typeFlags = 0x80;
    space.image.hardware.port[4].resetMask = 0x02;
    for (int g = 0; g < kUsedGroupCount; ++g)
        space.image.group[g].ackIn = 5;
    attach(1, kPointDigital, 5);
    PointsEditor& points = open();
    EXPECT_EQ(points.DrawLine(0).substr(40), "Normal: Low, Ack: All Groups , Hardware totalizer reset");
    space.image.group[0].ackIn = 6;
    space.image.group[3].ackIn = 6;
    space.image.group[4].ackIn = 6;
    EXPECT_EQ(points.DrawLine(1).substr(40), "Normal: High, Ack: Groups 1, 4 and 5");
    EXPECT_EQ(points.copy()[1].groupMask, 0);
    EXPECT_EQ(points.copy()[1].outFunction, kUseAckIn);
    EXPECT_EQ(points.copy()[1].outGroupMask, 0x19);
    points.selected = 1;
    points.EditLine([&](PointEditor& dialog) {
        EXPECT_EQ(dialog.kind(), PointDialogKind::Special);
        EXPECT_EQ(dialog.ackGroupsText(), "Groups 1, 4 and 5");
        dialog.CanClose(prompter, true);
    });
    EXPECT_EQ(points.copy()[1].groupMask, 0);
}

TEST_F(PointsEditorTest, WorkedOutBytesAreNoEditButExitStoresThem)
{
    attach(0, kPointDigital, 0);
    point(0).outFunction = 3;
    point(0).groupMask = 0;
    space.image.group[0].ackIn = 1;
    PointsEditor& points = open();
    EXPECT_EQ(point(0).outFunction, 0) << "cleared in the image on opening";
    EXPECT_FALSE(points.changed());
    EXPECT_TRUE(points.CanClose(prompter, Leaving::Other));
    EXPECT_FALSE(space.DatabaseChanged);

    points.SetupWindow();
    points.DrawLine(0);
    EXPECT_TRUE(points.CanClose(prompter, Leaving::Exit));
    EXPECT_EQ(point(0).outFunction, kUseAckIn);
    EXPECT_EQ(point(0).outGroupMask, 1);
    EXPECT_TRUE(space.DatabaseChanged);
    EXPECT_TRUE(space.navigation.isOn(NavFlag::Points));
}

TEST_F(PointsEditorTest, LeavingWithEditsAsksAboutPoints)
{
    attach(0, kPointInterval, 0);
    PointsEditor& points = open();
    EXPECT_FALSE(space.navigation.isOn(NavFlag::Grp3));
    points.EditLine([&](PointEditor& dialog) {
        dialog.enabled = false;
        EXPECT_TRUE(dialog.CanClose(prompter, false).accepted);
    });
    prompter.expect("All changes made to Points will be lost.", Answer::Cancel);
    EXPECT_FALSE(points.CanClose(prompter, Leaving::Other));
    prompter.expect("All changes made to Points will be lost.", Answer::No);
    EXPECT_TRUE(points.CanClose(prompter, Leaving::Other));
    EXPECT_EQ(point(0).inactive, 0);
    EXPECT_FALSE(space.DatabaseChanged);
    EXPECT_TRUE(space.navigation.isOn(NavFlag::Grp3));
}

} // namespace
} // namespace rk4
