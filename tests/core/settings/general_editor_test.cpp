#include "core/settings/general_editor.h"

#include "core/database/defaults.h"
#include "core/shell/workspace.h"
#include "tests/support/scripted_prompter.h"
#include "tests/support/temp_dir.h"

#include <gtest/gtest.h>

namespace rk4 {
namespace {

using test::ScriptedPrompter;

const char kAnyone[] = "ANYONE can remotely program the unit if the Access code is empty.\nDo you want to change this?";

class GeneralEditorTest : public ::testing::Test {
  protected:
    GeneralEditorTest()
    {
        DefaultValues(space.image);
        space.image.gen.accessCode = {'1', '2', '3', 0};
    }

    GeneralEditor& open()
    {
        editor = std::make_unique<GeneralEditor>(space);
        editor->SetupWindow();
        return *editor;
    }
    HardwarePort& output(int n) { return space.image.hardware.port[7 + n]; }

    test::TempDir dir;
    Workspace space{dir.path()};
    ScriptedPrompter prompter;
    std::unique_ptr<GeneralEditor> editor;
};

TEST_F(GeneralEditorTest, ControlsStoreTheirValuesAndOnlyADifferenceMarksTheImageChanged)
{
    GeneralEditor& general = open();
    EXPECT_FALSE(space.navigation.isOn(NavFlag::General));
    EXPECT_FALSE(space.navigation.isOn(NavFlag::Outputs));
    EXPECT_FALSE(space.navigation.pgmon());
    EXPECT_TRUE(general.CanClose(prompter).accepted);
    EXPECT_FALSE(space.DatabaseChanged) << "an untouched dialog writes nothing";
    EXPECT_TRUE(generalEditorAvailable(space.navigation));

    GeneralEditor& edited = open();
    edited.name = "PUMP STATION";
    edited.shiftChangeCode = "0*#d";
    edited.tempAckIndex = 3;
    edited.ringsIndex = 4;
    edited.securityLevel = 2;
    edited.callProgress = true;
    ASSERT_TRUE(edited.CanClose(prompter).accepted);
    const GeneralRecord& gen = space.image.gen;
    EXPECT_EQ(nameText(gen.name), "PUMP STATION    ");
    EXPECT_EQ(gen.shiftChangeCode, (DtmfCode{':', ';', '<', '0', 0, 0, 0, 0}));
    EXPECT_EQ(gen.tempAckTime, 120);
    EXPECT_EQ(gen.ringsToAnswer, 5);
    EXPECT_EQ(gen.securityLevel, 2);
    EXPECT_EQ(gen.callProgress, 1);
    EXPECT_TRUE(space.DatabaseChanged);
    EXPECT_TRUE(prompter.messages().empty());
}

TEST_F(GeneralEditorTest, RingsTheListCannotHoldAreShownAndKept)
{
    space.image.gen.ringsToAnswer = 255;
    GeneralEditor& general = open();
    EXPECT_EQ(general.ringsChoices().labels.at(general.ringsIndex), "Never");
    EXPECT_FALSE(general.changed());
}

TEST_F(GeneralEditorTest, SpecialOutputsAreCheckedAgainstEachOtherAndEveryGroup)
{
    GeneralEditor& general = open();
    general.ringOutIndex = 0;
    general.carrierDetectIndex = 0;
    EXPECT_TRUE(general.CanClose(prompter).accepted) << "both not used";

    space.image.group[6].alarmOut = 3;
    const HardwareRecord ports = space.image.hardware;
    GeneralEditor& conflicting = open();
    conflicting.ringOutIndex = 3;
    const GeneralCheck refused = conflicting.CanClose(prompter);
    EXPECT_FALSE(refused.accepted);
    EXPECT_EQ(refused.focus, GeneralField::RingOut);
    EXPECT_EQ(prompter.messages().back().title, "Error");
    EXPECT_EQ(prompter.messages().back().text,
              "Conflict found! Output 3 is being used by Group 7 for Alarm Out  - both are not allowed.");
    EXPECT_EQ(space.image.gen.ringOut, 0);

    conflicting.ringOutIndex = 4;
    conflicting.carrierDetectIndex = 4;
    EXPECT_FALSE(conflicting.CanClose(prompter).accepted);
    EXPECT_EQ(prompter.messages().back().text,
              "Carrier Detect Output and Ring Output cannot be set to the same output");
    conflicting.carrierDetectIndex = 3;
    EXPECT_EQ(conflicting.CanClose(prompter).focus, GeneralField::CarrierDetectOut);
    EXPECT_EQ(
        prompter.messages().back().text,
        "Conflict found with CD output! Output 3 is being used by Group 7 for Alarm Out  - both are not allowed.");
    EXPECT_EQ(space.image.hardware, ports) << "the ring port waits for the whole check";
}

TEST_F(GeneralEditorTest, SpecialOutputsAreResetToTheirTimingsOnEveryOk)
{
    space.image.gen.ringOut = 2;
    space.image.gen.carrierDetectOut = 5;
    output(2) = {1, 40, 0x02, 0, 0, 7}; // already timed, in minutes
    output(5) = {1, 3, 0, 0, 0, 100};
    GeneralEditor& general = open();
    ASSERT_TRUE(general.CanClose(prompter).accepted);
    EXPECT_TRUE(prompter.messages().empty()) << "a timed output needs no warning";
    EXPECT_EQ(output(2), (HardwarePort{1, 2, 0, 0, 0, 80}));
    EXPECT_EQ(output(5), (HardwarePort{1, 2, 0, 0, 0, 2400}));

    // An on/off output is told about; a refusal afterwards writes nothing.
    GeneralEditor& onOff = open();
    onOff.ringOutIndex = 6;
    onOff.accessCode = "12E";
    EXPECT_EQ(onOff.CanClose(prompter).focus, GeneralField::AccessCode);
    ASSERT_EQ(prompter.texts(),
              (std::vector<std::string>{"Output 6 will be changed from an on/off type to timed for ringing.",
                                        "Invalid digit found in the Access code, use 0-9, *, #, A, B, C and D only."}));
    EXPECT_EQ(output(6).typeFlags, 0);
    EXPECT_EQ(space.image.gen.ringOut, 2);
}

TEST_F(GeneralEditorTest, PointsOnANewlyChosenOutputGoOnlyWhenTheUserAgrees)
{
    const char question[] = "Output 4 is presently being used as a controlled output in Points.  Changing it to the "
                            "Modem Enable/Carrier Detect Out function will remove it from Points - Proceed?";
    PointRecord& point = space.image.alm[7];
    point.type = kPointTimerOutput;
    point.isOutput = 1;
    point.port = 3;
    output(4).typeFlags = 1;

    GeneralEditor& general = open();
    general.carrierDetectIndex = 4;
    prompter.expect(question, Answer::No);
    EXPECT_EQ(general.CanClose(prompter).focus, GeneralField::CarrierDetectOut);
    EXPECT_EQ(point.type, kPointTimerOutput);

    prompter.expect(question, Answer::Yes);
    ASSERT_TRUE(general.CanClose(prompter).accepted);
    EXPECT_EQ(point.type, kPointUnused);
    EXPECT_EQ(space.image.gen.carrierDetectOut, 4);
    EXPECT_TRUE(prompter.finished());
}

TEST_F(GeneralEditorTest, CodesAreCheckedInTurn)
{
    GeneralEditor& general = open();
    general.shiftChangeCode = "12345678";
    general.modemEnableCode = "9x";
    general.accessCode = "12345678";
    EXPECT_EQ(general.CanClose(prompter).focus, GeneralField::ShiftChangeCode);
    general.shiftChangeCode = "1234567";
    EXPECT_EQ(general.CanClose(prompter).focus, GeneralField::ModemEnableCode);
    general.modemEnableCode = "ABCD*#0";
    EXPECT_EQ(general.CanClose(prompter).focus, GeneralField::AccessCode);
    EXPECT_EQ(prompter.texts(), (std::vector<std::string>{
                                    "Shift Change code has too may digits - maximum is 7",
                                    "Invalid digit found in the Modem Enable code, use 0-9, *, #, A, B, C and D only.",
                                    "Access code has too may digits - maximum is 7"}));
    EXPECT_FALSE(space.DatabaseChanged);
}

TEST_F(GeneralEditorTest, AnEmptyAccessCodeIsQuestionedByLevel)
{
    GeneralEditor& general = open();
    general.accessCode.clear();
    general.securityLevel = 0;
    prompter.expect(kAnyone, Answer::No);
    ASSERT_TRUE(general.CanClose(prompter).accepted);
    EXPECT_EQ(space.image.gen.accessCode[0], 0);

    GeneralEditor& secured = open();
    secured.securityLevel = 1;
    prompter.expect("Remote programming will not be available without an Access code.\nDo you want to change this?",
                    Answer::Yes);
    EXPECT_EQ(secured.CanClose(prompter).focus, GeneralField::AccessCode);
    EXPECT_EQ(space.image.gen.securityLevel, 0);
    EXPECT_TRUE(prompter.finished());
}

TEST_F(GeneralEditorTest, LeavingWithEditsAsksAndSavingRunsTheChecks)
{
    GeneralEditor& general = open();
    general.accessCode.clear();
    prompter.expect("All changes made to General will be lost.", Answer::Yes).expect(kAnyone, Answer::Yes);
    EXPECT_FALSE(general.CmCancel(prompter).accepted);
    prompter.expect("All changes made to General will be lost.", Answer::No);
    EXPECT_TRUE(general.CmCancel(prompter).accepted);
    EXPECT_EQ(space.image.gen.accessCode[0], '1');
    EXPECT_FALSE(space.DatabaseChanged);
    EXPECT_TRUE(space.navigation.pgmon());
    EXPECT_TRUE(prompter.finished());
}

} // namespace
} // namespace rk4
