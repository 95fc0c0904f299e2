#include "core/database/defaults.h"
#include "gui/shell/main_window.h"
#include "tests/support/scripted_prompter.h"
#include "tests/support/temp_dir.h"

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QMdiArea>
#include <QToolBar>

#include <gtest/gtest.h>

using namespace rk4;
using rk4::test::ScriptedPrompter;
using rk4::test::TempDir;

namespace {

QAction* action(QWidget& window, const char* name)
{
    QAction* found = window.findChild<QAction*>(name);
    EXPECT_NE(found, nullptr) << name;
    return found;
}

} // namespace

TEST(MainWindow, StartsInAnEmptyFolderAndReportsTheCreatedFilesOnce)
{
    TempDir dir;
    Workspace space(dir.path());
    ScriptedPrompter prompter;
    gui::Main window(space, &prompter);
    window.show();
    QApplication::processEvents();
    QApplication::processEvents();
    EXPECT_EQ(prompter.texts(), (std::vector<std::string>{" CANNOT OPEN RK4.CFG FILE - DEFAULT CREATED.",
                                                          " CANNOT OPEN RK4.DAT FILE - DEFAULT CREATED."}));
    EXPECT_EQ(window.windowTitle().toStdString(), " Sentrix Rk4 Programmer  -  Rk4.dat");
    EXPECT_EQ(space.image.gen.ringsToAnswer, 2);
    EXPECT_EQ(window.findChild<QLabel*>("modeLabel")->text().trimmed(), "Advanced mode");
    EXPECT_TRUE(std::filesystem::exists(dir / "Rk4.dat"));
}

TEST(MainWindow, FileCommandsFollowTheNavigationFlags)
{
    TempDir dir;
    Workspace space(dir.path());
    ScriptedPrompter prompter;
    gui::Main window(space, &prompter);
    QApplication::processEvents();
    EXPECT_TRUE(action(window, "actionOpen")->isEnabled());
    space.navigation.enterEditor({NavFlag::DirA});
    window.updateCommands();
    EXPECT_FALSE(action(window, "actionOpen")->isEnabled());
    EXPECT_FALSE(action(window, "actionSave")->isEnabled());
    space.navigation.leaveEditor({NavFlag::DirA});
    window.updateCommands();
    EXPECT_TRUE(action(window, "actionSave")->isEnabled());
}

TEST(MainWindow, ModeCommandSwitchesMenusAndSaveAsRetitles)
{
    TempDir dir;
    Workspace space(dir.path());
    ScriptedPrompter prompter;
    gui::Main window(space, &prompter);
    QApplication::processEvents();
    prompter.clear();

    EXPECT_FALSE(action(window, "actionRunWizard")->isVisible());
    prompter
        .expect("Changing to the Basic mode will remove some programming options.\nDo you want to see a summary of "
                "these limitations?",
                Answer::No)
        .expectPrefix("Do you want to use the Basic Wizard", Answer::No);
    action(window, "actionMode")->trigger();
    EXPECT_TRUE(space.basicMode());
    EXPECT_TRUE(action(window, "actionMode")->isChecked());
    EXPECT_TRUE(action(window, "actionRunWizard")->isVisible());
    EXPECT_EQ(window.findChild<QLabel*>("modeLabel")->text().trimmed(), "Basic mode");

    prompter.fileChoice((dir / "basic-site.dat").string());
    action(window, "actionSaveAs")->trigger();
    EXPECT_EQ(window.windowTitle().toStdString(),
              std::string(" Sentrix Rk4 Programmer  -  ") + (dir / "basic-site.dat").string());
    EXPECT_FALSE(space.DatabaseChanged);
    EXPECT_TRUE(prompter.finished());
}

TEST(MainWindow, ClosingWithUnsavedChangesAndCancelKeepsTheProgramRunning)
{
    TempDir dir;
    Workspace space(dir.path());
    ScriptedPrompter prompter;
    gui::Main window(space, &prompter);
    window.show();
    QApplication::processEvents();
    space.DatabaseChanged = true;
    prompter.expect("Do you want to save changed data before closing application?", Answer::Cancel);
    EXPECT_FALSE(window.close());
    EXPECT_TRUE(window.isVisible());
    prompter.expect("Do you want to save changed data before closing application?", Answer::No);
    EXPECT_TRUE(window.close());
}

TEST(MainWindow, OpensTheFileGivenOnTheCommandLine)
{
    TempDir dir;
    Database basic;
    basic.gen.basicMode = 1;
    ClearDatabase(basic, false);
    ASSERT_EQ(writeImageFile(dir / "given.dat", basic), FileStatus::Ok);
    Workspace space(dir.path());
    ScriptedPrompter prompter;
    gui::Main window(space, &prompter);
    window.openStartupFile(QString::fromStdString((dir / "given.dat").string()));
    EXPECT_TRUE(space.basicMode());
    EXPECT_FALSE(space.DatabaseChanged);
    EXPECT_TRUE(window.windowTitle().endsWith("given.dat"));
}
