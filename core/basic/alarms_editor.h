#pragma once
// AlarmsDialog without a window: the eight alarms (points 1 to 8 on inputs 1
// to 8), each disabled or reporting through Directory A or B, with one input
// format and one debounce for all of them.

#include "core/basic/sim_dialog.h"
#include "core/basic/sim_time.h"
#include "core/database/database.h"

#include <array>
#include <string>
#include <vector>

namespace rk4 {

class Workspace;

inline constexpr int kBasicAlarms = 8;

class AlarmsEditor : public SimDialogEditor {
  public:
    enum class Use { Disabled, DirA, DirB };
    enum class Format { NormallyHigh, NormallyLow, NormallyHighLatching, NormallyLowLatching };
    enum class Field { None, Debounce };

    struct Alarm {
        Use use = Use::Disabled;
        std::string name;
        bool operator==(const Alarm&) const = default;
    };
    struct Controls {
        std::array<Alarm, kBasicAlarms> alarm;
        Format format = Format::NormallyHigh;
        SimTime debounce{SimTime::Kind::Debounce, {}, false};
        bool operator==(const Controls&) const = default;
    };

    explicit AlarmsEditor(Workspace& space);

    std::string title() const { return "ALARMS"; }
    static std::vector<std::string> useChoices() { return {"disabled", "DIR A", "DIR B"}; }
    static std::vector<std::string> formatChoices()
    {
        return {"Normally High", "Normally Low", "Normally High, Latching", "Normally Low, Latching"};
    }
    static std::vector<std::string> resolutionChoices() { return {"Sec.", "Min."}; }

    Controls controls;

    void ResolutionChanging(bool minutes, Prompter& prompter)
    {
        controls.debounce.ResolutionChanging(minutes, prompter);
    }
    // A disabled alarm's other controls are greyed (UpdateDisabled).
    bool rowEnabled(int alarm) const { return controls.alarm[alarm].use != Use::Disabled; }

    bool CanClose(Prompter& prompter) override;
    bool changed() const override { return controls != opened; }
    std::string scope() const override { return "the Alarms"; }

    Field focus = Field::None;

  private:
    Workspace& space;
    Controls opened;
};

} // namespace rk4
