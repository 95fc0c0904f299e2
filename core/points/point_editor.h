#pragma once
// The point dialogs' rules: the port chooser (NewPointDialog), the acknowledge
// input editor (SpecialDialog) and the per-type editors (PointDialog opened as
// DigitalPointDialog or WdogPointDialog, OutputPointDialog,
// IntervalPointDialog, TotalPointDialog, AnalogPointDialog). One object per
// open dialog holds its controls, the close check and the port change.

#include "core/common/prompter.h"
#include "core/database/database.h"

#include <array>
#include <functional>
#include <string>
#include <vector>

namespace rk4 {

class Workspace;

using PointList = std::array<PointRecord, kPointCount>;

enum class PointDialogKind { New, Special, Digital, Wdog, Output, Interval, Total, Analog };
const char* pointDialogName(PointDialogKind kind);
// The dialog that edits a point of `type` (the acknowledge input aside).
PointDialogKind pointDialogKindOf(std::uint8_t type);

// The port list of the chooser and of every editor: inputs 1-8, outputs 1-8,
// then "UNUSED". The markers of a special function sit in columns 20 to 29.
inline constexpr int kPortLineCount = 17;
inline constexpr int kUnusedLine = 16;
std::vector<std::string> PortLines(const Database& db);
// The line of a point's port in that list.
int portLineOf(const PointRecord& point);

enum class PointField { None, Name, Code, OffCode, Port };

struct PointCheck {
    bool accepted = false;
    PointField focus = PointField::None; // the field to give the focus back to on a refusal
};

// Decimal place choices of a totalizer, stored as their index in byte 68.
inline constexpr std::array<const char*, 5> kDecimalChoices = {"XXXXX.", "XXXX.Y", "XXX.YY", "XX.YYY", "X.YYYY"};

class PointEditor {
  public:
    // `list` is the points window's working copy; `record` the working record
    // of slot `slot` (0..29) that this dialog edits.
    PointEditor(Workspace& space, PointList& list, int slot, PointRecord& record, PointDialogKind kind);

    PointDialogKind kind() const { return dialogKind; }
    int slot() const { return slotIndex; }
    std::string title() const;
    bool hasCode() const;
    std::string codeLabel() const;

    // Controls, filled by SetupWindow and read on closing.
    std::string name;
    bool enabled = false;
    int groupIndex = -1;    // 0..5 for groups 1..6, -1 for none
    std::string code;       // DTMF tag, ON code or Clear Code
    std::string offCode;    // outputs
    bool whenActive = true; // the alarm state; false means latching
    int decimalIndex = 0;   // totalizers
    std::array<std::uint8_t, 3> units{};
    int portIndex = kUnusedLine; // the selected line of the port list

    std::vector<std::string> portLines() const;
    // Groups that use the acknowledge input being edited (SpecialDialog).
    std::string ackGroupsText() const;
    void SetupWindow();

    // NewPointDialog's OK: checks the selected line and fills the working record.
    bool SetPort(Prompter& prompter);
    // Every dialog's close. `exit` is set by the dialog's Exit (or OK) command.
    PointCheck CanClose(Prompter& prompter, bool exit);
    // Another line of the port list was selected. True when the point moved:
    // the dialog then closes and the list opens the editor of the new type.
    // False means the previous line is selected again.
    bool ChangeIO(int index, Prompter& prompter);
    bool portChanged() const { return portChangedFlag; }
    // True when the move or the chooser changed the list's copy.
    bool listChanged() const { return markedChanged; }

    // AnalogPointDialog's Calibrate button; the calibration dialog sets it.
    std::function<void(PointEditor&, PointRecord&)> calibrate;
    PointRecord& working() { return record; }

  private:
    bool refusedPort(int index, Prompter& prompter) const;
    bool refusedOutputForGeneralUse(int index, Prompter& prompter) const;
    bool refusedForGroupOutput(const std::string& text, Prompter& prompter) const;
    void movePointTo(int index);
    void resetMovedPoint();
    void readCommon(PointRecord& into) const;
    PointCheck closePointDialog(Prompter& prompter, bool exit);
    PointCheck closeOutputDialog(Prompter& prompter, bool exit);
    PointCheck closeTotalDialog(Prompter& prompter);
    PointCheck closeAnalogDialog(Prompter& prompter, bool exit);

    Workspace& space;
    PointList& list;
    int slotIndex;
    PointRecord& record;
    PointRecord opened; // the record as the dialog found it
    PointDialogKind dialogKind;
    int openedIndex = kUnusedLine;
    bool portChangedFlag = false;
    bool markedChanged = false;
};

// The fields a point of a new type starts with: the analog defaults, or the
// words a digital or watchdog point keeps at rest.
void ApplyTypeDefaults(PointRecord& point);

} // namespace rk4
