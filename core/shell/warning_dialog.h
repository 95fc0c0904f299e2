#pragma once
// The save-or-discard prompt every editor shows when it is left by any way
// other than Exit while its working copy differs from the image.

#include "core/common/prompter.h"

#include <string>

namespace rk4 {

enum class WarningAnswer {
    YesSave, // write the working copy into the image, then close
    NoSave,  // drop the working copy, then close
    GoBack,  // stay in the editor (UniversalFlag)
};

class WarningDialog {
  public:
    // `scope` names what is lost: "the hardware inputs", "this Group", ...
    explicit WarningDialog(std::string scope) : scope(std::move(scope)) {}

    std::string text() const { return "All changes made to " + scope + " will be lost."; }
    Message message() const { return Message{"Warning", text(), Icon::Warning, Buttons::SaveDiscardCancel}; }

    // Asks once. UniversalFlag is set when the user chose to go back.
    WarningAnswer Execute(Prompter& prompter);
    bool UniversalFlag = false;

  private:
    std::string scope;
};

} // namespace rk4
