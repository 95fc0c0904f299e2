#include "gui/voice/speak_commands.h"

#include "core/common/safe_file.h"
#include "core/voice/wave.h"
#include "gui/voice/vedit_dialog.h"
#include "tests/support/gui_helpers.h"
#include "tests/support/scripted_prompter.h"
#include "tests/support/temp_dir.h"

#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTreeWidget>

#include <gtest/gtest.h>

namespace rk4::gui {
namespace {

using test::child;

class SpeakCommandsTest : public ::testing::Test {
  protected:
    void SetUp() override
    {
        setName(space.image.alm[0].name, "PUMP HOUSE");
        setName(space.image.alm[4].name, "DOOR");
        setName(space.image.group[1].name, "NORTH WELLS");
        addSpeakCommands(dialog, space, prompter);
        dialog.setAudioOutputAllowed(false);
        dialog.show();
    }
    void click(const char* name) { QTest::mouseClick(child<QPushButton>(&dialog, name), Qt::LeftButton); }
    QString phrase(int slot) { return child<QTreeWidget>(&dialog, "slotList")->topLevelItem(slot)->text(3); }

    test::TempDir dir;
    Workspace space{dir.path()};
    test::ScriptedPrompter prompter;
    VeditDialog dialog{space, prompter};
};

TEST_F(SpeakCommandsTest, SpeakProposesTheNameTakesTheEditedTextPlaysItAndFillsTheSlot)
{
    dialog.selectSlot(1);
    QString proposed;
    test::whenDialogOpens([&](QDialog* ask) {
        auto* words = child<QLineEdit>(ask, "speakWords");
        proposed = words->text();
        words->setText("PUMP HOUSE HIGH LEVEL");
        // RK4_SCREENSHOTS=DIR keeps pictures of the question and the filled slot list.
        if (const QString shots = qEnvironmentVariable("RK4_SCREENSHOTS"); !shots.isEmpty())
            ask->grab().save(shots + "/speak.png");
        ask->accept();
    });
    click("speakButton");
    EXPECT_EQ(proposed, "PUMP HOUSE");
    ASSERT_TRUE(dialog.editor().slotTable[1].phrase);
    EXPECT_EQ(dialog.editor().slotTable[1].source, "text:PUMP HOUSE HIGH LEVEL");
    EXPECT_EQ(dialog.editor().slotTable[1].phrase->size() % kPhraseBlock, 0u);
    EXPECT_TRUE(phrase(1).contains("PUMP HOUSE HIGH LEVEL")) << phrase(1).toStdString();
    if (const QString shots = qEnvironmentVariable("RK4_SCREENSHOTS"); !shots.isEmpty())
        dialog.grab().save(shots + "/vedit-spoken.png");

    // Played through the editor's Play, which here writes the phrase out.
    const FileRead played = readFileBytes(dir / "point1.wav");
    ASSERT_TRUE(played) << prompter.texts().size();
    EXPECT_GT(waveSamples(played.bytes, readWaveFormat(played.bytes)).size(), kPhraseRate);

    // Cancelling or emptying the text leaves the slot as it was.
    dialog.selectSlot(5);
    test::whenDialogOpens([](QDialog* ask) { ask->reject(); });
    click("speakButton");
    test::whenDialogOpens([](QDialog* ask) {
        child<QLineEdit>(ask, "speakWords")->clear();
        ask->accept();
    });
    click("speakButton");
    EXPECT_FALSE(dialog.editor().slotTable[5].hasPhrase);
    ASSERT_FALSE(prompter.messages().empty());
    EXPECT_EQ(prompter.messages().back().detail, "there is no text to speak");
}

TEST_F(SpeakCommandsTest, SpeakAllFillsOnlyEmptySlotsWhoseRecordHasAName)
{
    dialog.putPhrase(5, std::vector<std::uint8_t>(kPhraseBlock, 0x80), "door.vox");
    click("speakAllButton");
    for (int slot = 0; slot < kSlotCount; ++slot) {
        const VoiceSlot& entry = dialog.editor().slotTable[slot];
        if (slot == 1 || slot == 32) {
            EXPECT_TRUE(entry.source.starts_with("text:")) << slot;
            EXPECT_TRUE(entry.phrase && !entry.phrase->empty()) << slot;
        } else if (slot == 5) {
            EXPECT_EQ(entry.source, "door.vox") << "a slot with a phrase keeps it";
        } else {
            EXPECT_FALSE(entry.hasPhrase) << slot;
        }
    }
    EXPECT_EQ(dialog.editor().slotTable[32].source, "text:NORTH WELLS");
    ASSERT_FALSE(prompter.messages().empty());
    EXPECT_EQ(prompter.messages().back().text, "2 phrases spoken. Save the message file to keep them.");

    click("speakAllButton");
    EXPECT_EQ(prompter.messages().back().text, "Every slot whose record has a name already has a phrase.");
}

} // namespace
} // namespace rk4::gui
