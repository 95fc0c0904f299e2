#include "core/hardware/hardware_editor.h"

#include "core/database/defaults.h"
#include "core/shell/workspace.h"
#include "tests/support/scripted_prompter.h"
#include "tests/support/temp_dir.h"

#include <gtest/gtest.h>

namespace rk4 {
namespace {

using test::ScriptedPrompter;

const char kInputQuestion[] = "Changing input type will delete existing settings - Continue?";
const char kOutputQuestion[] = "Changing output type will delete existing settings - Continue?";

class HardwareEditorTest : public ::testing::Test {
  protected:
    HardwareEditorTest() { DefaultValues(space.image); }

    HardwareEditor& open(HardwareEditor::Mode mode)
    {
        editor = std::make_unique<HardwareEditor>(space, mode);
        editor->SetupWindow(prompter);
        return *editor;
    }
    HardwarePort& port(int index) { return space.image.hardware.port[index]; }

    test::TempDir dir;
    Workspace space{dir.path()};
    ScriptedPrompter prompter;
    std::unique_ptr<HardwareEditor> editor;
};

TEST_F(HardwareEditorTest, InputLinesShowEachTypeInItsColumns)
{
    port(0).typeFlags = 0x80;
    port(0).resetMask = 0x14; // totalizers on inputs 3 and 5
    port(1) = {0x41, 40, 0x03, 0, 0, 7};
    port(2) = {0x03, 2, 0x02, 0, 0, 10};
    port(3) = {0x82, 3, 0x06, 0, 0, 10};
    port(4) = {0x83, 65520, 0x00, 0, 0, 10};
    port(5).typeFlags = 0x10;
    port(6) = {0x81, 2, 0x00, 0, 0, 40};
    port(7) = {0x01, 2, 0x02, 0, 0, 3};
    HardwareEditor& inputs = open(HardwareEditor::Mode::Inputs);

    EXPECT_EQ(inputs.DrawTitles(), "I/P  TYPE       DEBOUNCE");
    const std::vector<std::string> expected = {
        " 1   DIGITAL       0.050 sec  Normally Low Input, Resets totalizers 3, 5",
        " 2   WATCHDOG         40 min  Restart: Both changes, Watchdog timer: 7 min ",
        " 3   TOTALIZER     0.050 sec  Count: High to Low changes, Reset by I/P 1",
        " 4   INTERVAL      0.075 sec  Normally Low Input, Timer resolution: minutes",
        " 5   TOTALIZER  1638.000 sec  Count: Low to High changes, Reset by I/P 1",
        " 6   ANALOG",
        " 7   WATCHDOG      0.050 sec  Restart: Low to High changes, Watchdog timer: 1.000 sec ",
        " 8   WATCHDOG      0.050 sec  Restart: High to Low changes, Watchdog timer: 3 min ",
    };
    for (int line = 0; line < 8; ++line)
        EXPECT_EQ(inputs.DrawLine(line), std::vector<std::string>{expected[line]}) << line;
}

TEST_F(HardwareEditorTest, AnInputOfNoKnownTypeIsShownAsAZeroEntry)
{
    port(6).typeFlags = 0x07;
    HardwareEditor& inputs = open(HardwareEditor::Mode::Inputs);
    EXPECT_EQ(inputs.DrawLine(6), std::vector<std::string>{" 7   DIGITAL       0.050 sec  Normally High Input"});
    EXPECT_EQ(inputs.copy().port[6], HardwarePort{});
}

TEST_F(HardwareEditorTest, OutputLinesListTheirUsesAndRepairTimers)
{
    port(8).typeFlags = 1;
    port(8).timer = 0;
    port(9).typeFlags = 1;
    port(9).timer = 5;
    port(9).scaleFlags = 0x02;
    port(10).typeFlags = 9;
    space.image.group[0].ackOut = 1;
    space.image.group[1].ackOut = 1;
    space.image.group[3].ackOut = 1;
    space.image.group[6].ackOut = 1; // groups 7 and 8 are not in use
    space.image.group[2].newAlarmOut = 1;
    space.image.group[4].alarmOut = 2;
    space.image.gen.ringOut = 1;
    space.image.gen.carrierDetectOut = 3;
    HardwareEditor& outputs = open(HardwareEditor::Mode::Outputs);

    EXPECT_EQ(outputs.DrawTitles(), "O/P  TYPE");
    EXPECT_EQ(outputs.DrawLine(0),
              (std::vector<std::string>{" 1   TIMED      Interval: 60.000 sec", "     Ack Output: Groups 1, 2 and 4",
                                        "     New Alarm Output: Group 3", "     Ring Output "}));
    EXPECT_EQ(outputs.copy().port[8].timer, 2400);
    EXPECT_EQ(outputs.copy().port[8].scaleFlags & 0x02, 0);
    EXPECT_EQ(outputs.DrawLine(1),
              (std::vector<std::string>{" 2   TIMED      Interval: 5 min", "     Alarm Output: Group 5"}));
    EXPECT_EQ(outputs.DrawLine(2), (std::vector<std::string>{" 3   ON/OFF", "     Carrier Detect Output "}));
    EXPECT_EQ(outputs.copy().port[10], HardwarePort{});
}

TEST_F(HardwareEditorTest, CorruptRecordIsClearedWithAnError)
{
    port(3).typeFlags = 0x20;
    port(9).timer = 77;
    HardwareEditor& inputs = open(HardwareEditor::Mode::Inputs);
    ASSERT_EQ(prompter.messages().size(), 1u);
    EXPECT_EQ(prompter.messages()[0].text, "The hardware portion of the database is corrupt, it will now be cleared");
    EXPECT_EQ(prompter.messages()[0].title, "Error");
    EXPECT_EQ(space.image.hardware, HardwareRecord{});
    EXPECT_EQ(inputs.copy(), HardwareRecord{});
}

TEST_F(HardwareEditorTest, DigitalDialogStoresValidFieldsAndRefusesBadOnes)
{
    HardwareEditor& inputs = open(HardwareEditor::Mode::Inputs);
    inputs.selected = 2;
    CloseCheck refused;
    inputs.EditLine([&](PortEditor& dialog) {
        EXPECT_EQ(dialog.kind(), DialogKind::Digital);
        EXPECT_EQ(dialog.debounce.text, "0.050");
        dialog.normallyLow = true;
        dialog.debounce.text = "0";
        dialog.debounce.minutes = true;
        refused = dialog.CanClose(prompter);
        dialog.debounce.text = "3";
        EXPECT_TRUE(dialog.CanClose(prompter).accepted);
    });
    EXPECT_FALSE(refused.accepted);
    EXPECT_EQ(refused.focus, FieldId::Debounce);
    EXPECT_EQ(prompter.texts(), std::vector<std::string>{"The debounce interval cannot be less than 1 min."});
    const HardwarePort& edited = inputs.copy().port[2];
    EXPECT_EQ(edited.typeFlags, 0x80);
    EXPECT_EQ(edited.debounce, 3);
    EXPECT_EQ(edited.scaleFlags, 0x03);
    EXPECT_EQ(port(2).debounce, 2) << "the image waits for Exit";
}

TEST_F(HardwareEditorTest, DigitalInputChangedToAnotherTypeGivesUpItsDuties)
{
    port(0).resetMask = 0x14; // resets the totalizers on inputs 3 and 5
    port(2).typeFlags = 3;
    port(4).typeFlags = 3;
    space.image.alm[7].type = kPointDigital;
    space.image.alm[7].port = 0;
    space.image.alm[7].inactive = 0;
    space.image.alm[8].type = kPointOnOffOutput;
    space.image.alm[8].isOutput = 1;
    space.image.alm[8].port = 0;
    prompter.expect(kInputQuestion, Answer::Yes);
    HardwareEditor& inputs = open(HardwareEditor::Mode::Inputs);

    std::vector<DialogKind> opened;
    inputs.EditLine([&](PortEditor& dialog) {
        opened.push_back(dialog.kind());
        if (dialog.kind() == DialogKind::Digital) {
            EXPECT_TRUE(dialog.ChangeInput(1, prompter));
        }
    });

    EXPECT_EQ(opened, (std::vector<DialogKind>{DialogKind::Digital, DialogKind::Wdog}));
    EXPECT_EQ(prompter.texts(),
              (std::vector<std::string>{
                  kInputQuestion, "The totalizer using input port 3 will no longer be reset by this digital input",
                  "The totalizer using input port 5 will no longer be reset by this digital input"}));
    EXPECT_EQ(space.image.alm[7].type, kPointUnused);
    EXPECT_EQ(space.image.alm[7].inactive, 1);
    EXPECT_EQ(space.image.alm[8].type, kPointOnOffOutput) << "output 1's point stays";
    EXPECT_TRUE(space.DatabaseChanged);
    EXPECT_EQ(inputs.copy().port[0], (HardwarePort{1, 2, 0x02, 0, 0, 10}));
    EXPECT_EQ(inputs.DrawLine(2)[0].find("Reset by"), std::string::npos);
}

// The groups lose their acknowledge input at once, so the image has changed
// even when the window's own edits are then discarded.
TEST_F(HardwareEditorTest, AcknowledgingGroupsAreNamedAndReleasedAtOnce)
{
    const std::pair<std::vector<int>, const char*> cases[] = {
        {{5}, "Group 6 is using this input for local Acknowledge - this function will be deleted."},
        {{0, 2}, "Groups 1 and 3 are using this input for local Acknowledge - this function will be deleted."},
        {{0, 1, 3}, "Groups 1, 2 and 4 are using this input for local Acknowledge - this function will be deleted."},
    };
    for (const auto& [groups, warning] : cases) {
        DefaultValues(space.image);
        space.DatabaseChanged = false;
        for (int g : groups)
            space.image.group[g].ackIn = 4;
        space.image.group[4].ackIn = 3; // another input's group stays
        prompter.clear();
        prompter.expect(kInputQuestion, Answer::Yes);
        HardwareEditor& inputs = open(HardwareEditor::Mode::Inputs);
        inputs.selected = 3;
        inputs.EditLine([&](PortEditor& dialog) {
            if (dialog.kind() == DialogKind::Digital)
                dialog.ChangeInput(4, prompter);
        });
        EXPECT_EQ(prompter.texts().back(), warning);
        EXPECT_EQ(inputs.copy().port[3].typeFlags, 0x10);
        prompter.expect("All changes made to the hardware inputs will be lost.", Answer::No);
        EXPECT_TRUE(inputs.CanClose(prompter, Leaving::Other));
        EXPECT_EQ(port(3).typeFlags, 0x00) << "the type change itself was discarded";
        for (int g : groups)
            EXPECT_EQ(space.image.group[g].ackIn, 0);
        EXPECT_EQ(space.image.group[4].ackIn, 3);
        EXPECT_TRUE(space.DatabaseChanged) << warning;
    }
}

TEST_F(HardwareEditorTest, TypeChangeAnsweredNoChangesNothing)
{
    port(0).resetMask = 0x04;
    space.image.group[0].ackIn = 1;
    const Database before = space.image;
    prompter.expect(kInputQuestion, Answer::No);
    HardwareEditor& inputs = open(HardwareEditor::Mode::Inputs);
    inputs.EditLine([&](PortEditor& dialog) {
        dialog.typeIndex = 3;
        EXPECT_FALSE(dialog.ChangeInput(3, prompter));
        EXPECT_EQ(dialog.typeIndex, 0);
    });
    EXPECT_EQ(space.image, before);
    EXPECT_FALSE(inputs.changed());
}

TEST_F(HardwareEditorTest, TotalizerResetInputLandsInOneDigitalMask)
{
    port(0).resetMask = 0x20; // input 1 used to reset the totalizer on input 6
    port(2).typeFlags = 0x80; // digital, normally low: offered
    port(3).typeFlags = 0x40; // bits 6 and 7 do not matter: offered
    port(4).typeFlags = 1;    // watchdog: not offered
    port(4).resetMask = 0x20; // and its stale bit is not the dialog's business
    port(5).typeFlags = 3;    // the totalizer
    port(6).typeFlags = 0x10; // analog: not offered
    port(7).typeFlags = 2;    // interval: not offered
    HardwareEditor& inputs = open(HardwareEditor::Mode::Inputs);
    inputs.selected = 5;
    inputs.EditLine([&](PortEditor& dialog) {
        EXPECT_EQ(dialog.resetChoices(), (std::vector<std::string>{"NONE", "I/P 1", "I/P 2", "I/P 3", "I/P 4"}));
        EXPECT_EQ(dialog.resetChoice, 1);
        dialog.resetChoice = 2;
        EXPECT_TRUE(dialog.CanClose(prompter).accepted);
    });
    EXPECT_EQ(inputs.copy().port[0].resetMask, 0x00);
    EXPECT_EQ(inputs.copy().port[1].resetMask, 0x20);
    EXPECT_EQ(inputs.copy().port[4].resetMask, 0x20);
    EXPECT_EQ(inputs.DrawLine(5)[0].substr(30), "Count: High to Low changes, Reset by I/P 2");
    EXPECT_EQ(inputs.DrawLine(1)[0].substr(30), "Normally High Input, Resets totalizer 6");

    inputs.EditLine([&](PortEditor& dialog) {
        EXPECT_EQ(dialog.resetChoice, 2);
        dialog.resetChoice = 0;
        dialog.CanClose(prompter);
    });
    EXPECT_EQ(inputs.copy().port[1].resetMask, 0x00);
}

TEST_F(HardwareEditorTest, TotalizerChangedAwayIsNoLongerResetByAnyone)
{
    port(5).typeFlags = 3;
    port(0).resetMask = 0x21;
    port(4).typeFlags = 2;
    port(4).resetMask = 0x20;
    prompter.expect(kInputQuestion, Answer::Yes);
    HardwareEditor& inputs = open(HardwareEditor::Mode::Inputs);
    inputs.selected = 5;
    inputs.EditLine([&](PortEditor& dialog) {
        if (dialog.kind() == DialogKind::Total)
            dialog.ChangeInput(0, prompter);
    });
    EXPECT_EQ(inputs.copy().port[0].resetMask, 0x01);
    EXPECT_EQ(inputs.copy().port[4].resetMask, 0x00);
    EXPECT_EQ(prompter.texts(), std::vector<std::string>{kInputQuestion}) << "only a digital input warns";
}

TEST_F(HardwareEditorTest, OutputTypeChangeSwapsTypeAndClearsOnlyItsPoints)
{
    space.image.alm[0].isOutput = 1;
    space.image.alm[0].port = 2;
    space.image.alm[0].type = kPointOnOffOutput;
    space.image.alm[1].port = 2;
    space.image.alm[1].type = kPointDigital;
    prompter.expect(kOutputQuestion, Answer::Yes);
    HardwareEditor& outputs = open(HardwareEditor::Mode::Outputs);
    outputs.selected = 2;
    std::vector<DialogKind> opened;
    outputs.EditLine([&](PortEditor& dialog) {
        opened.push_back(dialog.kind());
        if (dialog.kind() == DialogKind::OnOff) {
            dialog.ChangeOutput(1, prompter);
        } else {
            // A new timed output starts at 10 minutes.
            EXPECT_EQ(dialog.timer.text, "10");
            EXPECT_TRUE(dialog.timer.minutes);
            dialog.timer.text = "1.5";
            dialog.TimerSec(prompter);
            EXPECT_TRUE(dialog.CanClose(prompter).accepted);
        }
    });
    EXPECT_EQ(opened, (std::vector<DialogKind>{DialogKind::OnOff, DialogKind::Timed}));
    EXPECT_EQ(space.image.alm[0].type, kPointUnused);
    EXPECT_EQ(space.image.alm[1].type, kPointDigital);
    EXPECT_TRUE(space.DatabaseChanged) << "the cleared point is gone from the image at once";
    EXPECT_EQ(outputs.copy().port[10], (HardwarePort{1, 2, 0x00, 0, 0, 60}));
}

TEST_F(HardwareEditorTest, LeavingCommitsOrAsksAndGivesTheFlagsBack)
{
    HardwareEditor& inputs = open(HardwareEditor::Mode::Inputs);
    EXPECT_FALSE(space.navigation.isOn(NavFlag::Inputs));
    EXPECT_FALSE(space.navigation.isOn(NavFlag::Grp6));
    EXPECT_FALSE(space.navigation.fileon());
    EXPECT_TRUE(space.navigation.isOn(NavFlag::General));

    inputs.EditLine([&](PortEditor& dialog) {
        dialog.debounce.text = "1.000";
        dialog.CanClose(prompter);
    });
    prompter.expect("All changes made to the hardware inputs will be lost.", Answer::Cancel);
    EXPECT_FALSE(inputs.CanClose(prompter, Leaving::Other));
    EXPECT_FALSE(space.navigation.isOn(NavFlag::Inputs)) << "went back: still open";
    EXPECT_EQ(prompter.messages().back().buttons, Buttons::SaveDiscardCancel);

    prompter.expect("All changes made to the hardware inputs will be lost.", Answer::No);
    EXPECT_TRUE(inputs.CanClose(prompter, Leaving::Other));
    EXPECT_EQ(port(0).debounce, 2);
    EXPECT_FALSE(space.DatabaseChanged);
    EXPECT_TRUE(space.navigation.isOn(NavFlag::Inputs));
    EXPECT_TRUE(space.navigation.pgmon());

    // Exit without a change leaves the flag alone.
    HardwareEditor& again = open(HardwareEditor::Mode::Inputs);
    EXPECT_TRUE(again.CanClose(prompter, Leaving::Exit));
    EXPECT_FALSE(space.DatabaseChanged);
    EXPECT_TRUE(prompter.finished());
}

TEST_F(HardwareEditorTest, SaveAnswerWritesTheCopy)
{
    HardwareEditor& outputs = open(HardwareEditor::Mode::Outputs);
    outputs.selected = 7;
    prompter.expect(kOutputQuestion, Answer::Yes);
    outputs.EditLine([&](PortEditor& dialog) {
        if (dialog.kind() == DialogKind::OnOff)
            dialog.ChangeOutput(1, prompter);
    });
    prompter.expect("All changes made to the hardware outputs will be lost.", Answer::Yes);
    EXPECT_TRUE(outputs.CanClose(prompter, Leaving::Other));
    EXPECT_EQ(port(15).typeFlags, 1);
    EXPECT_TRUE(space.DatabaseChanged);
}

} // namespace
} // namespace rk4
