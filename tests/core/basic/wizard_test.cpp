#include "core/basic/basic_fields.h"
#include "core/basic/simple_check.h"
#include "core/basic/wizard.h"
#include "core/database/defaults.h"
#include "core/database/dtmf.h"
#include "core/report/warnings.h"
#include "tests/support/scripted_prompter.h"

#include <gtest/gtest.h>

#include <cstring>
#include <optional>

using namespace rk4;
using rk4::test::ScriptedPrompter;

namespace {

Database basicDefault()
{
    Database db;
    db.gen.basicMode = 1;
    ClearDatabase(db, false);
    return db;
}

class WizardTest : public ::testing::Test {
  protected:
    Database db = basicDefault();
    const Database fresh = db;
    std::optional<BasicWizard> wizard{std::in_place, db};

    void restart() { wizard.emplace(db); }
    ScriptedPrompter prompter;

    void pick(int row, WizardStep from)
    {
        ASSERT_EQ(wizard->step(), from);
        wizard->setChoice(row);
        ASSERT_TRUE(wizard->Forward(prompter)) << wizard->prompt().question;
    }
    void type(const std::string& text, WizardStep from)
    {
        ASSERT_EQ(wizard->step(), from);
        wizard->setEntry(text);
        ASSERT_TRUE(wizard->Forward(prompter)) << wizard->prompt().question << " <- " << text;
    }
    void yes(WizardStep from)
    {
        ASSERT_EQ(wizard->step(), from);
        ASSERT_TRUE(wizard->Yes());
    }
    void no(WizardStep from)
    {
        ASSERT_EQ(wizard->step(), from);
        ASSERT_TRUE(wizard->No());
    }
    // An answer the wizard must not take: it stays on the question.
    void refused(const std::string& text)
    {
        const WizardPosition before = wizard->position();
        wizard->setEntry(text);
        EXPECT_FALSE(wizard->Forward(prompter)) << text;
        EXPECT_EQ(wizard->position(), before);
    }
    std::string lastText() const { return prompter.messages().empty() ? "" : prompter.messages().back().text; }

    // No alarms and no outputs: the shortest way to the unit's questions.
    void walkToRings()
    {
        prompter.expect("No alarms have been selected.  Are you sure that you want the unit to never call out?",
                        Answer::Yes);
        pick(0, WizardStep::AlarmCount);
        pick(0, WizardStep::OutputCount);
        ASSERT_EQ(wizard->step(), WizardStep::Rings);
    }
    void walkToModemTime()
    {
        walkToRings();
        pick(1, WizardStep::Rings);
        no(WizardStep::CallProgress);
        type("1234", WizardStep::AccessCode);
        type("5678", WizardStep::ModemCode);
    }
    // One alarm on Directory A, seconds debounce, no outputs: the first number.
    void walkToFirstNumber()
    {
        pick(1, WizardStep::AlarmCount);
        yes(WizardStep::AllToA);
        pick(1, WizardStep::InputFormat);
        no(WizardStep::DebounceScale);
        type("1", WizardStep::DebounceTime);
        pick(0, WizardStep::OutputCount);
        ASSERT_EQ(wizard->step(), WizardStep::PhoneNumber);
    }
    // Two alarms, one on each directory, one number each, through to the
    // codes of the unit; `codes` are A's acknowledge and interrogate, B's,
    // the Access and the Modem Enable codes.
    void walkWithCodes(const std::array<const char*, 6>& codes)
    {
        pick(2, WizardStep::AlarmCount);
        yes(WizardStep::AllToA);
        yes(WizardStep::OtherAsWell);
        no(WizardStep::AlarmDirectory);
        yes(WizardStep::AlarmDirectory);
        pick(0, WizardStep::InputFormat);
        no(WizardStep::DebounceScale);
        type("1", WizardStep::DebounceTime);
        pick(0, WizardStep::OutputCount);
        for (int d = 0; d < 2; ++d) {
            type(d == 0 ? "5551234" : "5554321", WizardStep::PhoneNumber);
            no(WizardStep::AnotherNumber);
            type("20", WizardStep::CycleTimer);
            type(codes[2 * d], WizardStep::AckCode);
            type(codes[2 * d + 1], WizardStep::IntCode);
        }
        pick(1, WizardStep::Rings);
        no(WizardStep::CallProgress);
        type(codes[4], WizardStep::AccessCode);
        type(codes[5], WizardStep::ModemCode);
        wizard->setEntry("60");
    }
};

std::string dirText(const DirectoryRecord& record) { return reinterpret_cast<const char*>(record.dirText.data()); }

} // namespace

TEST_F(WizardTest, NoAlarmsAndNoOutputsLeadStraightToTheRingsQuestion)
{
    EXPECT_EQ(wizard->prompt().question, "How many Alarms would you like to have?");
    EXPECT_EQ(wizard->prompt().choices.front(), "None");
    // No to "never call out" keeps the user on the alarm count.
    prompter.expect("No alarms have been selected.  Are you sure that you want the unit to never call out?",
                    Answer::No);
    wizard->setChoice(0);
    EXPECT_FALSE(wizard->Forward(prompter));
    EXPECT_EQ(wizard->step(), WizardStep::AlarmCount);

    walkToRings();
    EXPECT_EQ(wizard->prompt().question, "How many rings before an incoming call is answered?");
    EXPECT_EQ(wizard->prompt().stage, 9);
    for (int i = 0; i < kInputCount; ++i)
        EXPECT_EQ(db.alm[i].inactive, 1) << "alarm " << i + 1;
    EXPECT_TRUE(prompter.finished());
}

TEST_F(WizardTest, ModemTimerTakesSixtyTo1638SecondsIntoTheModemEnableOutput)
{
    walkToModemTime();
    ASSERT_EQ(wizard->step(), WizardStep::ModemTime);
    refused("59");
    EXPECT_EQ(lastText(), "The Modem Timer cannot be less than 60 seconds.");
    refused("1639");
    EXPECT_EQ(lastText(), "The Modem Timer cannot be greater than 1638 seconds.");

    // The Basic template's Modem Enable output is output 4 (hardware entry 11).
    ASSERT_EQ(db.gen.carrierDetectOut, 4);
    type("1638", WizardStep::ModemTime);
    EXPECT_EQ(db.hardware.port[11].timer, 65520);
    EXPECT_EQ(wizard->step(), WizardStep::Complete);
    wizard->Backward(); // the end is final
    EXPECT_EQ(wizard->step(), WizardStep::Complete);
}

TEST_F(WizardTest, ModemTimerOfSixtySecondsIsAccepted)
{
    walkToModemTime();
    db.hardware.port[11].timer = 1;
    type("60", WizardStep::ModemTime);
    EXPECT_EQ(db.hardware.port[11].timer, 2400);
    EXPECT_EQ(db.hardware.port[11].scaleFlags & 0x02, 0);
}

TEST_F(WizardTest, AsksForTwentyNumbersAtMostAndWritesThemAsDialLines)
{
    walkToFirstNumber();
    EXPECT_EQ(wizard->prompt().question, "Enter the first phone number in Directory A");
    for (int i = 0; i < 20; ++i) {
        const std::string number = "55510" + std::to_string(10 + i);
        type(number, WizardStep::PhoneNumber);
        if (i < 19) {
            EXPECT_EQ(wizard->prompt().question, "Do you want to add another phone number to Directory A");
            yes(WizardStep::AnotherNumber);
        }
        if (i == 18) {
            EXPECT_EQ(wizard->prompt().question, "Enter the twentyth phone number in Directory A");
        }
    }
    // After the twentieth there is no "another" question.
    EXPECT_EQ(wizard->step(), WizardStep::CycleTimer);
    refused("256");
    EXPECT_EQ(lastText(), "The Cycle interval cannot be greater than 255 min.");
    type("5", WizardStep::CycleTimer);
    prompter.expect("The Acknowledge code is empty.  You will not be able to stop the alarm sequence.  Do you want to "
                    "change it?",
                    Answer::No);
    type("", WizardStep::AckCode);
    type("2", WizardStep::IntCode);
    pick(0, WizardStep::Rings);
    no(WizardStep::CallProgress);
    type("3", WizardStep::AccessCode);
    type("4", WizardStep::ModemCode);
    type("90", WizardStep::ModemTime);

    const auto stored = SimpleDirectoryNumbers(db.dir[0]);
    ASSERT_EQ(stored.size(), 20u);
    EXPECT_EQ(stored.front(), "5551010");
    EXPECT_EQ(stored.back(), "5551029");
    EXPECT_EQ(dirText(db.dir[0]).substr(0, 18), "P5551:1:&P5551:11&");
    EXPECT_EQ(db.group[0].shortTimer, 5);
    EXPECT_EQ(db.group[0].longTimer, 5);
}

TEST_F(WizardTest, RefusesPhoneNumbersAndAsksAboutShortOnes)
{
    walkToFirstNumber();
    refused("5115551234");
    EXPECT_EQ(lastText(),
              "Not a valid phone number -  The first digits cannot be 511.\nThis is a reserved number sequence.");
    refused("123");
    EXPECT_EQ(lastText(), "The phone number is only 3 digits.  This is not a valid number.");
    refused("555E1234");
    EXPECT_EQ(lastText(), "Invalid digit found in the Phone Number, use 0-9, *, #, !, A, B, C and D only.");

    const char kShort[] = "The phone number has less than 7 digits.  Do you want to change it?";
    prompter.expect(kShort, Answer::Yes);
    refused("55512");
    prompter.expect(kShort, Answer::No);
    type("555-12", WizardStep::PhoneNumber);
    EXPECT_EQ(wizard->phoneNumbers()[0][0], "55512");
    EXPECT_TRUE(prompter.finished());
}

TEST_F(WizardTest, TimesWarnAboutOneMinuteAndRefuseWhatTheUnitCannotHold)
{
    pick(1, WizardStep::AlarmCount);
    yes(WizardStep::AllToA);
    pick(0, WizardStep::InputFormat);
    EXPECT_EQ(wizard->prompt().status, "The Debounce time scale is set for seconds.");
    no(WizardStep::DebounceScale);
    refused("0.5");
    EXPECT_EQ(lastText(), "The debounce interval cannot be less than 1 sec.");
    refused("1639");
    EXPECT_EQ(lastText(), "The debounce interval cannot be more than 1638 sec.");
    type("1.5", WizardStep::DebounceTime);
    for (int i = 0; i < kInputCount; ++i)
        EXPECT_EQ(db.hardware.port[i].debounce, 60) << "input " << i + 1;

    pick(1, WizardStep::OutputCount);
    EXPECT_EQ(wizard->prompt().status, "Output 1 is set as an ON/OFF type.");
    EXPECT_EQ(wizard->prompt().question, "Do you want it to be a Timed output?");
    yes(WizardStep::OutputType);
    type("12", WizardStep::OnCode);
    EXPECT_EQ(wizard->prompt().status, "The time scale for Output 1 is set to seconds.");
    yes(WizardStep::OutputScale);
    EXPECT_EQ(wizard->prompt().question, "Enter the number of minutes that Output 1 will be on");
    refused("0");
    EXPECT_EQ(lastText(), "The timer interval cannot be less than 1 min.");
    refused("65536");
    EXPECT_EQ(lastText(), "The timer interval cannot be greater than 65535 min.");

    type("1", WizardStep::OutputTime);
    EXPECT_EQ(lastText(), "Setting the timer interval to 1 minute with 1 minute resolution will result in a time "
                          "between zero and 1 minute.  Use the Seconds setting for short times.");
    EXPECT_EQ(prompter.messages().back().title, "Warning");
    EXPECT_EQ(db.hardware.port[8].timer, 1);
    EXPECT_EQ(db.hardware.port[8].scaleFlags & 0x02, 0x02);
    EXPECT_EQ(db.hardware.port[8].typeFlags, 1);
    EXPECT_EQ(db.alm[8].type, kPointTimerOutput);
    // The timed output is done: on to Directory A's first number.
    EXPECT_EQ(wizard->step(), WizardStep::PhoneNumber);
}

TEST_F(WizardTest, RefusesBadCodesAndAsksAboutEmptyOnes)
{
    walkToRings();
    pick(0, WizardStep::Rings);
    no(WizardStep::CallProgress);
    refused("12E");
    EXPECT_EQ(lastText(), "Invalid digit found in the Access code, use 0-9, *, #, A, B, C and D only.");
    prompter.expect("The Access code is empty.  Remote programming will be possible by ANYONE.  Do you want to change "
                    "it?",
                    Answer::Yes);
    refused("");
    EXPECT_EQ(wizard->prompt().maxLength, kMaxCodeDigits);
    wizard->setEntry("123456789");
    EXPECT_EQ(wizard->prompt().entry, "1234567");
    type("*#ab", WizardStep::AccessCode);
    EXPECT_EQ(dtmfCodeText(db.gen.accessCode), "*#AB");
    prompter.expect("The Modem Enable code is empty.  Remote data transfer will not be possible.  Do you want to "
                    "change it?",
                    Answer::No);
    type("", WizardStep::ModemCode);
    EXPECT_TRUE(prompter.finished());
}

TEST_F(WizardTest, ComparesEveryPairOfCodesAtTheEnd)
{
    struct Case {
        std::array<const char*, 6> codes; // ack A, int A, ack B, int B, access, modem enable
        const char* message;
        Answer answer; // for a question; Ok for a refusal
        WizardStep then;
        int dirIndex;
    };
    const Case cases[] = {
        {{"11", "12", "11", "22", "31", "32"},
         "The Acknowledge Code [11] for Directory B is the same as the Acknowledge Code for Directory A.  Both "
         "Directories will be acknowledged with the same code.  Is this what you want?",
         Answer::Yes,
         WizardStep::Complete,
         0},
        {{"11", "12", "21", "12", "31", "32"},
         "The Interrogate Code [12] for Directory B is the same as the Interrogate Code for Directory A.  Both "
         "Directories will be interrogated with the same code.  Is this what you want?",
         Answer::No,
         WizardStep::IntCode,
         1},
        {{"11", "11", "21", "22", "31", "32"},
         "The Interrogate Code [11] for Directory A is the same as the Acknowledge Code for Directory A.  Both actions "
         "will occur with this code. Is this what you want?",
         Answer::No,
         WizardStep::IntCode,
         0},
        {{"11", "12", "12", "22", "31", "32"},
         "The Acknowledge Code [12] for Directory B is the same as the Interrogate Code for Directory A.  Both actions "
         "will occur with this code. Is this what you want?",
         Answer::No,
         WizardStep::AckCode,
         1},
        {{"11", "12", "21", "22", "31", "21"},
         "The Acknowledge Code [21] for Directory B is the same as the Modem Enable Code for remote data access.  "
         "These codes cannot be the same.",
         Answer::Ok,
         WizardStep::AckCode,
         1},
        {{"11", "12", "21", "22", "12", "32"},
         "The Access Code [12] is the same as the Interrogate Code for Directory A.  These codes cannot be the same.",
         Answer::Ok,
         WizardStep::AccessCode,
         0},
        {{"11", "12", "21", "22", "3A", "3a"},
         "The Modem Enable Code [3A] is the same as the Access Code.  These codes cannot be the same.",
         Answer::Ok,
         WizardStep::ModemCode,
         0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.message);
        db = fresh;
        restart();
        prompter.clear();
        walkWithCodes(c.codes);
        if (c.answer != Answer::Ok)
            prompter.expect(c.message, c.answer);
        EXPECT_EQ(wizard->Forward(prompter), c.then == WizardStep::Complete);
        EXPECT_EQ(lastText(), c.message);
        EXPECT_EQ(wizard->step(), c.then);
        EXPECT_EQ(wizard->position().dirIndex, c.dirIndex);
        EXPECT_TRUE(prompter.finished());
    }
}

TEST_F(WizardTest, BackwardShowsTheAnswersGivenAndTheImageFollowsTheNewOnes)
{
    walkToFirstNumber();
    type("5551234", WizardStep::PhoneNumber);
    yes(WizardStep::AnotherNumber);
    wizard->Backward();
    wizard->Backward();
    EXPECT_EQ(wizard->step(), WizardStep::PhoneNumber);
    EXPECT_EQ(wizard->prompt().entry, "5551234");
    wizard->Backward();
    EXPECT_EQ(wizard->step(), WizardStep::OutputCount);
    for (int i = 0; i < 5; ++i)
        wizard->Backward();
    EXPECT_EQ(wizard->step(), WizardStep::AlarmCount);
    EXPECT_FALSE(wizard->canGoBack());
    EXPECT_EQ(wizard->prompt().choice, 1);

    // A new count of alarms is written at once.
    pick(3, WizardStep::AlarmCount);
    EXPECT_EQ(db.alm[2].inactive, 0);
    EXPECT_EQ(db.alm[3].inactive, 1);
    no(WizardStep::AllToA);
    EXPECT_EQ(wizard->prompt().status, "All of the Alarms are set to use Directory B.");
    EXPECT_EQ(wizard->prompt().question, "Do you want to use Directory A as well?");
    yes(WizardStep::OtherAsWell);
    EXPECT_EQ(wizard->prompt().status, "Alarm 1 is using Directory B");
    EXPECT_EQ(wizard->prompt().question, "Do you want this alarm to use A instead?");
    yes(WizardStep::AlarmDirectory);
    EXPECT_EQ(db.alm[0].groupMask, 1);
    // Going back and declining the mix puts every alarm on B again.
    wizard->Backward();
    wizard->Backward();
    no(WizardStep::OtherAsWell);
    EXPECT_EQ(db.alm[0].groupMask, 2);
    EXPECT_EQ(wizard->step(), WizardStep::InputFormat);
}

TEST_F(WizardTest, LeavingEarlyAsksAndPutsTheDefaultBasicDatabaseBack)
{
    walkToFirstNumber();
    ASSERT_NE(db, fresh);
    prompter.expect(kWizardExitQuestion, Answer::No);
    EXPECT_FALSE(wizard->CanClose(prompter));
    EXPECT_NE(db, fresh);
    prompter.expect(kWizardExitQuestion, Answer::Yes);
    EXPECT_TRUE(wizard->CanClose(prompter));
    EXPECT_EQ(prompter.messages().back().title, "Exit the Basic Wizard");
    EXPECT_EQ(db, fresh);
}

TEST_F(WizardTest, KeptDirectoriesAreNeitherAskedForNorRewritten)
{
    const char kept[] = "P5559876&";
    std::memcpy(db.dir[0].dirText.data(), kept, sizeof kept);
    const Database before = db;
    restart();
    EXPECT_FALSE(wizard->asksPhoneNumbers());
    pick(1, WizardStep::AlarmCount);
    yes(WizardStep::AllToA);
    pick(0, WizardStep::InputFormat);
    no(WizardStep::DebounceScale);
    type("1", WizardStep::DebounceTime);
    pick(0, WizardStep::OutputCount);
    EXPECT_EQ(wizard->step(), WizardStep::CycleTimer);
    type("20", WizardStep::CycleTimer);
    type("1", WizardStep::AckCode);
    type("2", WizardStep::IntCode);
    pick(0, WizardStep::Rings);
    no(WizardStep::CallProgress);
    type("3", WizardStep::AccessCode);
    type("4", WizardStep::ModemCode);
    type("60", WizardStep::ModemTime);
    EXPECT_EQ(db.dir, before.dir);
}

TEST_F(WizardTest, AFullRunGivesABasicImageWithOnlyTheWarningsItsAnswersImply)
{
    pick(8, WizardStep::AlarmCount);
    EXPECT_EQ(wizard->prompt().question, "Do you want to set them all to use Directory A?");
    yes(WizardStep::AllToA);
    EXPECT_EQ(wizard->prompt().status, "All of the Alarms are set to use Directory A.");
    yes(WizardStep::OtherAsWell);
    for (int i = 0; i < 8; ++i)
        i >= 6 ? yes(WizardStep::AlarmDirectory) : no(WizardStep::AlarmDirectory);
    EXPECT_EQ(wizard->prompt().question, "Select what type of input format should be used?");
    pick(3, WizardStep::InputFormat); // Normally Low, Latching
    yes(WizardStep::DebounceScale);
    EXPECT_EQ(wizard->prompt().question, "Enter the number of minutes that the input will be debounced.");
    type("2", WizardStep::DebounceTime);
    EXPECT_EQ(wizard->prompt().question, "How many Outputs will you be using?");
    pick(2, WizardStep::OutputCount);
    no(WizardStep::OutputType);
    EXPECT_EQ(wizard->prompt().question, "Enter the DTMF ON code for Output 1");
    type("41", WizardStep::OnCode);
    EXPECT_EQ(wizard->prompt().question, "Enter the DTMF OFF code for Output 1");
    type("40", WizardStep::OffCode);
    EXPECT_EQ(wizard->prompt().status, "Output 2 is set as an ON/OFF type.");
    yes(WizardStep::OutputType);
    type("42", WizardStep::OnCode);
    no(WizardStep::OutputScale);
    EXPECT_EQ(wizard->prompt().question, "Enter the number of seconds that Output 2 will be on");
    type("5", WizardStep::OutputTime);

    EXPECT_EQ(wizard->prompt().title, "DIRECTORY A");
    type("555 1234", WizardStep::PhoneNumber);
    yes(WizardStep::AnotherNumber);
    EXPECT_EQ(wizard->prompt().question, "Enter the second phone number in Directory A");
    type("18005550100", WizardStep::PhoneNumber);
    no(WizardStep::AnotherNumber);
    EXPECT_EQ(wizard->prompt().question, "How many minutes would you like between callout cycles for Directory A");
    type("10", WizardStep::CycleTimer);
    EXPECT_EQ(wizard->prompt().question, "What Acknowledge code would you like for Directory A");
    type("11", WizardStep::AckCode);
    EXPECT_EQ(wizard->prompt().question, "What Interrogate code would you like for Directory A");
    type("12", WizardStep::IntCode);
    EXPECT_EQ(wizard->prompt().question, "Enter the first phone number in Directory B");
    type("5559999", WizardStep::PhoneNumber);
    no(WizardStep::AnotherNumber);
    type("15", WizardStep::CycleTimer);
    type("21", WizardStep::AckCode);
    type("22", WizardStep::IntCode);
    EXPECT_EQ(wizard->prompt().question, "What Interrogate code would you like for the output controls in Directory A");
    EXPECT_EQ(wizard->prompt().entry, "12"); // Directory A's, asked again for the outputs
    type("12", WizardStep::OutputIntCode);
    pick(3, WizardStep::Rings);
    yes(WizardStep::CallProgress);
    EXPECT_EQ(wizard->prompt().question, "What Access code would you like for the unit?");
    type("1999", WizardStep::AccessCode);
    type("2999", WizardStep::ModemCode);
    EXPECT_EQ(wizard->prompt().question, "What Modem Timer value (seconds) would you like for the unit?");
    EXPECT_EQ(wizard->prompt().entry, "60");
    type("120", WizardStep::ModemTime);

    EXPECT_EQ(wizard->prompt().title, "COMPLETE");
    EXPECT_EQ(wizard->prompt().question, "The Basic Wizard is finished.\nYou will be returned to the main screen where "
                                         "all of the settings can be viewed and changed.");
    EXPECT_TRUE(wizard->CanClose(prompter));
    EXPECT_TRUE(prompter.finished());

    EXPECT_EQ(CheckForSimple(db).problems, 0u);
    // The site name is never asked for; output 4 stays the template's Modem
    // Enable output, which is not a user output with an On code.
    EXPECT_EQ(ConfigurationWarnings(db),
              (std::vector<std::string>{"There is no Site Name in the General section.",
                                        "Output 4 is a Timed type without an On code.\nThe output can never be "
                                        "activated."}));

    EXPECT_EQ(dirText(db.dir[0]), "P5551234&P18::555:1::&");
    EXPECT_EQ(dirText(db.dir[1]), "P5559999&");
    for (int i = 0; i < 8; ++i) {
        EXPECT_EQ(db.alm[i].groupMask, i >= 6 ? 2 : 1) << "alarm " << i + 1;
        EXPECT_EQ(db.alm[i].latching, 1);
        EXPECT_EQ(db.alm[i].inactive, 0);
        EXPECT_EQ(db.hardware.port[i].typeFlags & 0x80, 0); // normally low
        EXPECT_EQ(db.hardware.port[i].debounce, 2);
        EXPECT_EQ(db.hardware.port[i].scaleFlags & 0x01, 0x01);
    }
    EXPECT_EQ(dtmfCodeText(db.alm[8].onCode), "41");
    EXPECT_EQ(dtmfCodeText(db.alm[8].offCode), "40");
    EXPECT_EQ(db.alm[9].type, kPointTimerOutput);
    EXPECT_EQ(db.hardware.port[9].timer, 200);
    EXPECT_EQ(db.group[1].shortTimer, 15);
    EXPECT_EQ(dtmfCodeText(db.group[1].interrogateCode), "22");
    EXPECT_EQ(db.gen.ringsToAnswer, 4);
    EXPECT_EQ(db.gen.callProgress, 1);
    EXPECT_EQ(db.hardware.port[11].timer, 4800);
}

// Whole runs from a script of answers: each image passes the Basic check and
// warns only about what its answers left out (and the template's site name).
TEST_F(WizardTest, ScriptedRunsWarnOnlyAboutWhatTheAnswersLeftOut)
{
    struct Step {
        WizardStep at;
        char action; // 'p' pick a row, 't' type, 'y' Yes, 'n' No
        const char* value = "";
    };
    struct Case {
        const char* name;
        std::vector<const char*> questions; // the questions the answers raise: go on regardless
        std::vector<Step> script;
        std::vector<std::string> warnings;
    };
    const char kNoAlarms[] = "No alarms have been selected.  Are you sure that you want the unit to never call out?";
    const Case cases[] = {
        {"nothing used and the unit's codes left empty",
         {kNoAlarms,
          "The Access code is empty.  Remote programming will be possible by ANYONE.  Do you want to change it?",
          "The Modem Enable code is empty.  Remote data transfer will not be possible.  Do you want to change it?"},
         {{WizardStep::AlarmCount, 'p', "0"},
          {WizardStep::OutputCount, 'p', "0"},
          {WizardStep::Rings, 'p', "1"},
          {WizardStep::CallProgress, 'n'},
          {WizardStep::AccessCode, 't', ""},
          {WizardStep::ModemCode, 't', ""},
          {WizardStep::ModemTime, 't', "60"}},
         {"The Access Code is empty - program and control access to the Rk4 will be unrestricted.",
          "The Modem Enable Code is empty - remote data transfer will not be available.",
          "There is no Site Name in the General section.",
          "Output 4 is a Timed type without an On code.\nThe output can never be activated.",
          "All of the alarms are disabled. No reporting will occur."}},
        {"alarms on B with a short number and no acknowledge code, four outputs",
         {"The phone number has less than 7 digits.  Do you want to change it?",
          "The Acknowledge code is empty.  You will not be able to stop the alarm sequence.  Do you want to change "
          "it?"},
         {{WizardStep::AlarmCount, 'p', "3"},      {WizardStep::AllToA, 'n'},
          {WizardStep::OtherAsWell, 'n'},          {WizardStep::InputFormat, 'p', "2"},
          {WizardStep::DebounceScale, 'n'},        {WizardStep::DebounceTime, 't', "0.5"},
          {WizardStep::DebounceTime, 't', "1638"}, {WizardStep::OutputCount, 'p', "4"},
          {WizardStep::OutputType, 'n'},           {WizardStep::OnCode, 't', "11"},
          {WizardStep::OffCode, 't', "10"},        {WizardStep::OutputType, 'y'},
          {WizardStep::OnCode, 't', "21"},         {WizardStep::OutputScale, 'n'},
          {WizardStep::OutputTime, 't', "5"},      {WizardStep::OutputType, 'n'},
          {WizardStep::OnCode, 't', "31"},         {WizardStep::OffCode, 't', "30"},
          {WizardStep::OutputType, 'n'},           {WizardStep::OnCode, 't', "41"},
          {WizardStep::OutputScale, 'n'},          {WizardStep::OutputTime, 't', "3"},
          {WizardStep::PhoneNumber, 't', "55512"}, {WizardStep::AnotherNumber, 'n'},
          {WizardStep::CycleTimer, 't', "255"},    {WizardStep::AckCode, 't', ""},
          {WizardStep::IntCode, 't', "7"},         {WizardStep::OutputIntCode, 't', "8"},
          {WizardStep::Rings, 'p', "8"},           {WizardStep::CallProgress, 'y'},
          {WizardStep::AccessCode, 't', "1"},      {WizardStep::ModemCode, 't', "2"},
          {WizardStep::ModemTime, 't', "90"}},
         {"There is no Site Name in the General section.", "Directory B does not have an Acknowledge Code.",
          "Directory B has one or more phone numbers with less than 7 digits."}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        db = fresh;
        restart();
        prompter.clear();
        for (const char* question : c.questions)
            prompter.expect(question, question == kNoAlarms ? Answer::Yes : Answer::No);
        for (const Step& s : c.script) {
            ASSERT_EQ(wizard->step(), s.at) << wizard->prompt().question;
            switch (s.action) {
            case 'p':
                wizard->setChoice(std::atoi(s.value));
                wizard->Forward(prompter);
                break;
            case 't':
                wizard->setEntry(s.value);
                wizard->Forward(prompter);
                break;
            case 'y': wizard->Yes(); break;
            case 'n': wizard->No(); break;
            }
        }
        ASSERT_TRUE(wizard->finished()) << wizard->prompt().question;
        EXPECT_EQ(CheckForSimple(db).problems, 0u);
        EXPECT_EQ(ConfigurationWarnings(db), c.warnings);
    }
}
