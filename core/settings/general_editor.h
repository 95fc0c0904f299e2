#pragma once
// The general settings dialog (GeneralDialog) without a window: a working copy
// of the general record, the state of its controls, the Call Progress advice
// and the close check that also gives the ring and carrier detect outputs
// their port settings.

#include "core/common/prompter.h"
#include "core/database/database.h"
#include "core/shell/editor.h"
#include "core/shell/navigation.h"

#include <initializer_list>
#include <string>
#include <vector>

namespace rk4 {

class Workspace;

// The editor reconfigures output ports and empties points, so it opens only
// while no window holds a copy of the ports or points, and keeps them closed
// while it is open.
inline constexpr std::initializer_list<NavFlag> kGeneralEditorFlags = {
    NavFlag::General, NavFlag::Grp1,     NavFlag::Grp2,   NavFlag::Grp3,    NavFlag::Grp4,  NavFlag::Grp5,
    NavFlag::Grp6,    NavFlag::Hardware, NavFlag::Inputs, NavFlag::Outputs, NavFlag::Points};
bool generalEditorAvailable(const NavigationFlags& navigation);

// The entries of a list control and the value each one stores.
struct Choices {
    std::vector<std::string> labels;
    std::vector<int> values;

    // The entry that stores `stored`. A value no entry stores gets an entry of
    // its own, labelled `label`, so opening and closing never changes it.
    int select(int stored, const std::string& label);
    int valueAt(int index) const;
};

enum class GeneralField { None, Name, ShiftChangeCode, AccessCode, ModemEnableCode, RingOut, CarrierDetectOut };

struct GeneralCheck {
    bool accepted = false;
    GeneralField focus = GeneralField::None; // the control to give the focus back to on a refusal
};

inline constexpr int kSecurityLevels = 3;

class GeneralEditor : public Editor {
  public:
    explicit GeneralEditor(Workspace& space);

    // Takes the navigation flags and fills the controls from the image.
    void SetupWindow();

    // Controls.
    std::string name;
    std::string shiftChangeCode;
    std::string accessCode;
    std::string modemEnableCode;
    int tempAckIndex = 0;
    int ringsIndex = 0;
    int ringOutIndex = 0;
    int carrierDetectIndex = 0;
    int securityLevel = 0; // 0..2 is one of the three choices; anything else is kept as stored
    bool callProgress = false;

    const Choices& tempAckChoices() const { return tempAck; }
    const Choices& ringsChoices() const { return rings; }
    const Choices& ringOutChoices() const { return ringOutputs; }
    const Choices& carrierDetectChoices() const { return carrierOutputs; }

    // The working copy as the controls now make it.
    GeneralRecord readControls() const;

    // The Call Progress box became checked: advice when a directory answers
    // right after dialling. The box stays checked.
    void ProgressChanged(Prompter& prompter);

    // OK: every check in turn; accepted means the image holds the edits and
    // the dialog closes. A refusal writes nothing.
    GeneralCheck CanClose(Prompter& prompter);
    // Cancel, Escape or the close box: the save-or-discard prompt when the
    // controls differ from the image; saving goes through the OK checks.
    GeneralCheck CmCancel(Prompter& prompter);

    void writeBack() override;
    bool changed() const override;
    std::string scope() const override { return "General"; }
    void leave() override;

  private:
    struct SpecialOutput;
    bool claimOutput(Database& staged, int output, const SpecialOutput& special, Prompter& prompter) const;
    GeneralCheck close();

    Workspace& space;
    GeneralRecord working;
    Choices tempAck;
    Choices rings;
    Choices ringOutputs;
    Choices carrierOutputs;
};

} // namespace rk4
