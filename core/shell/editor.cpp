#include "core/shell/editor.h"

#include "core/shell/warning_dialog.h"

namespace rk4 {

bool Editor::CanClose(Prompter& prompter, Leaving how)
{
    if (!open)
        return true;
    if (how == Leaving::Exit) {
        writeBack();
    } else if (changed()) {
        WarningDialog dialog(scope());
        switch (dialog.Execute(prompter)) {
        case WarningAnswer::GoBack: return false;
        case WarningAnswer::YesSave: writeBack(); break;
        case WarningAnswer::NoSave: break;
        }
    }
    open = false;
    leave();
    return true;
}

} // namespace rk4
