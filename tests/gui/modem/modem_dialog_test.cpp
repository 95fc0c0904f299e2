#include "core/database/defaults.h"
#include "gui/link/pgm_dialog.h"
#include "gui/modem/modem_configure_dialog.h"
#include "gui/modem/modem_dialog.h"
#include "tests/support/scripted_prompter.h"
#include "tests/support/temp_dir.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <algorithm>

using namespace rk4;
using rk4::test::ScriptedPrompter;
using rk4::test::TempDir;

namespace {

const char kSummaryQuestion[] = "Do you want to check the Summary for warnings before programming?";

bool waitFor(const std::function<bool()>& done, int millis = 20000)
{
    for (int waited = 0; waited < millis && !done(); waited += 10)
        QTest::qWait(10);
    return done();
}

// Answers the telephone number dialog whenever it opens.
class NumberEntry {
  public:
    NumberEntry()
    {
        timer.setInterval(10);
        QObject::connect(&timer, &QTimer::timeout, [this] {
            auto* dialog = qobject_cast<gui::ModemConfigureDialog*>(QApplication::activeModalWidget());
            if (!dialog)
                return;
            dialog->findChild<QLineEdit*>("countryEdit")->setText("1");
            dialog->findChild<QLineEdit*>("areaEdit")->setText("555");
            dialog->findChild<QLineEdit*>("numberEdit")->setText("CALL-NOW");
            shown = dialog->findChild<QLabel*>("dialledLabel")->text();
            dialog->accept();
        });
        timer.start();
    }
    QString shown;

  private:
    QTimer timer;
};

class ModemDialogTest : public ::testing::Test {
  protected:
    TempDir dir;
    Workspace space{dir.path()};
    ScriptedPrompter prompter;
    NumberEntry entry;

    void SetUp() override
    {
        ClearDatabase(space.image, false);
        gui::ModemDialog::demoModem().modem().settings().fault = modem::LineFault::None;
    }

    QPushButton* buttonOf(QWidget& dialog, const char* name) { return dialog.findChild<QPushButton*>(name); }
    QString status(QWidget& dialog) { return dialog.findChild<QLabel*>("statusLabel")->text(); }

    void dial(gui::ModemDialog& dialog)
    {
        dialog.findChild<QComboBox*>("modemPortCombo")->setCurrentIndex(gui::ModemDialog::kDemoModemIndex);
        prompter.expect(kSummaryQuestion, Answer::No);
        buttonOf(dialog, "dialButton")->click();
        ASSERT_TRUE(waitFor([&] { return dialog.link().connected(); })) << status(dialog).toStdString();
    }
};

} // namespace

TEST_F(ModemDialogTest, DialsTransfersOnceConnectedAndHangsUp)
{
    gui::ModemDialog dialog(space, prompter);
    dialog.show();
    EXPECT_FALSE(buttonOf(dialog, "sendDataButton")->isEnabled()) << "no transfer before a call";
    EXPECT_FALSE(buttonOf(dialog, "disconnectButton")->isEnabled());
    dial(dialog);
    EXPECT_EQ(entry.shown, "+1(555)2255-669");
    EXPECT_EQ(status(dialog), "Call Connected");
    EXPECT_TRUE(buttonOf(dialog, "sendDataButton")->isEnabled());
    EXPECT_TRUE(buttonOf(dialog, "disconnectButton")->isEnabled());
    EXPECT_FALSE(buttonOf(dialog, "dialButton")->isEnabled());

    space.image.gen.name[0] = 'M';
    buttonOf(dialog, "sendDataButton")->click();
    ASSERT_TRUE(waitFor([&] { return !dialog.link().transferRunning(); }));
    EXPECT_EQ(status(dialog), "Database transferred to the Rk4");
    EXPECT_EQ(gui::ModemDialog::demoModem().unit().store.database[kGeneralOffset], 'M');

    buttonOf(dialog, "disconnectButton")->click();
    ASSERT_TRUE(waitFor([&] { return buttonOf(dialog, "dialButton")->isEnabled(); }));
    const auto& heard = gui::ModemDialog::demoModem().modem().commands();
    EXPECT_NE(std::find(heard.begin(), heard.end(), "+++"), heard.end());
    EXPECT_EQ(heard.back(), "ATH");
    EXPECT_FALSE(buttonOf(dialog, "sendDataButton")->isEnabled());

    // The number is kept for the next dialling.
    EXPECT_EQ(modem::ModemSettings::load(modem::modemSettingsPath(dir.path())).lastNumber.text(), "+1(555)2255-669");
}

TEST_F(ModemDialogTest, ALostLineSaysSoAndClosesTheDialog)
{
    gui::ModemDialog dialog(space, prompter);
    dialog.show();
    dial(dialog);
    gui::ModemDialog::demoModem().modem().settings().fault = modem::LineFault::LineLost;
    gui::ModemDialog::demoModem().modem().settings().lineLostAfter = 2000;
    buttonOf(dialog, "receiveDataButton")->click();
    ASSERT_TRUE(waitFor([&] { return !dialog.isVisible(); }));
    EXPECT_TRUE(prompter.saw("Line Connection has been lost."));
    EXPECT_EQ(dialog.result(), QDialog::Rejected);
    EXPECT_TRUE(dialog.link().view().lineLost);
}

TEST_F(ModemDialogTest, TheProgrammingDialogsModemButtonHandsOver)
{
    gui::PgmDialog dialog(space, prompter);
    QTimer::singleShot(0, [&] { dialog.findChild<QPushButton*>("modemButton")->click(); });
    EXPECT_EQ(dialog.exec(), gui::PgmDialog::kModemResult);
}
