#pragma once
// A main window on the default Basic database, shown and settled, for the
// tests of the Basic-mode windows.

#include "core/database/defaults.h"
#include "gui/shell/main_window.h"
#include "tests/support/scripted_prompter.h"
#include "tests/support/temp_dir.h"

#include <QApplication>

#include <gtest/gtest.h>

#include <memory>

namespace rk4::test {

class BasicMainTest : public ::testing::Test {
  protected:
    BasicMainTest()
    {
        space.image.gen.basicMode = 1;
        ClearDatabase(space.image, false);
        main = std::make_unique<gui::Main>(space, &prompter);
        main->show();
        QApplication::processEvents(); // the start-up report
        space.image.gen.basicMode = 1;
        ClearDatabase(space.image, false);
        space.DatabaseChanged = false;
        main->updateCommands();
        prompter.clear();
    }

    TempDir dir;
    Workspace space{dir.path()};
    ScriptedPrompter prompter;
    std::unique_ptr<gui::Main> main;
};

} // namespace rk4::test
