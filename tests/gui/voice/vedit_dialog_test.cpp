#include "gui/voice/vedit_dialog.h"

#include "core/common/safe_file.h"
#include "core/voice/wave.h"
#include "gui/link/pgm_dialog.h"
#include "tests/support/gui_helpers.h"
#include "tests/support/scripted_prompter.h"
#include "tests/support/temp_dir.h"

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>

namespace rk4::gui {
namespace {

using test::child;

std::vector<std::uint8_t> phraseBlocks(std::size_t bytes, std::uint8_t fill)
{
    return std::vector<std::uint8_t>(bytes, fill);
}

class VeditDialogTest : public ::testing::Test {
  protected:
    void SetUp() override
    {
        std::array<std::optional<std::vector<std::uint8_t>>, kSlotCount> phrases;
        phrases[kSiteSlot] = phraseBlocks(4096, 0x17);
        phrases[4] = phraseBlocks(8192, 0x71);
        ASSERT_TRUE(writeFileAtomically(dir / "old.msg", buildMessageFile(phrases)));
        ASSERT_TRUE(writeFileAtomically(dir / "door.vox", phraseBlocks(4096, 0x35)));
    }

    QString mark(int slot) { return child<QTreeWidget>(&dialog, "slotList")->topLevelItem(slot)->text(0); }
    QString phrase(int slot) { return child<QTreeWidget>(&dialog, "slotList")->topLevelItem(slot)->text(3); }
    void click(const char* name) { QTest::mouseClick(child<QPushButton>(&dialog, name), Qt::LeftButton); }

    test::TempDir dir;
    Workspace space{dir.path()};
    test::ScriptedPrompter prompter;
    VeditDialog dialog{space, prompter};
};

TEST_F(VeditDialogTest, LoadsAMessageFileTakesAPhraseAndSavesANewFile)
{
    dialog.show();
    auto* loaded = child<QLabel>(&dialog, "loadedLabel");
    auto* saved = child<QLabel>(&dialog, "savedLabel");
    ASSERT_EQ(child<QTreeWidget>(&dialog, "slotList")->topLevelItemCount(), 39);
    EXPECT_EQ(loaded->text(), "Loaded: * not loaded *");
    EXPECT_EQ(saved->text(), " Saved: * not saved *");

    prompter.fileChoice((dir / "old.msg").string());
    click("loadMessageButton");
    EXPECT_EQ(loaded->text().toStdString(), "Loaded: " + (dir / "old.msg").string());
    EXPECT_EQ(mark(kSiteSlot), "+");
    EXPECT_EQ(mark(4), "+");
    EXPECT_EQ(mark(5), "-");
    EXPECT_EQ(phrase(4), "message file, 2 blocks");

    click("readIndividualButton"); // no slot selected
    EXPECT_EQ(prompter.texts(), std::vector<std::string>{kMessageNotSelected});
    dialog.selectSlot(5);
    prompter.fileChoice((dir / "door.vox").string());
    click("readIndividualButton");
    EXPECT_EQ(mark(5), "+");
    EXPECT_EQ(phrase(5), "door.vox");

    prompter.fileChoice((dir / "new.msg").string());
    click("writeAllButton");
    EXPECT_EQ(saved->text().toStdString(), " Saved: " + (dir / "new.msg").string());
    EXPECT_EQ(loaded->text().toStdString(), "Loaded: " + (dir / "new.msg").string());
    std::string cause;
    const MessageHeader header = readMessageHeader(dir / "new.msg", cause);
    ASSERT_TRUE(header.ok()) << cause;
    EXPECT_EQ(header.lengths[5], 1);
    EXPECT_EQ(header.lengths[4], 2);
}

TEST_F(VeditDialogTest, PlayWithoutSoundWritesTheDecodedPhraseAndSaysWhere)
{
    dialog.setAudioOutputAllowed(false);
    dialog.putPhrase(7, phraseBlocks(4096, 0x35), "spoken: door");
    EXPECT_EQ(phrase(7), "spoken: door");
    dialog.selectSlot(7);
    click("playButton");
    ASSERT_EQ(prompter.messages().size(), 1u);
    EXPECT_EQ(prompter.messages()[0].text, "There is no sound output. The phrase of Point 7 was written to " +
                                               (dir / "point7.wav").string() + " to be played elsewhere.");
    const FileRead wave = readFileBytes(dir / "point7.wav");
    ASSERT_TRUE(wave);
    const std::vector<std::int16_t> samples = decodeVox(phraseData(phraseBlocks(4096, 0x35)));
    EXPECT_EQ(wave.bytes, waveFileBytes(samples, 8000));

    dialog.selectSlot(8);
    click("playButton");
    EXPECT_EQ(prompter.messages().back().text, "There is nothing to play.");
}

TEST_F(VeditDialogTest, EveryControlExplainsItselfAndThePortChoiceIsKept)
{
    for (QWidget* widget : dialog.findChildren<QWidget*>()) {
        if (qobject_cast<QPushButton*>(widget) || qobject_cast<QComboBox*>(widget) ||
            qobject_cast<QTreeWidget*>(widget) || widget->objectName().endsWith("Label")) {
            EXPECT_FALSE(widget->whatsThis().isEmpty()) << widget->objectName().toStdString();
        }
    }
    child<QComboBox>(&dialog, "portCombo")->setCurrentIndex(3);
    EXPECT_EQ(space.cfg.portIndex(), 3);
}

// Closes the programming window the Voice Edit window opens once its
// transfer has ended, keeping the last status it showed.
class TransferCloser {
  public:
    TransferCloser()
    {
        QObject::connect(&timer, &QTimer::timeout, [this] {
            auto* programming = qobject_cast<PgmDialog*>(QApplication::activeModalWidget());
            if (!programming || programming->session().running())
                return;
            status = child<QLabel>(programming, "statusLabel")->text();
            detail = QString::fromStdString(programming->session().view().line2);
            child<QPushButton>(programming, "doneButton")->click();
        });
        timer.start(20);
    }
    QString status;
    QString detail;

  private:
    QTimer timer;
};

TEST_F(VeditDialogTest, WritesTheLoadedFileToTheUnitAndReadsTheUnitsVoicesIntoANewFile)
{
    std::array<std::optional<std::vector<std::uint8_t>>, kSlotCount> phrases;
    phrases[2] = phraseBlocks(4096, 0x52); // small: the demo unit takes it at the cable's own pace
    ASSERT_TRUE(writeFileAtomically(dir / "small.msg", buildMessageFile(phrases)));
    const FileRead sent = readFileBytes(dir / "small.msg");
    ASSERT_TRUE(sent);
    dialog.show();
    click("writeToUnitButton");
    EXPECT_EQ(prompter.texts().back(), "Save the message file before writing it to the Rk4.");

    prompter.fileChoice((dir / "small.msg").string());
    click("loadMessageButton");
    child<QComboBox>(&dialog, "portCombo")->setCurrentIndex(PgmDialog::kSimulatedUnitIndex);
    TransferCloser closer;
    click("writeToUnitButton");
    EXPECT_EQ(closer.status, "Voices transferred to the Rk4") << closer.detail.toStdString();
    EXPECT_EQ(PgmDialog::simulatedUnit().unit().store.voices, sent.bytes);

    prompter.fileChoice((dir / "back.msg").string());
    click("readFromUnitButton");
    const FileRead back = readFileBytes(dir / "back.msg");
    ASSERT_TRUE(back) << closer.status.toStdString() << ": " << closer.detail.toStdString();
    EXPECT_EQ(back.bytes, sent.bytes);
    EXPECT_EQ(child<QLabel>(&dialog, "loadedLabel")->text().toStdString(), "Loaded: " + (dir / "back.msg").string());
    EXPECT_EQ(mark(2), "+");
}

} // namespace
} // namespace rk4::gui
