#include "core/shell/warning_dialog.h"

namespace rk4 {

WarningAnswer WarningDialog::Execute(Prompter& prompter)
{
    switch (prompter.ask(message())) {
    case Answer::Yes:
    case Answer::Ok: UniversalFlag = false; return WarningAnswer::YesSave;
    case Answer::No: UniversalFlag = false; return WarningAnswer::NoSave;
    default: UniversalFlag = true; return WarningAnswer::GoBack;
    }
}

} // namespace rk4
