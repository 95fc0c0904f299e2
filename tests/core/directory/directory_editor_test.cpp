#include "core/directory/directory_editor.h"

#include "core/database/defaults.h"
#include "core/shell/workspace.h"
#include "tests/support/scripted_prompter.h"
#include "tests/support/temp_dir.h"

#include <gtest/gtest.h>

#include <cstring>

namespace rk4 {
namespace {

using test::ScriptedPrompter;

const char kCorrupt[] = "The information in this directory is corrupt - the data will be cleared.";
const char kTooMany[] = "There are too many entries in this directory - this line is not allowed.";
const char kFull[] = "All of the Directory lines are full.  This line cannot be inserted.";
const char kReplace[] = "The selected line contains commands.  Do you want to replace these commands?";
const char kLost[] = "All changes made to this Directory will be lost.";

class DirectoryEditorTest : public ::testing::Test {
  protected:
    DirectoryEditorTest() { DefaultValues(space.image); }

    // Puts a stored directory text into directory `d` of the image.
    void store(int d, const std::string& text)
    {
        space.image.dir[d].dirText.fill(0);
        std::memcpy(space.image.dir[d].dirText.data(), text.data(), text.size());
    }
    std::string stored(int d) const
    {
        const auto& bytes = space.image.dir[d].dirText;
        return std::string(reinterpret_cast<const char*>(bytes.data()));
    }
    DirectoryEditor& open(int d = 0)
    {
        editor = std::make_unique<DirectoryEditor>(space, d);
        editor->SetupWindow(prompter);
        return *editor;
    }
    std::string lineText(int line) const { return dirLineText(editor->lines()[line]); }

    test::TempDir dir;
    Workspace space{dir.path()};
    ScriptedPrompter prompter;
    std::unique_ptr<DirectoryEditor> editor;
};

TEST_F(DirectoryEditorTest, AnAllZeroDirectoryOpensSilentlyAtNoFill)
{
    space.image.dir[2].dirText.fill(0);
    DirectoryEditor& c = open(2);
    EXPECT_TRUE(prompter.messages().empty());
    EXPECT_EQ(c.DrawTitles(), "DIRECTORY C   SEQUENCE            DESCRIPTION OF OPERATION           % USED = 0");
    EXPECT_FALSE(c.changed());
    EXPECT_TRUE(c.CanClose(prompter, Leaving::Other)) << "nothing to lose: no question";
    EXPECT_TRUE(prompter.messages().empty());
}

TEST_F(DirectoryEditorTest, OnlyAFewBytesMayStartADirectory)
{
    for (const char* start : {"&", "P5551234V&", "W5&", "X&"}) {
        store(0, start);
        open();
        EXPECT_TRUE(prompter.messages().empty()) << start;
        editor->CanClose(prompter, Leaving::Exit);
    }
    for (const char* start : {"Q12&", "V&", "\xFF"}) {
        store(0, start);
        ScriptedPrompter local;
        DirectoryEditor corrupt(space, 0);
        corrupt.SetupWindow(local);
        EXPECT_EQ(local.texts(), std::vector<std::string>{kCorrupt}) << start;
        EXPECT_EQ(local.messages()[0].title, "Error");
        EXPECT_EQ(corrupt.usedBytes(), 1) << "the copy is cleared";
        EXPECT_EQ(stored(0), start) << "the image keeps its bytes until the window is left";
        // The clearing is a change: leaving asks, and Exit writes it.
        local.expect(kLost, Answer::Cancel);
        EXPECT_FALSE(corrupt.CanClose(local, Leaving::Other));
        EXPECT_TRUE(corrupt.CanClose(local, Leaving::Exit));
        EXPECT_EQ(stored(0), "&");
        EXPECT_TRUE(local.finished());
    }
}

TEST_F(DirectoryEditorTest, ListLinesNumberTheLinesInUseAndTheInsertionPlace)
{
    store(1, "P5551234V&W30&P555;:12MQ=>?0&&P1234567V&");
    DirectoryEditor& b = open(1);
    EXPECT_EQ(b.DrawLine(0), DirectoryEditor::Padline("  1   [DIAL]5551234 [VOICE]"));
    EXPECT_EQ(b.DrawLine(0).size(), 120u);
    EXPECT_EQ(b.DrawLine(2), DirectoryEditor::Padline("  3   [DIAL]555*012 [ANSWER] [DTMF]ABCD"));
    EXPECT_EQ(b.DrawLine(3), DirectoryEditor::Padline("  4  ")) << "an empty line between used ones";
    EXPECT_EQ(b.DrawLine(5), DirectoryEditor::Padline("  6  ")) << "the insertion place";
    EXPECT_EQ(b.DrawLine(6), std::string(120, ' '));
    b.lines()[9] = b.lines()[0];
    EXPECT_EQ(b.DrawLine(9), DirectoryEditor::Padline(" 10   [DIAL]5551234 [VOICE]"));
    // 10 + 4 + 15 + 10 bytes of lines, and the terminator: 40 * 100 / 256 = 15.
    b.lines()[9] = DirLine{};
    EXPECT_EQ(b.usedBytes(), 40);
    EXPECT_TRUE(b.DrawTitles().ends_with("% USED = 15"));
}

TEST_F(DirectoryEditorTest, ExitWritesTheLinesAndClosesUpEmptyOnes)
{
    store(0, "P5551234V&W30&");
    DirectoryEditor& a = open();
    EXPECT_FALSE(space.navigation.dirOn(0));
    a.select(1);
    ASSERT_TRUE(a.InsertLine(prompter));
    EXPECT_TRUE(a.lines()[1].empty());
    EXPECT_EQ(lineText(2), " [WAIT]30");
    EXPECT_FALSE(a.changed()) << "a blank line alone changes nothing the unit sees";

    a.CmCopyLine(); // the blank line
    a.select(0);
    a.CmCopyLine();
    a.select(3);
    ASSERT_TRUE(a.CmPasteLine(prompter)); // an empty line takes the copy without a question
    EXPECT_TRUE(a.changed());
    EXPECT_FALSE(space.DatabaseChanged);
    EXPECT_TRUE(a.CanClose(prompter, Leaving::Exit));
    EXPECT_EQ(stored(0), "P5551234V&W30&P5551234V&");
    EXPECT_TRUE(space.DatabaseChanged);
    EXPECT_TRUE(space.navigation.dirOn(0));
    EXPECT_TRUE(prompter.messages().empty());
}

TEST_F(DirectoryEditorTest, PasteOverALineAsksWhetherToReplaceOrInsert)
{
    store(0, "P5551234V&W30&P7654321N&");
    DirectoryEditor& a = open();
    EXPECT_FALSE(a.clipboardFull());
    EXPECT_FALSE(a.CmPasteLine(prompter)) << "nothing copied yet";
    a.CmCopyLine();
    a.select(1);
    prompter.expect(kReplace, Answer::Cancel).expect(kReplace, Answer::No).expect(kReplace, Answer::Yes);
    EXPECT_FALSE(a.CmPasteLine(prompter));
    EXPECT_EQ(lineText(1), " [WAIT]30");
    EXPECT_TRUE(a.CmPasteLine(prompter));
    EXPECT_EQ(lineText(1), " [DIAL]5551234 [VOICE]");
    EXPECT_EQ(lineText(2), " [WAIT]30") << "No inserts the copy before the line";
    a.select(3);
    EXPECT_TRUE(a.CmPasteLine(prompter));
    EXPECT_EQ(lineText(3), " [DIAL]5551234 [VOICE]");
    EXPECT_EQ(prompter.messages()[0].title, "Question");
    EXPECT_EQ(prompter.messages()[0].buttons, Buttons::YesNoCancel);
    EXPECT_TRUE(prompter.finished());

    a.select(0);
    a.DeleteLine();
    EXPECT_EQ(lineText(0), " [DIAL]5551234 [VOICE]");
    EXPECT_EQ(lineText(1), " [WAIT]30");
    EXPECT_TRUE(a.lines()[3].empty());
}

TEST_F(DirectoryEditorTest, InsertIsRefusedWhenLineTwentyHoldsCommands)
{
    std::string twenty;
    for (int i = 0; i < 20; ++i)
        twenty += "W5&";
    store(0, twenty);
    DirectoryEditor& a = open();
    ASSERT_EQ(lineText(19), " [WAIT]5");
    EXPECT_FALSE(a.InsertLine(prompter));
    a.CmCopyLine();
    prompter.expect(kReplace, Answer::No);
    EXPECT_FALSE(a.CmPasteLine(prompter));
    EXPECT_EQ(prompter.texts(), (std::vector<std::string>{kFull, kReplace, kFull}));
    EXPECT_EQ(prompter.messages()[0].title, "Error");

    // With line 20 free, the selected line 20 itself still cannot take an insert.
    a.select(19);
    a.DeleteLine();
    EXPECT_FALSE(a.InsertLine(prompter));
    EXPECT_EQ(prompter.texts().size(), 4u);
}

TEST_F(DirectoryEditorTest, TheLineThatTakesTheDirectoryPast253BytesIsCleared)
{
    // Five lines of DIAL with 39 digits and VOICE cost 42 bytes each, one with
    // 38 digits 41: 251 bytes.
    const std::string digits39(39, '5');
    std::string text;
    for (int i = 0; i < 5; ++i)
        text += "P" + digits39 + "V&";
    text += "P" + digits39.substr(1) + "V&";
    store(0, text);
    DirectoryEditor& a = open();
    ASSERT_EQ(a.usedBytes(), 252);

    auto autoAck = [this](LineEditor& line) {
        line.DirAutoAck(prompter);
        line.CanClose(prompter);
    };
    a.select(6);
    EXPECT_TRUE(a.EditLine(prompter, autoAck)); // 2 bytes: 253 in all
    EXPECT_EQ(lineText(6), " [AUTO ACK]");
    EXPECT_TRUE(prompter.messages().empty());
    a.select(7);
    EXPECT_TRUE(a.EditLine(prompter, autoAck)); // 255: too many
    EXPECT_EQ(prompter.texts(), std::vector<std::string>{kTooMany});
    EXPECT_TRUE(a.lines()[7].empty());
    EXPECT_EQ(lineText(6), " [AUTO ACK]");

    // A copy of a long line pasted in front of the others pushes out the lines
    // that no longer fit: 6 * 42 = 252, so the 41 and the 2 after them go.
    prompter.clear();
    a.select(0);
    a.CmCopyLine();
    prompter.expect(kReplace, Answer::No);
    EXPECT_TRUE(a.CmPasteLine(prompter));
    EXPECT_EQ(prompter.texts(), (std::vector<std::string>{kReplace, kTooMany}));
    EXPECT_EQ(lineText(5), " [DIAL]" + digits39 + " [VOICE]");
    EXPECT_TRUE(a.lines()[6].empty());
    EXPECT_TRUE(a.lines()[7].empty());
    EXPECT_EQ(a.usedBytes(), 253);
    a.CanClose(prompter, Leaving::Exit);
    EXPECT_EQ(stored(0).size(), 252u);
}

TEST_F(DirectoryEditorTest, ALineLongerThan118CharactersLosesItsLastEntries)
{
    // 46 + 46 + 10 + 8 + 8 = 118 characters fit; the SIGNAL after them does not.
    const std::string digits(39, '5');
    store(0, "P" + digits + "Q" + digits + "W255NVSV&");
    DirectoryEditor& a = open();
    EXPECT_FALSE(a.CheckLine(prompter, 0));
    EXPECT_EQ(prompter.texts(),
              std::vector<std::string>{"This directory line has too many entries - excess entries have been deleted."});
    EXPECT_EQ(a.lines()[0].commandCount(), 5);
    EXPECT_EQ(dirLineText(a.lines()[0]).size(), 118u);
    prompter.clear();
    EXPECT_TRUE(a.CheckLine(prompter, 0));
    EXPECT_TRUE(prompter.messages().empty());
}

TEST_F(DirectoryEditorTest, CancelWithEditsAsksAndTheFlagsFollowTheOpenDirectories)
{
    store(0, "P5551234V&");
    DirectoryEditor& a = open(0);
    DirectoryEditor b(space, 1);
    b.SetupWindow(prompter);
    a.DeleteLine();
    prompter.expect(kLost, Answer::Cancel).expect(kLost, Answer::No);
    EXPECT_FALSE(a.CanClose(prompter, Leaving::Other));
    EXPECT_TRUE(a.CanClose(prompter, Leaving::Other));
    EXPECT_EQ(stored(0), "P5551234V&");
    EXPECT_FALSE(space.DatabaseChanged);
    EXPECT_TRUE(space.navigation.dirOn(0));
    EXPECT_FALSE(space.navigation.fileon()) << "Directory B is still open";
    b.CanClose(prompter, Leaving::Other);
    EXPECT_TRUE(space.navigation.pgmon());
}

} // namespace
} // namespace rk4
