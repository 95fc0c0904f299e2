#pragma once
// The port dialogs' rules: one object per open dialog, holding the state of
// its controls, the scale handlers, the close check and the type change.
//
// Inputs are edited by DigitalDialog, WdogDialog, IntervalDialog, TotalDialog
// and AnalogDialog, outputs by OnOffDialog and TimedDialog; the dialog shown
// follows the working entry's type.

#include "core/common/prompter.h"
#include "core/database/database.h"
#include "core/hardware/time_field.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace rk4 {

class Workspace;

// typeFlags of an input entry.
inline constexpr std::uint8_t kInputTypeMask = 0x0F;
inline constexpr std::uint8_t kInputDigital = 0;
inline constexpr std::uint8_t kInputWatchdog = 1;
inline constexpr std::uint8_t kInputInterval = 2;
inline constexpr std::uint8_t kInputTotalizer = 3;
inline constexpr std::uint8_t kInputAnalog = 0x10;
inline constexpr std::uint8_t kCorruptBit = 0x20;
inline constexpr std::uint8_t kBothChanges = 0x40;
inline constexpr std::uint8_t kPolarityBit = 0x80;
// typeFlags of an output entry.
inline constexpr std::uint8_t kOutputOnOff = 0;
inline constexpr std::uint8_t kOutputTimed = 1;
// scaleFlags.
inline constexpr std::uint8_t kDebounceMinutes = 0x01;
inline constexpr std::uint8_t kTimerMinutes = 0x02;
inline constexpr std::uint8_t kIntervalMinutes = 0x04;

// Bytes 0-7: typeFlags of inputs 1-8; bytes 8-15: their resetMask.
using Snapshot = std::array<std::uint8_t, 16>;
Snapshot makeSnapshot(const HardwareRecord& record);

// A digital input with no other bits in its type: the only kind that may reset a totalizer.
inline bool isPlainDigital(std::uint8_t typeFlags) { return (typeFlags & 0x1F) == 0; }

enum class DialogKind { Digital, Wdog, Interval, Total, Analog, OnOff, Timed };
DialogKind dialogKindOf(int port, const HardwarePort& entry);
const char* dialogName(DialogKind kind);

enum class Edge { Both, LowToHigh, HighToLow };
enum class FieldId { None, Debounce, Timer };

struct CloseCheck {
    bool accepted = false;
    FieldId focus = FieldId::None; // the field to give the focus back to on a refusal
};

class PortEditor {
  public:
    // `port` is the hardware entry 0..15; `entry` the window's working entry;
    // `snapshot` the inputs' snapshot (inputs only).
    PortEditor(Workspace& space, int port, HardwarePort& entry, Snapshot* snapshot);

    int port() const { return portIndex; }
    bool isOutput() const { return portIndex >= kInputCount; }
    int number() const { return portIndex % kInputCount + 1; }
    DialogKind kind() const { return dialogKind; }
    std::string title() const;

    // Controls, filled by SetupWindow and read by CanClose.
    int typeIndex = 0;
    TimeField debounce{TimeKind::Debounce, {}, false};
    TimeField timer{TimeKind::Watchdog, {}, false};
    bool normallyLow = false;
    Edge edge = Edge::HighToLow;
    bool intervalMinutes = false;
    int resetChoice = 0; // index into resetChoices()

    static std::vector<std::string> inputTypes();
    static std::vector<std::string> outputTypes();
    std::vector<std::string> typeChoices() const { return isOutput() ? outputTypes() : inputTypes(); }
    // "NONE" then "I/P n" for every plain digital input.
    std::vector<std::string> resetChoices() const;
    // For an ON/OFF output: which groups use it, one line per use.
    std::vector<std::string> outputUsage() const;
    bool hasDebounce() const;
    bool hasTimer() const { return dialogKind == DialogKind::Wdog || dialogKind == DialogKind::Timed; }

    void SetupWindow();
    void DebounceSec(Prompter& prompter) { debounce.toSeconds(prompter); }
    void DebounceMin(Prompter& prompter) { debounce.toMinutes(prompter); }
    void WdogSec(Prompter& prompter) { timer.toSeconds(prompter); }
    void WdogMin(Prompter& prompter) { timer.toMinutes(prompter); }
    void TimerSec(Prompter& prompter) { timer.toSeconds(prompter); }
    void TimerMin(Prompter& prompter) { timer.toMinutes(prompter); }

    // Validates and writes the controls into the entry; refused means nothing was written.
    CloseCheck CanClose(Prompter& prompter);

    // The type selector moved. True when the type was changed: the dialog then
    // closes with the cancel result and the window opens the new type's dialog.
    bool ChangeInput(int index, Prompter& prompter);
    bool ChangeOutput(int index, Prompter& prompter);
    bool typeChanged() const { return changedType; }

  private:
    int currentTypeIndex() const;
    void resetToNewType();
    void releaseDigitalDuties(Prompter& prompter);
    void storeResetInput();

    Workspace& space;
    int portIndex;
    HardwarePort& entry;
    Snapshot* snapshot;
    DialogKind dialogKind;
    bool changedType = false;
};

} // namespace rk4
