#include "core/database/defaults.h"
#include "gui/link/com_dialog.h"
#include "gui/link/pgm_dialog.h"
#include "tests/support/main_fixture.h"

#include <QComboBox>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTest>

using namespace rk4;
using rk4::test::ScriptedPrompter;
using rk4::test::TempDir;

namespace {

// Lets the dialog's timers run the transfer at its real pace.
void waitForTransfer(gui::PgmDialog& dialog)
{
    for (int i = 0; i < 3000 && dialog.session().running(); ++i)
        QTest::qWait(5);
    ASSERT_FALSE(dialog.session().running());
}

using ProgrammingDialogInMain = test::MainTest;

} // namespace

TEST_F(ProgrammingDialogInMain, WritesAndReadsTheSimulatedUnitWhileTheWindowStaysLive)
{
    space.image.gen.name[0] = 'W';

    gui::PgmDialog dialog(space, prompter, main.get());
    dialog.show();
    auto* combo = dialog.findChild<QComboBox*>("portCombo");
    ASSERT_NE(combo, nullptr);
    EXPECT_EQ(combo->count(), 9);
    EXPECT_EQ(combo->itemText(0), "COM 1");
    combo->setCurrentIndex(gui::PgmDialog::kSimulatedUnitIndex);

    dialog.findChild<QPushButton*>("sendDataButton")->click();
    EXPECT_TRUE(dialog.session().running());
    EXPECT_FALSE(dialog.findChild<QPushButton*>("doneButton")->isEnabled()) << "no closing in the middle";
    auto* progress = dialog.findChild<gui::ComDialog*>("comDialog");
    ASSERT_NE(progress, nullptr);
    EXPECT_TRUE(progress->isVisible());
    waitForTransfer(dialog);
    EXPECT_FALSE(progress->isVisible());
    EXPECT_EQ(dialog.findChild<QLabel*>("statusLabel")->text(), "Database transferred to the Rk4");
    EXPECT_TRUE(dialog.findChild<QLabel*>("versionLabel")->text().startsWith("Product: B"));
    const auto& stored = gui::PgmDialog::simulatedUnit().unit().store.database;
    ASSERT_EQ(stored.size(), dbasesize);
    EXPECT_EQ(stored[kGeneralOffset], 'W');

    // The unit now holds a Basic configuration: reading it switches the main window.
    Database basic;
    basic.gen.basicMode = 1;
    ClearDatabase(basic, false);
    const ImageBytes bytes = basic.toBytes();
    gui::PgmDialog::simulatedUnit().unit().store.database.assign(bytes.begin(), bytes.end());
    dialog.findChild<QPushButton*>("receiveDataButton")->click();
    waitForTransfer(dialog);
    EXPECT_EQ(dialog.findChild<QLabel*>("statusLabel")->text(), "Configuration data read from the Rk4");
    EXPECT_TRUE(space.basicMode());
    EXPECT_EQ(main->findChild<QLabel*>("modeLabel")->text().trimmed(), "Basic mode");
    EXPECT_TRUE(prompter.finished());
    dialog.findChild<QPushButton*>("doneButton")->click();
    EXPECT_FALSE(dialog.isVisible());
}

TEST(ProgrammingDialog, ChoosingAPortSavesItAndAMissingDeviceIsExplained)
{
    TempDir dir;
    Workspace space(dir.path());
    ScriptedPrompter prompter;
    space.InitFile(prompter);
    qputenv("RK4_COM3", QByteArray((dir / "no-such-tty").string().c_str()));
    gui::PgmDialog dialog(space, prompter, nullptr);
    dialog.findChild<QComboBox*>("portCombo")->setCurrentIndex(2);
    EXPECT_EQ(readConfigFile(dir / "rk4.cfg")->portIndex(), 2);
    EXPECT_TRUE(dialog.findChild<QLabel*>("portPathLabel")->text().contains("no-such-tty"));

    dialog.findChild<QPushButton*>("sendDataButton")->click();
    EXPECT_FALSE(dialog.session().running());
    ASSERT_FALSE(prompter.messages().empty());
    EXPECT_EQ(prompter.messages().back().text, "Error opening COM port");
    EXPECT_EQ(prompter.messages().back().detail.find("There is no device " + (dir / "no-such-tty").string()), 0u);
    qunsetenv("RK4_COM3");
}

TEST(ProgrammingDialog, TheVocabularyNeedsTwoYesAnswers)
{
    TempDir dir;
    Workspace space(dir.path());
    ScriptedPrompter prompter;
    gui::PgmDialog dialog(space, prompter, nullptr);
    prompter
        .expect(" Writing the vocabulary will destroy all of the stored voices in the Rk4!    Do you want to proceed?",
                Answer::Yes)
        .expect("          ARE YOU SURE?          ", Answer::No);
    dialog.findChild<QPushButton*>("writeVocabButton")->click();
    EXPECT_TRUE(prompter.finished());
    EXPECT_FALSE(dialog.session().running());
}
