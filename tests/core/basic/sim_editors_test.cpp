// The Basic editors: system settings, directories, outputs and alarms.
#include "core/basic/alarms_editor.h"
#include "core/basic/sim_directories.h"
#include "core/basic/sim_general.h"
#include "core/basic/sim_outputs.h"

#include "core/basic/basic_fields.h"
#include "core/database/defaults.h"
#include "core/database/dtmf.h"
#include "core/shell/workspace.h"
#include "tests/support/scripted_prompter.h"
#include "tests/support/temp_dir.h"

#include <gtest/gtest.h>

namespace rk4 {
namespace {

using test::ScriptedPrompter;

const char kAnyone[] = "ANYONE can remotely program the unit if the Access code is empty.\nDo you want to change this?";
const char kTooManyEntries[] = "There are too many entries in this directory - this line is not allowed.";

class SimEditorsTest : public ::testing::Test {
  protected:
    SimEditorsTest()
    {
        space.image.gen.basicMode = 1;
        ClearDatabase(space.image, false);
        space.DatabaseChanged = false;
    }

    test::TempDir dir;
    Workspace space{dir.path()};
    ScriptedPrompter prompter;
};

// --- System settings

TEST_F(SimEditorsTest, AccessCodeOfSevenCharactersIsStoredAndEightAreRefused)
{
    SimGenEditor editor(space);
    editor.modemEnableCode = "1234";
    editor.accessCode = "12345678";
    EXPECT_FALSE(editor.CanClose(prompter));
    EXPECT_EQ(prompter.texts().back(), "Access code has too may digits - maximum is 7");
    EXPECT_EQ(editor.focus, SimGenEditor::Field::AccessCode);
    EXPECT_FALSE(space.DatabaseChanged);

    editor.accessCode = "*#0A9BC";
    ASSERT_TRUE(editor.CanClose(prompter));
    // '*' ';', '#' '<', '0' ':', 'A' '=', 'B' '>', 'C' '?'
    const DtmfCode expected{';', '<', ':', '=', '9', '>', '?', 0};
    EXPECT_EQ(space.image.gen.accessCode, expected);
    EXPECT_TRUE(space.DatabaseChanged);
}

TEST_F(SimEditorsTest, SystemSettingsCheckTheCodesInOrderThenTheEmptyAccessCodeThenEqualCodes)
{
    SimGenEditor editor(space);
    editor.accessCode = "1X";
    editor.directoryControlCode = "12345678";
    editor.modemEnableCode = "9E";
    EXPECT_FALSE(editor.CanClose(prompter));
    editor.modemEnableCode = "9";
    EXPECT_FALSE(editor.CanClose(prompter));
    editor.directoryControlCode = "9";
    EXPECT_FALSE(editor.CanClose(prompter));
    EXPECT_EQ(prompter.texts(), (std::vector<std::string>{
                                    "Invalid digit found in the Modem Enable code, use 0-9, *, #, A, B, C and D only.",
                                    "Directory Control code has too may digits - maximum is 7",
                                    "Invalid digit found in the Access code, use 0-9, *, #, A, B, C and D only."}));

    // An empty Access code: Yes goes back to it, No goes on to the equal codes.
    prompter.clear();
    editor.accessCode = "";
    prompter.expect(kAnyone, Answer::Yes);
    EXPECT_FALSE(editor.CanClose(prompter));
    EXPECT_EQ(editor.focus, SimGenEditor::Field::AccessCode);
    prompter.expect(kAnyone, Answer::No);
    EXPECT_FALSE(editor.CanClose(prompter));
    EXPECT_EQ(prompter.texts().back(), "The Modem Enable code and Directory Control code cannot be the same.");

    editor.accessCode = "a1";
    editor.modemEnableCode = "A1";
    EXPECT_FALSE(editor.CanClose(prompter));
    EXPECT_EQ(prompter.texts().back(), "The Access code and Modem Enable code cannot be the same.");
    editor.modemEnableCode = "5";
    editor.directoryControlCode = "A1";
    EXPECT_FALSE(editor.CanClose(prompter));
    EXPECT_EQ(prompter.texts().back(), "The Access code and Directory Control code cannot be the same.");
    EXPECT_FALSE(space.DatabaseChanged);
    EXPECT_TRUE(prompter.finished());
}

TEST_F(SimEditorsTest, SystemSettingsChoicesSetRingsAndTheAcknowledgeTimeAndLeaveOtherValuesAlone)
{
    space.image.gen.tempAckTime = 0; // no choice stands for it
    SimGenEditor editor(space);
    EXPECT_EQ(editor.ringsChoice, 1); // the template's 2 rings
    EXPECT_EQ(editor.ackTimeChoice, -1);
    EXPECT_FALSE(editor.changed());

    editor.accessCode = "123";
    editor.modemEnableCode = "456";
    editor.directoryControlCode = "789";
    ASSERT_TRUE(editor.CanClose(prompter));
    EXPECT_EQ(space.image.gen.tempAckTime, 0);
    EXPECT_EQ(dtmfCodeText(space.image.gen.shiftChangeCode), "789");

    SimGenEditor again(space);
    again.ringsChoice = 8;
    again.ackTimeChoice = 2;
    ASSERT_TRUE(again.CanClose(prompter));
    EXPECT_EQ(space.image.gen.ringsToAnswer, 9);
    EXPECT_EQ(space.image.gen.tempAckTime, 120);
}

TEST_F(SimEditorsTest, LeavingWithChangesAsksAndSavingRunsTheChecksFirst)
{
    SimGenEditor editor(space);
    EXPECT_TRUE(editor.CanLeave(prompter)); // nothing changed: no question
    editor.accessCode = "12345678";
    const std::string lost = "All changes made to the System Settings will be lost.";
    prompter.expect(lost, Answer::Cancel).expect(lost, Answer::Yes).expect(lost, Answer::No);
    EXPECT_FALSE(editor.CanLeave(prompter));
    EXPECT_FALSE(editor.CanLeave(prompter)); // save refused by the length check
    EXPECT_TRUE(editor.CanLeave(prompter));
    EXPECT_FALSE(space.DatabaseChanged);
    EXPECT_TRUE(prompter.finished());
}

// --- Phone numbers and directories

TEST_F(SimEditorsTest, PhoneNumberRefusalsComeInTheirOrder)
{
    const std::string tooLong(40, '5'); // one more than a DIAL entry holds
    const struct {
        std::string number;
        const char* text;
    } refused[] = {
        {"911-5551234",
         "Not a valid phone number -  The first digits cannot be 911.\nThis will result in an Emergency call."},
        {"511 555", "Not a valid phone number -  The first digits cannot be 511.\nThis is a reserved number sequence."},
        {"5 5-5", "The phone number is only 3 digits.  This is not a valid number."},
        {"", "This is not a valid number."},
        {"!!!!", "This is not a valid number."},
        {tooLong, "This is not a valid number."},
        {"555X1234", "Invalid digit found in the Phone Number, use 0-9, *, #, !, A, B, C and D only."},
    };
    for (const auto& row : refused) {
        PhoneNumberEditor editor(row.number);
        prompter.clear();
        EXPECT_FALSE(editor.CanClose(prompter)) << row.number;
        EXPECT_EQ(prompter.texts(), std::vector<std::string>{row.text}) << row.number;
        EXPECT_FALSE(editor.result());
    }

    const char short6[] = "The phone number is less than 7 digits long.  Are you sure you want this number?";
    PhoneNumberEditor shortNumber("55-5123");
    prompter.expect(short6, Answer::No).expect(short6, Answer::Yes);
    EXPECT_FALSE(shortNumber.CanClose(prompter));
    ASSERT_TRUE(shortNumber.CanClose(prompter));
    EXPECT_EQ(shortNumber.result(), "555123");

    PhoneNumberEditor good("1-800-555-0199!a");
    ASSERT_TRUE(good.CanClose(prompter));
    EXPECT_EQ(good.result(), "18005550199!a");
    EXPECT_TRUE(prompter.finished());
}

// Plays the phone number dialog: types `number` and presses OK.
SimDirEditor::NumberRunner typing(std::string number, Prompter& prompter)
{
    return [number, &prompter](PhoneNumberEditor& editor) {
        editor.number = number;
        editor.CanClose(prompter);
    };
}

TEST_F(SimEditorsTest, TwentyTenDigitNumbersDoNotFitTheTwentiethIsRefused)
{
    SimDirEditor editor(space);
    for (int i = 0; i < 19; ++i) {
        editor.selected[0] = i;
        ASSERT_TRUE(editor.Insert(0, prompter, typing("80055501" + std::to_string(10 + i), prompter))) << i;
    }
    EXPECT_EQ(editor.fill(0), 19 * 13); // 247
    EXPECT_EQ(editor.SetFill(0), "96% filled");
    editor.selected[0] = 19;
    EXPECT_FALSE(editor.Insert(0, prompter, typing("8005550129", prompter)));
    EXPECT_EQ(prompter.texts().back(), kTooManyEntries);
    EXPECT_EQ(editor.directory[0].phoneNumbers.size(), 19u);
    // A number that still fits (247 + 6 = 253) is taken.
    prompter.expect("The phone number is less than 7 digits long.  Are you sure you want this number?", Answer::Yes);
    EXPECT_TRUE(editor.Insert(0, prompter, typing("555012", prompter)));
    EXPECT_EQ(editor.UpdateList(0)[19], "555012");
    EXPECT_TRUE(prompter.finished());
}

TEST_F(SimEditorsTest, DirectoryListsInsertAboveTheSelectionDeleteAndEditAndAFullListDropsItsLast)
{
    SimDirEditor editor(space);
    EXPECT_EQ(editor.UpdateList(1), std::vector<std::string>(20, "empty"));
    editor.selected[1] = 5; // an empty slot: the number goes after the last one
    ASSERT_TRUE(editor.Editing(1, prompter, typing("5550001", prompter)));
    editor.selected[1] = 0;
    ASSERT_TRUE(editor.Insert(1, prompter, typing("5550002", prompter)));
    EXPECT_EQ(editor.directory[1].phoneNumbers, (std::vector<std::string>{"5550002", "5550001"}));
    editor.selected[1] = 1;
    ASSERT_TRUE(editor.Editing(1, prompter, typing("5550003", prompter)));
    editor.selected[1] = 0;
    ASSERT_TRUE(editor.Delete(1));
    EXPECT_EQ(editor.directory[1].phoneNumbers, std::vector<std::string>{"5550003"});
    EXPECT_FALSE(editor.Editing(1, prompter, [](PhoneNumberEditor&) {})); // cancelled

    for (int i = 1; i < 20; ++i)
        editor.directory[1].phoneNumbers.push_back("55500" + std::to_string(10 + i));
    const char full[] = "The directory is already full, inserting a new number will delete the last number.  Continue?";
    prompter.expect(full, Answer::No).expect(full, Answer::Yes);
    editor.selected[1] = 0;
    EXPECT_FALSE(editor.Insert(1, prompter, typing("5559999", prompter)));
    ASSERT_TRUE(editor.Insert(1, prompter, typing("5559999", prompter)));
    ASSERT_EQ(editor.directory[1].phoneNumbers.size(), 20u);
    EXPECT_EQ(editor.directory[1].phoneNumbers.front(), "5559999");
    EXPECT_EQ(editor.directory[1].phoneNumbers.back(), "5550028");
    EXPECT_TRUE(prompter.finished());
}

TEST_F(SimEditorsTest, DirectoriesWriteDialLinesCodesAndCycleToTheirGroups)
{
    SimDirEditor editor(space);
    editor.directory[0].phoneNumbers = {"5551234", "18005550100"};
    editor.directory[0].ackCode = "12";
    editor.directory[0].interrogateCode = "34";
    editor.directory[0].cycle = "15";

    editor.directory[0].ackCode = "1E";
    EXPECT_FALSE(editor.CanClose(prompter));
    editor.directory[0].ackCode = "12";
    editor.directory[0].cycle = "256";
    EXPECT_FALSE(editor.CanClose(prompter));
    editor.directory[0].cycle = "0";
    EXPECT_FALSE(editor.CanClose(prompter));
    EXPECT_EQ(prompter.texts(), (std::vector<std::string>{
                                    "Invalid digit found in the Acknowledge code, use 0-9, *, #, A, B, C and D only.",
                                    "The Cycle interval cannot be greater than 255 min.",
                                    "The Cycle interval cannot be less than 1 min."}));
    EXPECT_EQ(editor.focus, SimDirEditor::Field::Cycle);

    editor.directory[0].cycle = "15";
    editor.directory[1].phoneNumbers = {"5550000"};
    const char noAck[] = "Directory B has phone numbers but the Acknowledge Code is empty.  Calls from this directory "
                         "cannot be stopped without an Acknowledge code.  Do you want to enter the code now?";
    prompter.expect(noAck, Answer::Yes).expect(noAck, Answer::No);
    EXPECT_FALSE(editor.CanClose(prompter));
    EXPECT_EQ(editor.focusDirectory, 1);
    EXPECT_FALSE(space.DatabaseChanged);
    ASSERT_TRUE(editor.CanClose(prompter));

    const auto& a = space.image.dir[0].dirText;
    EXPECT_EQ(std::string(a.begin(), a.begin() + 22), "P5551234&P18::555:1::&"); // '0' is stored as ':'
    EXPECT_EQ(a[22], 0);
    EXPECT_EQ(space.image.group[0].shortTimer, 15);
    EXPECT_EQ(space.image.group[0].longTimer, 15);
    EXPECT_EQ(dtmfCodeText(space.image.group[0].ackCode), "12");
    EXPECT_EQ(dtmfCodeText(space.image.group[0].interrogateCode), "34");
    EXPECT_EQ(SimpleDirectoryNumbers(space.image.dir[1]), std::vector<std::string>{"5550000"});
    EXPECT_EQ(space.image.group[1].shortTimer, 20); // its cycle was not touched
    EXPECT_TRUE(space.DatabaseChanged);
    EXPECT_TRUE(prompter.finished());
}

TEST_F(SimEditorsTest, DirectoryWithOtherCommandsIsShownAsLinesAndOnlyAdvancedChangesIt)
{
    const std::string text = "P5551234W5&";
    std::copy(text.begin(), text.end(), space.image.dir[0].dirText.begin());
    SimDirEditor editor(space);
    EXPECT_FALSE(editor.numbersOnly(0));
    EXPECT_TRUE(editor.numbersOnly(1));
    EXPECT_EQ(editor.UpdateList(0)[0], " [DIAL]5551234 [WAIT]5");
    EXPECT_EQ(editor.UpdateList(0)[1], "empty");
    EXPECT_FALSE(editor.Insert(0, prompter, typing("5550000", prompter)));
    EXPECT_FALSE(editor.Delete(0));
    EXPECT_FALSE(editor.Editing(0, prompter, typing("5550000", prompter)));
    editor.directory[0].ackCode = "1";
    ASSERT_TRUE(editor.CanClose(prompter));
    EXPECT_EQ(std::string(space.image.dir[0].dirText.begin(), space.image.dir[0].dirText.begin() + 11), text);
}

TEST_F(SimEditorsTest, AdvancedEditorSeesTheNumbersEditedHereAndTheListFollowsIt)
{
    SimDirEditor editor(space);
    editor.directory[1].phoneNumbers = {"5551111"};
    bool ran = false;
    editor.Advanced(1, [&] {
        ran = true;
        EXPECT_EQ(SimpleDirectoryNumbers(space.image.dir[1]), std::vector<std::string>{"5551111"});
        SaveSimpleDirectory({"5552222", "5553333"}, space.image.dir[1]);
    });
    EXPECT_TRUE(ran);
    EXPECT_EQ(editor.directory[1].phoneNumbers, (std::vector<std::string>{"5552222", "5553333"}));
    EXPECT_FALSE(editor.changed());
}

// --- Outputs

TEST_F(SimEditorsTest, OutputTimerOf5000SwitchedToSecondsBecomes1638WithTheMessage)
{
    space.image.hardware.port[11].timer = 5000;
    space.image.hardware.port[11].scaleFlags = 0x02; // minutes
    SimoutEditor editor(space);
    ASSERT_TRUE(editor.output[3].timed);
    EXPECT_EQ(editor.output[3].timer.text, "5000");
    editor.ResolutionChanging(3, false, prompter);
    EXPECT_EQ(editor.output[3].timer.text, "1638");
    EXPECT_EQ(prompter.texts(),
              std::vector<std::string>{"Timer is out of range, it has been set to maximum for seconds: 1638."});

    prompter.clear();
    editor.output[3].timer.text = "0.5";
    editor.ResolutionChanging(3, true, prompter);
    EXPECT_EQ(editor.output[3].timer.text, "2");
    EXPECT_EQ(prompter.texts(),
              std::vector<std::string>{"Timer value cannot be less than 1 minute, it has been set to 2 minutes."});
}

TEST_F(SimEditorsTest, OutputTimerLimitsInSecondsAndMinutes)
{
    const struct {
        const char* text;
        bool minutes;
        const char* message; // empty: accepted without a word
        int count;           // -1: refused
    } rows[] = {
        {"1638", false, "", 65520},
        {"0", false, "", 0},
        {"1638.5", false, "The timer interval cannot be more than 1638 sec.", -1},
        {"-1", false, "The timer interval cannot be less than zero.", -1},
        {"1", true,
         "Setting the timer interval to 1 minute with 1 minute resolution will result in a time between zero and 1 "
         "minute.  Use the Seconds setting for short times.",
         1},
        {"0", true, "The timer interval cannot be less than 1 min.", -1},
        {"65536", true, "The timer interval cannot be greater than 65535 min.", -1},
        {"65535", true, "", 65535},
    };
    for (const auto& row : rows) {
        SimTime time{SimTime::Kind::OutputTimer, row.text, row.minutes};
        prompter.clear();
        const auto count = time.validate(prompter);
        EXPECT_EQ(count ? int(*count) : -1, row.count) << row.text;
        EXPECT_EQ(prompter.texts().empty() ? std::string() : prompter.texts().front(), row.message) << row.text;
    }
}

TEST_F(SimEditorsTest, OutputTypeChangeBlanksTheOldFieldsAndOkWritesPointAndPort)
{
    const PointRecord point12 = space.image.alm[11];
    SimoutEditor editor(space);
    EXPECT_FALSE(editor.output[0].timed); // point 9 is on/off in the template
    editor.output[0].onCode = "11";
    editor.output[0].offCode = "22";
    editor.TypeChanging(0, true);
    EXPECT_EQ(editor.output[0].offCode, "");
    EXPECT_EQ(editor.output[0].timer.text, "10.000");
    editor.output[0].timer.text = "2.5";

    editor.output[1].offCode = "2#X";
    EXPECT_FALSE(editor.CanClose(prompter));
    EXPECT_EQ(prompter.texts().back(), "Invalid digit found in the DTMF OFF code, use 0-9, *, #, A, B, C and D only.");
    EXPECT_EQ(editor.focusRow, 1);
    editor.output[1].offCode = "2#";
    ASSERT_TRUE(editor.CanClose(prompter));

    const PointRecord& point = space.image.alm[8];
    EXPECT_EQ(point.type, kPointTimerOutput);
    EXPECT_EQ(dtmfCodeText(point.onCode), "11");
    EXPECT_EQ(point.offCode[0], 0);
    EXPECT_EQ(space.image.hardware.port[8].typeFlags, 1);
    EXPECT_EQ(space.image.hardware.port[8].timer, 100);
    EXPECT_EQ(dtmfCodeText(space.image.alm[9].offCode), "2#");
    // Output 4's point is not set up in the template and stays so: its row was not touched.
    EXPECT_EQ(space.image.alm[11], point12);
}

TEST_F(SimEditorsTest, HardwareOutputsShowTheirRoles)
{
    SimoutEditor editor(space);
    const auto roles = editor.hardwareRoles();
    ASSERT_EQ(roles.size(), 5u);
    EXPECT_EQ(roles[0].output, "Output 4, also a user output");
    EXPECT_EQ(roles[1].output, "Output 5");
    EXPECT_EQ(roles[2].output, "Output 6");
    EXPECT_EQ(roles[3].output, "Output 7");
    EXPECT_EQ(roles[4].output, "Output 8");
}

// --- Alarms

TEST_F(SimEditorsTest, AlarmFormatAndDebounceGoToAllEightInputsAndPoints)
{
    AlarmsEditor editor(space);
    EXPECT_EQ(editor.controls.format, AlarmsEditor::Format::NormallyHigh);
    EXPECT_EQ(editor.controls.debounce.text, "1.000");
    EXPECT_TRUE(editor.rowEnabled(0));
    editor.controls.format = AlarmsEditor::Format::NormallyLowLatching;
    editor.controls.debounce.text = "5000";
    editor.ResolutionChanging(true, prompter);
    editor.ResolutionChanging(false, prompter);
    EXPECT_EQ(prompter.texts().back(), "Debounce timer is out of range, it has been set to maximum for seconds: 1638.");
    editor.controls.debounce.text = "-0.5";
    EXPECT_FALSE(editor.CanClose(prompter));
    EXPECT_EQ(prompter.texts().back(), "The debounce interval cannot be less than zero sec.");
    editor.controls.debounce.text = "0.5";

    editor.controls.alarm[2].use = AlarmsEditor::Use::Disabled;
    editor.controls.alarm[3].use = AlarmsEditor::Use::DirB;
    editor.controls.alarm[3].name = "Back door";
    EXPECT_FALSE(editor.rowEnabled(2));
    ASSERT_TRUE(editor.CanClose(prompter));

    for (int i = 0; i < 8; ++i) {
        EXPECT_EQ(space.image.hardware.port[i].typeFlags, 0x80) << i;
        EXPECT_EQ(space.image.hardware.port[i].debounce, 20) << i;
        EXPECT_EQ(space.image.hardware.port[i].scaleFlags & 1, 0) << i;
        EXPECT_EQ(space.image.alm[i].latching, 1) << i;
    }
    EXPECT_EQ(space.image.alm[2].inactive, 1);
    EXPECT_EQ(space.image.alm[3].inactive, 0);
    EXPECT_EQ(space.image.alm[3].groupMask, 2);
    EXPECT_EQ(nameText(space.image.alm[3].name), "Back door       ");
    EXPECT_EQ(space.image.alm[0].groupMask, 1);

    AlarmsEditor reopened(space);
    EXPECT_EQ(reopened.controls.format, AlarmsEditor::Format::NormallyLowLatching);
    EXPECT_EQ(reopened.controls.alarm[2].use, AlarmsEditor::Use::Disabled);
    EXPECT_EQ(reopened.controls.alarm[3].use, AlarmsEditor::Use::DirB);
    EXPECT_EQ(reopened.controls.alarm[3].name, "Back door");
    EXPECT_FALSE(reopened.changed());
}

} // namespace
} // namespace rk4
