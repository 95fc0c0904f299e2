#include "core/database/defaults.h"
#include "gui/shell/main_window.h"
#include "tests/support/gui_helpers.h"
#include "tests/support/scripted_prompter.h"
#include "tests/support/temp_dir.h"

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QPushButton>

#include <gtest/gtest.h>

using namespace rk4;
using rk4::test::ScriptedPrompter;
using rk4::test::TempDir;

namespace {

// The window binds the workspace's rules (tested there) to its menus, title
// and labels; these check the binding.
struct MainWindow : ::testing::Test {
    TempDir dir;
    Workspace space{dir.path()};
    ScriptedPrompter prompter;
    gui::Main window{space, &prompter};

    QAction* action(const char* name)
    {
        QAction* found = window.findChild<QAction*>(name);
        EXPECT_NE(found, nullptr) << name;
        return found;
    }
    QString modeLabel() { return window.findChild<QLabel*>("modeLabel")->text().trimmed(); }
};

} // namespace

TEST_F(MainWindow, ShowingItGivesTheStartupReportAndTitle)
{
    window.show();
    QApplication::processEvents();
    QApplication::processEvents();
    EXPECT_EQ(prompter.texts().size(), 2u) << "the created files are reported once";
    EXPECT_EQ(window.windowTitle().toStdString(), " Sentrix Rk4 Programmer  -  Rk4.dat");
    EXPECT_EQ(modeLabel(), "Advanced mode");
}

TEST_F(MainWindow, FileCommandsFollowTheNavigationFlags)
{
    QApplication::processEvents();
    EXPECT_TRUE(action("actionOpen")->isEnabled());
    space.navigation.enterEditor({NavFlag::DirA});
    window.updateCommands();
    EXPECT_FALSE(action("actionOpen")->isEnabled());
    EXPECT_FALSE(action("actionSave")->isEnabled());
    EXPECT_FALSE(action("actionExportText")->isEnabled());
    EXPECT_FALSE(action("actionImportText")->isEnabled());
    space.navigation.leaveEditor({NavFlag::DirA});
    window.updateCommands();
    EXPECT_TRUE(action("actionSave")->isEnabled());
}

TEST_F(MainWindow, ExportAndImportGoThroughTheTextForm)
{
    QApplication::processEvents();
    prompter.clear();
    setName(space.image.gen.name, "EXPORTED");
    prompter.fileChoice((dir / "site.yaml").string());
    action("actionExportText")->trigger();
    ASSERT_TRUE(std::filesystem::exists(dir / "site.yaml"));

    setName(space.image.gen.name, "CHANGED");
    space.DatabaseChanged = true;
    prompter.expect("Do you want to save changed data?", Answer::No).fileChoice((dir / "site.yaml").string());
    action("actionImportText")->trigger();
    EXPECT_EQ(nameText(space.image.gen.name), "EXPORTED        ");
    EXPECT_TRUE(prompter.finished());
}

TEST_F(MainWindow, ModeCommandSwitchesMenusAndSaveAsRetitles)
{
    QApplication::processEvents();
    EXPECT_FALSE(action("actionRunWizard")->isVisible());
    rk4::test::whenDialogOpens(
        [](QDialog* warning) { rk4::test::child<QPushButton>(warning, "convertAllButton")->click(); });
    prompter
        .expect("Changing to the Basic mode will remove some programming options.\nDo you want to see a summary of "
                "these limitations?",
                Answer::No)
        .expectPrefix("Do you want to use the Basic Wizard", Answer::No);
    action("actionMode")->trigger();
    EXPECT_TRUE(action("actionMode")->isChecked());
    EXPECT_TRUE(action("actionRunWizard")->isVisible());
    EXPECT_EQ(modeLabel(), "Basic mode");

    prompter.fileChoice((dir / "basic-site.dat").string());
    action("actionSaveAs")->trigger();
    EXPECT_EQ(window.windowTitle().toStdString(),
              std::string(" Sentrix Rk4 Programmer  -  ") + (dir / "basic-site.dat").string());
    EXPECT_TRUE(prompter.finished());
}

TEST_F(MainWindow, ClosingWithUnsavedChangesAndCancelKeepsTheProgramRunning)
{
    window.show();
    QApplication::processEvents();
    space.DatabaseChanged = true;
    prompter.expect("Do you want to save changed data before closing application?", Answer::Cancel);
    EXPECT_FALSE(window.close());
    EXPECT_TRUE(window.isVisible());
    prompter.expect("Do you want to save changed data before closing application?", Answer::No);
    EXPECT_TRUE(window.close());
}

TEST_F(MainWindow, OpensTheFileGivenOnTheCommandLine)
{
    Database basic;
    basic.gen.basicMode = 1;
    ClearDatabase(basic, false);
    ASSERT_EQ(writeImageFile(dir / "given.dat", basic), FileStatus::Ok);
    window.openStartupFile(QString::fromStdString((dir / "given.dat").string()));
    EXPECT_EQ(modeLabel(), "Basic mode");
    EXPECT_TRUE(window.windowTitle().endsWith("given.dat"));
}
