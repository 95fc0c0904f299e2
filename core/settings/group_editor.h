#pragma once
// The group editor (GroupDialog) without a window: the controls of one of the
// groups 1 to 6, the checks on OK with the port and point changes they bring,
// and leaving.
//
// A group's Alarm Out, New Alarm Out, Ack Out and Ack In are physical ports,
// so OK also takes them from the points that used them, sets the outputs'
// hardware types for their function, says which ports no group uses any
// more, and keeps the special use of the points on those ports (bytes 69 and
// 70) in step with the groups.

#include "core/common/prompter.h"
#include "core/database/database.h"
#include "core/shell/editor.h"

#include <array>
#include <optional>
#include <string>

namespace rk4 {

class Workspace;

// On-time an Ack Out port gets when it has to become timed: 10 seconds.
inline constexpr std::uint16_t kAckOutTimer = 400;

enum class GroupField {
    None,
    Name,
    AckCode,
    InterrogateCode,
    ShortCycles,
    ShortTimer,
    LongTimer,
    AlarmOut,
    NewAlarmOut,
    AckOut,
    AckIn,
};

struct GroupCheck {
    bool accepted = false;
    GroupField focus = GroupField::None; // the control to give the focus back to on a refusal
};

// What the dialog's controls hold. Ports are 1..8, 0 for none; the timers and
// Short Cycles hold what was typed, so an out-of-range value can be refused.
struct GroupControls {
    bool enabled = false;
    std::string name;
    std::string ackCode;
    std::string interrogateCode;
    unsigned shortCycles = 0;
    unsigned shortTimer = 0;
    unsigned longTimer = 0;
    std::array<int, 4> shiftDir{}; // 0..5 for Directories A..F
    bool autoAck = false;
    bool ackRequest = false;
    int alarmOut = 0;
    int newAlarmOut = 0;
    int ackOut = 0;
    int ackIn = 0;
    bool operator==(const GroupControls&) const = default;
};

// True when any of the six groups uses output `output` (1..8) for Alarm Out,
// New Alarm Out or Ack Out.
bool CheckOtherGroups(const Database& db, int output);

class GroupEditor : public Editor {
  public:
    // `group` is 1..6.
    GroupEditor(Workspace& space, int group);

    int group() const { return groupNumber; }
    std::string title() const { return "Group " + std::to_string(groupNumber); }

    // Takes the navigation flags and fills the controls from the image.
    void SetupWindow();

    GroupControls controls;

    // OK (Leaving::Exit): the checks, then the image is written and the dialog
    // closes. Any other way out (Leaving::Other): the save-or-discard prompt
    // when the controls changed; saving goes through the same checks.
    GroupCheck CanClose(Prompter& prompter, Leaving how);

    // Writes what the last accepted check prepared; nothing before that.
    void writeBack() override;
    bool changed() const override { return controls != opened; }
    std::string scope() const override { return "this Group"; }
    void leave() override;

  private:
    GroupCheck check(Prompter& prompter);
    GroupRecord recordFromControls() const;
    void close();

    Workspace& space;
    int groupNumber;
    GroupControls opened;
    std::optional<Database> checked;
};

} // namespace rk4
