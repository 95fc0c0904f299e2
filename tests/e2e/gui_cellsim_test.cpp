// The CELLPHONE PROGRAMMING window against rk4-cellsim on a real
// pseudo-terminal, on the real one-second tick: what a technician sees with a
// module on COM 1.

#include "gui/cellular/cell_phone_dialog.h"
#include "tests/e2e/sim_process.h"
#include "tests/support/gui_helpers.h"
#include "tests/support/scripted_prompter.h"
#include "tests/support/temp_dir.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTest>

#include <cstdlib>
#include <gtest/gtest.h>

using namespace rk4;
using rk4::test::child;

namespace {

// Lets the window's own timer run until the sequence ends.
bool waitUntilIdle(gui::CellPhoneDialog& dialog, int seconds)
{
    return QTest::qWaitFor([&] { return dialog.session().activity() == cellular::CellActivity::Idle; }, seconds * 1000);
}

} // namespace

TEST(CellSimWindow, WritesBothNumbersReadsThemBackAndPollsTheSignalOnCom1)
{
    test::SimProcess sim(RK4_CELLSIM, {"--rssi", "31,24"});
    ASSERT_FALSE(sim.device.empty());
    ::setenv("RK4_COM1", sim.device.c_str(), 1);
    test::TempDir dir;
    Workspace space(dir.path());
    test::ScriptedPrompter prompter;
    gui::CellPhoneDialog dialog(space, prompter);
    dialog.usePort(0);
    dialog.show();
    const auto text = [&](const char* name) { return child<QLabel>(&dialog, name)->text(); };

    child<QLineEdit>(&dialog, "minEdit")->setText("5551234567");
    child<QLineEdit>(&dialog, "mdnEdit")->setText("5559876543");
    child<QPushButton>(&dialog, "writeButton")->click();
    ASSERT_TRUE(waitUntilIdle(dialog, 60)) << text("statusLabel").toStdString();
    EXPECT_EQ(text("statusLabel"), "MDN check passed.");

    child<QLineEdit>(&dialog, "minEdit")->clear();
    child<QLineEdit>(&dialog, "mdnEdit")->clear();
    child<QPushButton>(&dialog, "readButton")->click();
    ASSERT_TRUE(waitUntilIdle(dialog, 60)) << text("statusLabel").toStdString();
    EXPECT_EQ(text("statusLabel"), "Values read successfully");
    EXPECT_EQ(child<QLineEdit>(&dialog, "minEdit")->text(), "5551234567");
    EXPECT_EQ(child<QLineEdit>(&dialog, "mdnEdit")->text(), "5559876543");
    EXPECT_EQ(text("esnLabel"), "159 01223629");
    EXPECT_EQ(text("rssiLabel"), "Reading = 15");

    // Polling goes on through the simulated readings: 24 shows 12.
    child<QCheckBox>(&dialog, "pollCheck")->click();
    EXPECT_TRUE(QTest::qWaitFor([&] { return text("rssiLabel") == "Reading = 12"; }, 10000))
        << text("rssiLabel").toStdString();
    child<QCheckBox>(&dialog, "pollCheck")->click();
    EXPECT_TRUE(prompter.messages().empty());
    ::unsetenv("RK4_COM1");
}
