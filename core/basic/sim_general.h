#pragma once
// SimGenDialog without a window: the Basic system settings. Three codes, the
// rings before answer and the temporary acknowledge time, on a copy of the
// general record.

#include "core/basic/sim_dialog.h"
#include "core/database/database.h"

#include <string>
#include <vector>

namespace rk4 {

class Workspace;

class SimGenEditor : public SimDialogEditor {
  public:
    enum class Field { None, AccessCode, ModemEnableCode, DirectoryControlCode };

    explicit SimGenEditor(Workspace& space);

    std::string title() const { return "System Settings"; }

    // Controls, filled from the image.
    std::string accessCode;
    std::string modemEnableCode;
    // The Directory Control code is the one that switches calls between the
    // directories, which the general record keeps as its shift change code.
    std::string directoryControlCode;
    int ringsChoice = -1;   // 0..8 for 1..9 rings; -1: the image holds another value
    int ackTimeChoice = -1; // index into ackTimeChoices(); -1: the image holds another value

    static std::vector<std::string> ringsChoices();
    // The temporary acknowledge time of the general settings, less its "none":
    // Basic mode always gives an acknowledged alarm a time after which it calls again.
    static std::vector<std::string> ackTimeChoices();

    bool CanClose(Prompter& prompter) override;
    bool changed() const override { return result() != opened; }
    std::string scope() const override { return "the System Settings"; }

    Field focus = Field::None;

  private:
    // The general record the controls stand for. A choice left at -1 keeps
    // the stored value, so opening and closing changes nothing.
    GeneralRecord result() const;

    Workspace& space;
    GeneralRecord opened;
};

} // namespace rk4
