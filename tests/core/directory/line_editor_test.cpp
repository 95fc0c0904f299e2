#include "core/directory/line_editor.h"

#include "tests/support/scripted_prompter.h"

#include <gtest/gtest.h>

#include <cstring>

namespace rk4 {
namespace {

using test::ScriptedPrompter;

// A line written in the stored form, e.g. "P5551234V" (a shown 0 is stored as ':').
DirLine lineOf(const std::string& stored)
{
    DirectoryRecord record;
    std::memcpy(record.dirText.data(), stored.data(), stored.size());
    return DecodeDirectory(record)[0];
}

LineEditor editorOn(const std::string& stored, int slot = 0, bool callProgress = false)
{
    LineEditor editor(lineOf(stored), 0, 0, callProgress);
    editor.UpdateSelect(slot);
    return editor;
}

struct ButtonCase {
    const char* line;
    int slot;
    DirCommand command;
    const char* refusal; // nullptr: no message
    const char* after;   // the line's text afterwards
};

TEST(LineEditor, CommandButtonsKeepTheOrderOfALine)
{
    const ButtonCase cases[] = {
        {"", 0, DirCommand::Voice, "Voice cannot be the first command - possibly dial first?", ""},
        {"", 0, DirCommand::Alert, "Alert cannot be the first command - possibly dial first?", ""},
        {"", 3, DirCommand::Dtmf, "DTMF cannot be the first command - possibly dial first?", ""},
        {"P5551234V", 1, DirCommand::Dial, "Dial command must be first in the list.", " [DIAL]5551234 [VOICE]"},
        {"P5551234V", 0, DirCommand::Dial, nullptr, " [DIAL]5551234 [VOICE]"},
        {"W5", 0, DirCommand::Dial, nullptr, " [DIAL]0000 [WAIT]5"},
        {"X", 0, DirCommand::Dial, "The Auto Ack command must be the only entry on a directory line.", " [AUTO ACK]"},
        {"X", 1, DirCommand::Voice, "Entries after AUTO ACK are not allowed.", " [AUTO ACK]"},
        {"P5551234", 0, DirCommand::AutoAck,
         "Auto Ack command cannot have commands following on the same directory line.", " [DIAL]5551234"},
        {"P5551234", 1, DirCommand::AutoAck, "Auto Ack command must be the first and only command on a directory line.",
         " [DIAL]5551234"},
        {"", 4, DirCommand::AutoAck, nullptr, " [AUTO ACK]"},
        {"W5", 1, DirCommand::Answer, "If Wait is the first entry no other commands can follow.", " [WAIT]5"},
        {"P5551234V", 0, DirCommand::Answer, "Answer cannot be the first command - possibly dial first?",
         " [DIAL]5551234 [VOICE]"},
        {"NV", 1, DirCommand::Answer, "The Answer command can only be used after dialing.", " [ALERT] [VOICE]"},
        {"P5551234V", 1, DirCommand::Answer, nullptr, " [DIAL]5551234 [ANSWER] [VOICE]"},
        {"P5551234", 0, DirCommand::Wait, "Wait cannot be used before a DIAL command.", " [DIAL]5551234"},
        {"P5551234V", 1, DirCommand::Wait, nullptr, " [DIAL]5551234 [WAIT]000 [VOICE]"},
        {"", 0, DirCommand::Wait, nullptr, " [WAIT]000"},
        // An empty slot far down the rows takes the command after the last entry.
        {"P5551234V", 7, DirCommand::Dtmf, nullptr, " [DIAL]5551234 [VOICE] [DTMF]0000"},
        {"P5551234VN", 2, DirCommand::Delete, nullptr, " [DIAL]5551234 [VOICE]"},
    };
    for (const ButtonCase& c : cases) {
        ScriptedPrompter prompter;
        LineEditor editor = editorOn(c.line, c.slot);
        editor.press(c.command, prompter);
        const std::string context = std::string(c.line) + " slot " + std::to_string(c.slot);
        if (c.refusal) {
            ASSERT_EQ(prompter.messages().size(), 1u) << context;
            EXPECT_EQ(prompter.messages()[0].title, "Error");
            EXPECT_EQ(prompter.messages()[0].text, c.refusal) << context;
        } else {
            EXPECT_TRUE(prompter.messages().empty()) << context;
        }
        EXPECT_EQ(dirLineText(editor.buffer()), c.after) << context;
    }
}

TEST(LineEditor, AnswerRightAfterDialWarnsWhenCallProgressIsOn)
{
    ScriptedPrompter prompter;
    LineEditor editor = editorOn("P5551234V", 1, true);
    EXPECT_TRUE(editor.DirAnswer(prompter));
    ASSERT_EQ(prompter.messages().size(), 1u);
    EXPECT_EQ(prompter.messages()[0].title, "Warning");
    EXPECT_EQ(prompter.messages()[0].buttons, Buttons::Ok);
    EXPECT_EQ(prompter.messages()[0].text,
              "Call Progress is enabled in the General section.\nUsing Call Progress and ANSWER immediately after a "
              "Dial command duplicates the requirement for a response by the called party.\nUse the What's This "
              "help for the ANSWER command to get a full explanation.");
    EXPECT_EQ(dirLineText(editor.buffer()), " [DIAL]5551234 [ANSWER] [VOICE]");

    prompter.clear();
    editor.UpdateSelect(3);
    EXPECT_TRUE(editor.DirAnswer(prompter));
    EXPECT_TRUE(prompter.messages().empty()) << "only directly after the DIAL";
}

TEST(LineEditor, AThirteenthEntryAsksToDropTheLast)
{
    const char kFull[] =
        "The maximum number of commands are presently entered, the last entry will be lost - Proceed?.";
    LineEditor editor = editorOn("P5551234VVVVVVVVVVS", 3);
    ASSERT_EQ(editor.entryCount(), 12);
    ScriptedPrompter prompter;
    prompter.expect(kFull, Answer::No).expect(kFull, Answer::Yes);
    EXPECT_FALSE(editor.DirAlert(prompter));
    EXPECT_EQ(editor.entries[3].command, 'V');
    EXPECT_TRUE(editor.DirAlert(prompter));
    EXPECT_EQ(editor.entryCount(), 12);
    EXPECT_EQ(editor.entries[3].command, 'N');
    EXPECT_EQ(editor.entries[11].command, 'V') << "the SIGNAL at the end is the one lost";
    EXPECT_TRUE(prompter.finished());
}

TEST(LineEditor, DeletingTheFirstEntryAsksAndClearsTheLine)
{
    const char kQuestion[] = "Deleting the first entry will clear the entire directroy line - Proceed?.";
    LineEditor editor = editorOn("P5551234VN", 0);
    ScriptedPrompter prompter;
    prompter.expect(kQuestion, Answer::No).expect(kQuestion, Answer::Yes);
    EXPECT_FALSE(editor.DirDelete(prompter));
    EXPECT_TRUE(editor.DirDelete(prompter));
    EXPECT_EQ(editor.entryCount(), 0);
}

struct DialCase {
    const char* number;
    const char* message; // the one message shown, or nullptr
    bool accepted;
};

TEST(LineEditor, DialNumbersAreCheckedInOrder)
{
    const DialCase cases[] = {
        {"4115551234",
         "Not a valid phone number -  The first digits cannot be 411.\nThis will result in an Directory Assistance "
         "call.",
         false},
        {"14115551234", nullptr, true},
        {"04115551234", nullptr, true},
        // The service code test comes before the length tests.
        {"2111", "Not a valid phone number -  The first digits cannot be 211.\nThis is a reserved number sequence.",
         false},
        {"911", "Not a valid phone number -  The first digits cannot be 911.\nThis will result in an Emergency call.",
         false},
        {"555", "Not a valid phone number -  Three digit numbers are not allowed.", false},
        {"!", "Dial command cannot be a single '!' delay.", false},
        {"555!1234", nullptr, true},
        {"555A234", "Invalid digit found in the DIAL command, Use 0-9, #, or *.", false},
    };
    for (const DialCase& c : cases) {
        LineEditor editor = editorOn("PV");
        editor.setParameter(0, c.number);
        ScriptedPrompter prompter;
        const LineCheck check = editor.CanClose(prompter);
        EXPECT_EQ(check.accepted, c.accepted) << c.number;
        if (c.message) {
            ASSERT_EQ(prompter.messages().size(), 1u) << c.number;
            EXPECT_EQ(prompter.messages()[0].text, c.message);
            EXPECT_EQ(prompter.messages()[0].title, "Error");
            EXPECT_EQ(check.focus, 0);
        } else {
            EXPECT_TRUE(prompter.messages().empty()) << c.number;
        }
    }
}

TEST(LineEditor, ShortDefaultAndEmptyNumbersAskAndNoAcceptsThem)
{
    const char kShort[] =
        "Not a valid phone number -  The dial command has less than 7 digits.  Do you want to change it?";
    const char kDefault[] = "The DIAL command requires a telephone number - Enter it now?";
    const char kEmpty[] = "The DIAL command has no digits - Do you want to change it?";

    LineEditor editor = editorOn("P55512V");
    ScriptedPrompter prompter;
    prompter.expect(kShort, Answer::Yes).expect(kShort, Answer::No);
    EXPECT_FALSE(editor.CanClose(prompter).accepted);
    EXPECT_TRUE(editor.CanClose(prompter).accepted);

    // The default "0000" is also short: both questions come, in that order.
    editor = editorOn("PV");
    editor.setParameter(0, "0000");
    prompter.expect(kShort, Answer::No).expect(kDefault, Answer::Yes);
    EXPECT_FALSE(editor.CanClose(prompter).accepted);
    editor.setParameter(0, "");
    prompter.expect(kShort, Answer::No).expect(kEmpty, Answer::No);
    EXPECT_TRUE(editor.CanClose(prompter).accepted);
    EXPECT_TRUE(prompter.finished());

    // Blanks and dashes are dropped from the number that is kept.
    editor = editorOn("PV");
    editor.setParameter(0, "555-12 34");
    EXPECT_TRUE(editor.CanClose(prompter).accepted);
    EXPECT_EQ(editor.result().parameter[0], "5551234");

    editor = editorOn("P5551234");
    EXPECT_FALSE(editor.CanClose(prompter).accepted);
    EXPECT_EQ(prompter.texts().back(), "Dial command must be followed by an action.");
}

struct EntryCase {
    const char* line;
    const char* message;
    Buttons buttons; // Ok for a refusal, YesNo for a question answered Yes
    int focus;
};

TEST(LineEditor, DtmfAndWaitEntriesAreCheckedWhereTheyStand)
{
    const EntryCase cases[] = {
        {"P5551234Q::::", "The DTMF command still has default values - Do you want to change it?", Buttons::YesNo, 1},
        {"P5551234VQ", "The DTMF command has no digits - Do you want to change it?", Buttons::YesNo, 2},
        {"P5551234Q!", "DTMF command cannot be a single '!' delay.", Buttons::Ok, 1},
        {"P5551234Q12E", "Invalid DTMF digit found, Use 0-9, #, *, A, B, C, or D.", Buttons::Ok, 1},
        {"W000", "The WAIT command still has default values - Do you want to change it?", Buttons::YesNo, 0},
        {"W", "The WAIT command has no time - Do you want to change it?", Buttons::YesNo, 0},
        {"P5551234VW1a", "Invalid digit found in the WAIT command, use 0-9 only.", Buttons::Ok, 2},
        {"W256", "The WAIT interval is too long, it must be less than 255.", Buttons::Ok, 0},
        {"W99999999999999999999", "The WAIT interval is too long, it must be less than 255.", Buttons::Ok, 0},
        // Every DTMF entry is checked before any WAIT entry.
        {"P5551234W256Q!", "DTMF command cannot be a single '!' delay.", Buttons::Ok, 2},
    };
    for (const EntryCase& c : cases) {
        ScriptedPrompter prompter;
        if (c.buttons == Buttons::YesNo)
            prompter.expect(c.message, Answer::Yes);
        LineEditor editor = editorOn(c.line);
        const LineCheck check = editor.CanClose(prompter);
        EXPECT_FALSE(check.accepted) << c.line;
        EXPECT_EQ(check.focus, c.focus) << c.line;
        ASSERT_EQ(prompter.messages().size(), 1u) << c.line;
        EXPECT_EQ(prompter.messages()[0].text, c.message);
        EXPECT_TRUE(prompter.finished());
    }

    for (const char* good : {"W255", "W0255", "P5551234Q12ab#*!D", "P5551234W5V"}) {
        ScriptedPrompter prompter;
        EXPECT_TRUE(editorOn(good).CanClose(prompter).accepted) << good;
        EXPECT_TRUE(prompter.messages().empty()) << good;
    }
}

TEST(LineEditor, LeavingWithChangesAsksAboutThisDirectoryLine)
{
    const char kLost[] = "All changes made to this Directory line will be lost.";
    ScriptedPrompter prompter;
    LineEditor editor = editorOn("P5551234V", 2);
    EXPECT_TRUE(editor.CanLeave(prompter).accepted) << "nothing changed: no question";
    EXPECT_TRUE(prompter.messages().empty());

    // Keeping the changes runs the OK checks first.
    editor.DirSignal(prompter);
    editor.setParameter(0, "411");
    prompter.expect(kLost, Answer::Yes);
    EXPECT_FALSE(editor.CanLeave(prompter).accepted);
    editor.setParameter(0, "5551234");
    prompter.expect(kLost, Answer::Yes);
    EXPECT_TRUE(editor.CanLeave(prompter).accepted);
    EXPECT_TRUE(editor.lineChanged());
    EXPECT_EQ(dirLineText(editor.result()), " [DIAL]5551234 [VOICE] [SIGNAL]");
    EXPECT_TRUE(prompter.finished());
}

} // namespace
} // namespace rk4
