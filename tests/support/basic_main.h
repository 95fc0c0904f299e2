#pragma once
// A main window on the default Basic database, shown and settled, for the
// tests of the Basic-mode windows.

#include "core/database/defaults.h"
#include "tests/support/main_fixture.h"

namespace rk4::test {

class BasicMainTest : public MainTest {
  protected:
    BasicMainTest()
    {
        space.image.gen.basicMode = 1;
        ClearDatabase(space.image, false);
        space.DatabaseChanged = false;
        main->updateCommands();
        prompter.clear();
    }
};

} // namespace rk4::test
