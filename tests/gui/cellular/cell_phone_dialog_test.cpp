#include "gui/cellular/cell_phone_dialog.h"
#include "gui/shell/main_window.h"
#include "tests/support/gui_helpers.h"
#include "tests/support/scripted_prompter.h"
#include "tests/support/temp_dir.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

using namespace rk4;
using rk4::test::child;
using rk4::test::ScriptedPrompter;
using rk4::test::TempDir;

namespace {

struct CellWindow {
    CellWindow() : space(dir.path()), dialog(space, prompter, nullptr, &clock)
    {
        dialog.usePort(gui::CellComDialog::kSimulatedModuleIndex);
        dialog.show();
    }
    // Runs the module's one-second steps on the manual clock.
    void runTicks(int ticks)
    {
        for (int i = 0; i < ticks; ++i) {
            clock.advance(1000);
            dialog.poll();
        }
    }
    void runToEnd()
    {
        for (int i = 0; i < 100 && dialog.session().activity() != cellular::CellActivity::Idle; ++i)
            runTicks(1);
    }
    QString text(const char* label) { return child<QLabel>(&dialog, label)->text(); }

    TempDir dir;
    Workspace space;
    ScriptedPrompter prompter;
    ManualClock clock{1000};
    gui::CellPhoneDialog dialog;
};

} // namespace

TEST(CellPhoneWindow, WritesReadsAndPollsTheBuiltInModule)
{
    CellWindow window;
    EXPECT_EQ(window.dialog.windowTitle(), "CELLPHONE PROGRAMMING");
    auto* min = child<QLineEdit>(&window.dialog, "minEdit");
    auto* mdn = child<QLineEdit>(&window.dialog, "mdnEdit");
    auto* write = child<QPushButton>(&window.dialog, "writeButton");
    min->setText(" 5551234567");
    child<QCheckBox>(&window.dialog, "sameCheck")->setChecked(true);
    EXPECT_FALSE(mdn->isEnabled());

    write->click();
    EXPECT_EQ(min->text(), "5551234567") << "the leading blank is dropped";
    EXPECT_EQ(mdn->text(), "5551234567");
    EXPECT_FALSE(write->isEnabled()) << "one sequence at a time";
    EXPECT_EQ(window.text("statusLabel"), "Checking communications.");
    window.runToEnd();
    EXPECT_EQ(window.text("statusLabel"), "MDN check passed.");
    EXPECT_TRUE(write->isEnabled());
    EXPECT_EQ(window.dialog.simulatedModule().min(), "5551234567");
    EXPECT_EQ(window.dialog.simulatedModule().mdn(), "5551234567");

    min->clear();
    child<QCheckBox>(&window.dialog, "sameCheck")->setChecked(false);
    mdn->clear();
    child<QPushButton>(&window.dialog, "readButton")->click();
    window.runToEnd();
    EXPECT_EQ(window.text("statusLabel"), "Values read successfully");
    EXPECT_EQ(window.text("modelLabel"), "KX-414");
    EXPECT_EQ(window.text("versionLabel"), "M6.2B  PRL 52001");
    EXPECT_EQ(window.text("esnLabel"), "159 01223629");
    EXPECT_EQ(window.text("sidLabel"), "4152");
    EXPECT_EQ(window.text("bandClassLabel"), "800 MHz");
    EXPECT_EQ(window.text("bandLabel"), "B");
    EXPECT_EQ(window.text("protocolLabel"), "IS-2000");
    EXPECT_EQ(window.text("rssiLabel"), "Reading = 15");
    EXPECT_EQ(child<QProgressBar>(&window.dialog, "rssiGauge")->value(), 15);
    EXPECT_EQ(min->text(), "5551234567") << "numbers read go into their fields";
    EXPECT_EQ(mdn->text(), "5551234567");

    // RK4_SCREENSHOTS=DIR keeps a picture of the filled window to look at.
    if (const QString shots = qEnvironmentVariable("RK4_SCREENSHOTS"); !shots.isEmpty())
        window.dialog.grab().save(shots + "/cellphone.png");

    auto* poll = child<QCheckBox>(&window.dialog, "pollCheck");
    poll->click();
    EXPECT_TRUE(window.dialog.session().polling());
    window.runTicks(1);
    EXPECT_EQ(window.text("statusLabel"), "RSSI read");
    window.runTicks(1);
    EXPECT_EQ(window.text("statusLabel"), "RSSI read *") << "each new reading is seen to arrive";
    poll->click();
    EXPECT_FALSE(window.dialog.session().active());
    EXPECT_TRUE(window.prompter.messages().empty());
}

TEST(CellPhoneWindow, RefusedNumberKeepsTheFocusOnItsField)
{
    CellWindow window;
    auto* mdn = child<QLineEdit>(&window.dialog, "mdnEdit");
    child<QLineEdit>(&window.dialog, "minEdit")->setText("5551234567");
    mdn->setText("555-ABC-12");
    window.dialog.activateWindow();
    child<QPushButton>(&window.dialog, "writeButton")->click();
    EXPECT_EQ(window.prompter.texts(), std::vector<std::string>{"Phone Number must be digits 0 to 9"});
    EXPECT_EQ(mdn->selectedText(), "555-ABC-12");
    EXPECT_FALSE(window.dialog.session().active());
}

TEST(CellPhoneWindow, ThePortChosenIsKeptInTheSettingsFile)
{
    CellWindow window;
    test::whenDialogOpens([](QDialog* chooser) {
        child<QComboBox>(chooser, "cellPortCombo")->setCurrentIndex(2);
        child<QPushButton>(chooser, "cellPortOk")->click();
    });
    child<QPushButton>(&window.dialog, "cellPortButton")->click();
    EXPECT_EQ(window.dialog.port(), 2);
    EXPECT_EQ(window.space.cfg.portIndex(), 2);
    EXPECT_TRUE(window.text("cellPortLabel").startsWith("COM 3"));

    // The shell offers the window from its Tools menu.
    gui::Main main(window.space, &window.prompter);
    ASSERT_NE(main.findChild<QAction*>("actionCellphone"), nullptr);
    EXPECT_TRUE(main.findChild<QAction*>("actionCellphone")->isEnabled());
}
