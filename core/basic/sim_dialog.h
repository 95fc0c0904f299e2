#pragma once
// What the four Basic editors (and the phone number editor) share. Each is a
// modal dialog on a working copy of its part of the image: OK runs the close
// checks and writes the copy back; any other way out asks the save-or-discard
// prompt when something was changed, and saving runs the same checks first,
// so a refused value is never written. They do not derive from Editor, whose
// Exit writes back without checks.

#include "core/common/prompter.h"
#include "core/shell/warning_dialog.h"

#include <string>

namespace rk4 {

class SimDialogEditor {
  public:
    virtual ~SimDialogEditor() = default;

    // OK: true when every check passed and the copy was written. False keeps
    // the dialog open; the editor then names the field to give the focus to.
    virtual bool CanClose(Prompter& prompter) = 0;
    // True when a control differs from what the dialog opened with.
    virtual bool changed() const = 0;
    // What the save-or-discard prompt names, e.g. "this phone number".
    virtual std::string scope() const = 0;

    // Cancel, Escape or the close box. False keeps the dialog open.
    bool CanLeave(Prompter& prompter)
    {
        if (!changed())
            return true;
        WarningDialog dialog(scope());
        switch (dialog.Execute(prompter)) {
        case WarningAnswer::GoBack: return false;
        case WarningAnswer::NoSave: return true;
        case WarningAnswer::YesSave: break;
        }
        return CanClose(prompter);
    }
};

} // namespace rk4
