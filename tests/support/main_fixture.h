#pragma once
// A main window on a fresh working folder (the default Advanced database),
// shown and settled, for the window tests.

#include "gui/shell/main_window.h"
#include "tests/support/gui_helpers.h"
#include "tests/support/scripted_prompter.h"
#include "tests/support/temp_dir.h"

#include <QAction>
#include <QApplication>

#include <gtest/gtest.h>

#include <memory>

namespace rk4::test {

class MainTest : public ::testing::Test {
  protected:
    MainTest()
    {
        main = std::make_unique<gui::Main>(space, &prompter);
        main->show();
        QApplication::processEvents(); // the start-up report
        prompter.clear();
    }

    QAction* action(const char* name) { return child<QAction>(main.get(), name); }
    // Runs the deleteLater() of a window that has just closed.
    static void flushDeletes() { QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); }

    TempDir dir;
    Workspace space{dir.path()};
    ScriptedPrompter prompter;
    std::unique_ptr<gui::Main> main;
};

} // namespace rk4::test
