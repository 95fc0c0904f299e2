#pragma once
// SimoutDialog without a window: the four user outputs (points 9 to 12 on
// outputs 1 to 4) with their type, DTMF codes and on-time, and the outputs the
// unit drives itself, shown with their roles.

#include "core/basic/sim_dialog.h"
#include "core/basic/sim_time.h"
#include "core/database/database.h"

#include <array>
#include <string>
#include <vector>

namespace rk4 {

class Workspace;

inline constexpr int kUserOutputs = 4;

class SimoutEditor : public SimDialogEditor {
  public:
    enum class Field { None, OnCode, OffCode, Timer };

    struct Output {
        bool timed = false;
        std::string onCode;
        std::string offCode; // ON/OFF only
        SimTime timer;       // TIMED only
        bool operator==(const Output&) const = default;
    };

    explicit SimoutEditor(Workspace& space);

    std::string title() const { return "OUTPUTS"; }
    static std::vector<std::string> typeChoices() { return {"ON/OFF", "TIMED"}; }
    static std::vector<std::string> resolutionChoices() { return {"sec.", "min."}; }

    std::array<Output, kUserOutputs> output;

    // The type of row `row` moved: the fields the new type does not use are
    // blanked (BlankOld); a timed output starts at the template's 10 seconds.
    void TypeChanging(int row, bool timed);
    void ResolutionChanging(int row, bool minutes, Prompter& prompter)
    {
        output[row].timer.ResolutionChanging(minutes, prompter);
    }

    // The outputs the unit drives, one line each: "Carrier Detect", "Output 4".
    struct Role {
        std::string name;
        std::string output;
    };
    std::vector<Role> hardwareRoles() const;

    bool CanClose(Prompter& prompter) override;
    bool changed() const override { return output != opened; }
    std::string scope() const override { return "the Outputs"; }

    int focusRow = 0;
    Field focus = Field::None;

  private:
    Workspace& space;
    std::array<Output, kUserOutputs> opened;
};

} // namespace rk4
