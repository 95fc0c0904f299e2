#include "core/points/point_editor.h"

#include "core/common/text.h"
#include "core/database/defaults.h"
#include "core/database/dtmf.h"
#include "core/database/validators.h"
#include "core/hardware/port_editor.h"
#include "core/points/points.h"
#include "core/shell/warning_dialog.h"
#include "core/shell/workspace.h"

namespace rk4 {

namespace {

constexpr std::size_t kMarkerFirst = 20;
constexpr std::size_t kMarkerLast = 29;

Message error(std::string text) { return Message{"Error", std::move(text), Icon::Error, Buttons::Ok}; }

std::string inputTypeColumn(const HardwarePort& entry, bool& plainDigital)
{
    plainDigital = false;
    switch (entry.typeFlags & kInputTypeMask) {
    case kInputWatchdog: return " WATCHDOG  ";
    case kInputInterval: return " INTERVAL  ";
    case kInputTotalizer: return " TOTALIZER ";
    default: break;
    }
    if (entry.typeFlags & kInputAnalog)
        return " ANALOG    ";
    if ((entry.typeFlags & kInputTypeMask) == kInputDigital) {
        plainDigital = true;
        return " DIGITAL           ";
    }
    return " DIGITAL   ";
}

bool anyGroupNames(const Database& db, int number, std::uint8_t GroupRecord::*field)
{
    for (const GroupRecord& group : db.group)
        if (group.*field == number)
            return true;
    return false;
}

} // namespace

const char* pointDialogName(PointDialogKind kind)
{
    switch (kind) {
    case PointDialogKind::New: return "NewPointDialog";
    case PointDialogKind::Special: return "SpecialDialog";
    case PointDialogKind::Digital: return "DigitalPointDialog";
    case PointDialogKind::Wdog: return "WdogPointDialog";
    case PointDialogKind::Output: return "OutputPointDialog";
    case PointDialogKind::Interval: return "IntervalPointDialog";
    case PointDialogKind::Total: return "TotalPointDialog";
    case PointDialogKind::Analog: break;
    }
    return "AnalogPointDialog";
}

PointDialogKind pointDialogKindOf(std::uint8_t type)
{
    switch (type) {
    case kPointUnused: return PointDialogKind::New;
    case kPointWatchdog: return PointDialogKind::Wdog;
    case kPointInterval: return PointDialogKind::Interval;
    case kPointTotalizer: return PointDialogKind::Total;
    case kPointAnalog: return PointDialogKind::Analog;
    case kPointOnOffOutput:
    case kPointTimerOutput: return PointDialogKind::Output;
    default: return PointDialogKind::Digital;
    }
}

std::vector<std::string> PortLines(const Database& db)
{
    std::vector<std::string> lines;
    for (int n = 1; n <= kInputCount; ++n) {
        const HardwarePort& entry = db.hardware.port[n - 1];
        bool plainDigital = false;
        std::string line = "I/P " + std::to_string(n) + inputTypeColumn(entry, plainDigital);
        if (plainDigital) {
            if (entry.resetMask != 0)
                line += ">RES<";
            if (anyGroupNames(db, n, &GroupRecord::ackIn))
                line += ">ACK<";
        }
        lines.push_back(line);
    }
    for (int n = 1; n <= kInputCount; ++n) {
        const std::uint8_t type = db.hardware.port[kInputCount + n - 1].typeFlags;
        std::string line =
            "O/P " + std::to_string(n) + (type == kOutputTimed ? " TIMED            " : " ON/OFF          ");
        if (anyGroupNames(db, n, &GroupRecord::ackOut))
            line += "<ACK>";
        if (anyGroupNames(db, n, &GroupRecord::newAlarmOut))
            line += "<NEW>";
        if (anyGroupNames(db, n, &GroupRecord::alarmOut))
            line += "<ALM>";
        if (db.gen.ringOut == n)
            line += "<RING>";
        if (db.gen.carrierDetectOut == n)
            line += "<CD>";
        lines.push_back(line);
    }
    lines.push_back("UNUSED");
    return lines;
}

int portLineOf(const PointRecord& point)
{
    if (point.type == kPointUnused || point.port >= kInputCount)
        return kUnusedLine;
    return point.port + (point.isOutput ? kInputCount : 0);
}

void ApplyTypeDefaults(PointRecord& point)
{
    if (point.type == kPointAnalog) {
        point.inactive = 1;
        point.latching = 0;
        point.groupMask = 0;
        point.lowSetpoint = 63;
        point.highSetpoint = 191;
        point.isOutput = 0;
        point.decimalMaximum = 1000;
        point.decimalMinimum = 0;
        point.highReset = 166;
        point.lowReset = 88;
        point.slope = {3, 235, 235};
        point.binaryMaximum = 255;
        point.binaryMinimum = 0;
        point.decimalPlaces = 1;
        point.highSetpointDecimal = 750;
        point.lowSetpointDecimal = 250;
        point.unitSelector = {0, 0, 0};
    } else if (point.type == kPointDigital || point.type == kPointWatchdog) {
        point.highSetpoint = 0;
        point.lowSetpoint = 0;
        point.highReset = 1;
        point.lowReset = 0;
    }
}

PointEditor::PointEditor(Workspace& space, PointList& list, int slot, PointRecord& record, PointDialogKind kind)
    : space(space), list(list), slotIndex(slot), record(record), opened(record), dialogKind(kind)
{
    SetupWindow();
}

std::string PointEditor::title() const
{
    static const char* const kWords[] = {"Select Port", "Acknowledge Input", "Digital Input",   "Watchdog Input",
                                         "Output",      "Interval Input",    "Totalizer Input", "Analog Input"};
    return "Point " + std::to_string(slotIndex + 1) + " - " + kWords[static_cast<int>(dialogKind)];
}

bool PointEditor::hasCode() const
{
    return dialogKind == PointDialogKind::Digital || dialogKind == PointDialogKind::Wdog ||
           dialogKind == PointDialogKind::Special || dialogKind == PointDialogKind::Output ||
           dialogKind == PointDialogKind::Total;
}

std::string PointEditor::codeLabel() const
{
    switch (dialogKind) {
    case PointDialogKind::Output: return "DTMF ON Code";
    case PointDialogKind::Total: return "Clear Code";
    default: return "DTMF Tag";
    }
}

std::vector<std::string> PointEditor::portLines() const { return PortLines(space.image); }

std::string PointEditor::ackGroupsText() const
{
    const std::uint8_t groups = AckInputGroups(space.image, record.port + 1);
    if (groups == (1u << kUsedGroupCount) - 1)
        return "All Groups";
    std::vector<int> numbers;
    for (int g = 0; g < kUsedGroupCount; ++g)
        if (groups & MakeMask(g))
            numbers.push_back(g + 1);
    return numbers.empty() ? std::string() : groupsText(numbers);
}

void PointEditor::SetupWindow()
{
    name = nameText(record.name);
    name.erase(name.find_last_not_of(' ') + 1);
    enabled = record.inactive == 0;
    groupIndex = -1; // a point moved to a new port has no group until one is chosen
    for (int g = 0; g < kUsedGroupCount; ++g)
        if (record.groupMask & MakeMask(g)) {
            groupIndex = g;
            break;
        }
    code = dtmfCodeText(record.onCode);
    offCode = dtmfCodeText(record.offCode);
    whenActive = record.latching == 0;
    decimalIndex = record.decimalPlaces < kDecimalChoices.size() ? record.decimalPlaces : 0;
    units = record.unitSelector;
    portIndex = portLineOf(record);
    openedIndex = portIndex;
}

bool PointEditor::refusedPort(int index, Prompter& prompter) const
{
    const std::vector<std::string> lines = portLines();
    const std::string& line = lines[index];
    for (std::size_t at = kMarkerFirst; at <= kMarkerLast && at < line.size(); ++at)
        if (line[at] == '<' || line[at] == '>') {
            prompter.tell("Warning",
                          index < kInputCount
                              ? "This input is being used for a special function and cannot be used as a point."
                              : "This output is being used for a special function and cannot be used as a point.",
                          Icon::Warning);
            return true;
        }

    if (index < kInputCount) {
        for (int p = 0; p < kPointCount; ++p) {
            const PointRecord& other = list[p];
            if (p != slotIndex && other.port == index && other.isOutput == 0 && other.groupMask == 0 &&
                other.outFunction == kUseAckIn) {
                prompter.ask(error("Point " + std::to_string(p + 1) +
                                   " is using this input for the Acknowledge Input function - select a different I/O"));
                return true;
            }
        }
        if (space.image.hardware.port[index].resetMask != 0) {
            const Answer answer = prompter.ask(Message{
                "Warning", "Input " + std::to_string(index + 1) + " is also used as a totalizer reset - Proceed?",
                Icon::Warning, Buttons::YesNo});
            if (answer != Answer::Yes)
                return true;
        }
    } else if (index < kUnusedLine) {
        for (int p = 0; p < kPointCount; ++p) {
            const PointRecord& other = list[p];
            if (other.port != index - kInputCount || other.groupMask != 0)
                continue;
            const char* text = nullptr;
            switch (other.outFunction) {
            case kUseAlarmOut:
                text = " is using this output for the Alarm Out function - select a different I/O";
                break;
            case kUseNewAlarm:
                text = " is using this output for the New Alarm function - select a different I/O";
                break;
            case kUseAckOut:
                text = " is using this output for the Acknowledge Out function - select a different I/O";
                break;
            case kUseRingOut: text = " is using this output for the Ring Out function - select a different I/O"; break;
            default: break;
            }
            if (text) {
                prompter.ask(error("Point " + std::to_string(p + 1) + text));
                return true;
            }
        }
    }
    return false;
}

bool PointEditor::refusedOutputForGeneralUse(int index, Prompter& prompter) const
{
    const int output = index - kInputCount + 1;
    const char* text = nullptr;
    if (OutputUseGroups(space.image, output, kUseAlarmOut))
        text = "One of the Groups is using this output for the Alarm Present special function.  This output is not "
               "available as a general purpose output.";
    else if (OutputUseGroups(space.image, output, kUseNewAlarm))
        text = "One of the Groups is using this output for the New Alarm Out special function.  This output is not "
               "available as a general purpose output.";
    else if (OutputUseGroups(space.image, output, kUseAckOut))
        text = "One of the Groups is using this output for the Acknowledge Out special function.  This output is not "
               "available as a general purpose output.";
    else if (space.image.gen.carrierDetectOut == output)
        text = "The General section is using this output for the Carrier Detect Out special function.  This output "
               "is not available as a general purpose output.";
    else if (space.image.gen.ringOut == output)
        text = "The General section is using this output for the Ring Out special function.  This output is not "
               "available as a general purpose output.";
    if (!text)
        return false;
    prompter.ask(error(text));
    return true;
}

bool PointEditor::SetPort(Prompter& prompter)
{
    if (portIndex < 0 || portIndex >= kPortLineCount || refusedPort(portIndex, prompter))
        return false;
    return true;
}

void PointEditor::movePointTo(int index)
{
    if (index < kInputCount) {
        record.port = static_cast<std::uint16_t>(index);
        record.isOutput = 0;
        record.type = InputPointType(space.image.hardware.port[index]);
    } else if (index < kUnusedLine) {
        record.port = static_cast<std::uint16_t>(index - kInputCount);
        record.isOutput = 1;
        record.type = OutputPointType(space.image.hardware.port[index]);
    } else {
        record.type = kPointUnused;
        record.port = 0;
        record.isOutput = 0;
    }
}

bool PointEditor::ChangeIO(int index, Prompter& prompter)
{
    if (index == portIndex || index < 0 || index >= kPortLineCount)
        return false;
    const bool outputLine = index >= kInputCount && index < kUnusedLine;
    const bool refused = (dialogKind == PointDialogKind::Output && outputLine)
                             ? refusedOutputForGeneralUse(index, prompter)
                             : refusedPort(index, prompter);
    if (refused)
        return false;
    const Answer answer = prompter.ask(Message{"Warning", "Changing the port will delete existing settings - Continue?",
                                               Icon::Warning, Buttons::YesNo});
    if (answer != Answer::Yes)
        return false;
    movePointTo(index);
    if (index != openedIndex)
        markedChanged = true;
    portIndex = index;
    portChangedFlag = true;
    return true;
}

void PointEditor::resetMovedPoint()
{
    record.latching = 0;
    record.groupMask = 0;
    record.name.fill(' ');
    record.onCode = {};
    if (dialogKind == PointDialogKind::Output || record.isOutput)
        record.offCode = {};
    // Output and interval points stay enabled after a move; the others do not.
    record.inactive = dialogKind == PointDialogKind::Output || dialogKind == PointDialogKind::Interval ? 0 : 1;
}

void PointEditor::readCommon(PointRecord& into) const
{
    setName(into.name, name.substr(0, 16));
    if (dialogKind != PointDialogKind::Special && groupIndex >= 0)
        into.groupMask = static_cast<std::uint8_t>(1u << groupIndex);
    into.inactive = enabled ? 0 : 1;
}

PointCheck PointEditor::CanClose(Prompter& prompter, bool exit)
{
    if (portChangedFlag) {
        resetMovedPoint();
        return {true, PointField::None};
    }
    switch (dialogKind) {
    case PointDialogKind::New: {
        if (!exit)
            return {true, PointField::None};
        const PointRecord before = record;
        movePointTo(portIndex);
        markedChanged = record.type != before.type || record.isOutput != before.isOutput || record.port != before.port;
        return {true, PointField::None};
    }
    case PointDialogKind::Special:
    case PointDialogKind::Digital:
    case PointDialogKind::Wdog: return closePointDialog(prompter, exit);
    case PointDialogKind::Output: return closeOutputDialog(prompter, exit);
    case PointDialogKind::Interval: readCommon(record); return {true, PointField::None};
    case PointDialogKind::Total: return closeTotalDialog(prompter);
    case PointDialogKind::Analog: break;
    }
    return closeAnalogDialog(prompter, exit);
}

PointCheck PointEditor::closePointDialog(Prompter& prompter, bool exit)
{
    PointRecord edited = record;
    readCommon(edited);
    storeDtmfCode(code, edited.onCode);
    edited.latching = whenActive ? 0 : 1;
    const bool changed = edited.latching != opened.latching || edited.inactive != opened.inactive ||
                         edited.groupMask != opened.groupMask || edited.port != opened.port ||
                         edited.isOutput != opened.isOutput || edited.type != opened.type ||
                         edited.name != opened.name || edited.onCode != opened.onCode;
    if (!exit && changed) {
        WarningDialog warning("Digital");
        switch (warning.Execute(prompter)) {
        case WarningAnswer::GoBack: return {false, PointField::None};
        case WarningAnswer::NoSave:
            record = opened;
            space.DatabaseChanged = true; // even for a discard, as the unit's tool always did
            return {true, PointField::None};
        case WarningAnswer::YesSave: exit = true; break;
        }
    }
    if (exit) {
        if (CheckDTMF(code)) {
            prompter.ask(error("Invalid digit found in the DTMF code, use 0-9, *, #, A, B, C and D only."));
            return {false, PointField::Code};
        }
        record.inactive = edited.inactive;
        record.latching = edited.latching;
        record.groupMask = edited.groupMask;
        record.name = edited.name;
        record.onCode = edited.onCode;
        if (record.type == kPointWatchdog)
            ApplyTypeDefaults(record);
    }
    if (changed)
        space.DatabaseChanged = true;
    return {true, PointField::None};
}

bool PointEditor::refusedForGroupOutput(const std::string& text, Prompter& prompter) const
{
    if (text.empty())
        return false;
    const int output = record.port + 1;
    for (int g = 0; g < kUsedGroupCount; ++g) {
        const GroupRecord& group = space.image.group[g];
        const char* refusal = nullptr;
        if (group.alarmOut == output)
            refusal = "This output is being used to indicate an alarm is present - DTMF codes are not allowed.";
        else if (group.newAlarmOut == output)
            refusal = "This output is being used to indicate a new alarm is present - DTMF codes are not allowed.";
        else if (group.ackOut == output)
            refusal =
                "This output is being used to indicate acknowledge has been received - DTMF codes are not allowed.";
        if (refusal) {
            prompter.ask(error(refusal));
            return true;
        }
    }
    return false;
}

PointCheck PointEditor::closeOutputDialog(Prompter& prompter, bool exit)
{
    PointRecord edited = record;
    readCommon(edited);
    storeDtmfCode(code, edited.onCode);
    storeDtmfCode(offCode, edited.offCode);
    if (!exit && edited != opened) {
        WarningDialog warning("Output");
        switch (warning.Execute(prompter)) {
        case WarningAnswer::GoBack: return {false, PointField::None};
        case WarningAnswer::NoSave: record = opened; return {true, PointField::None};
        case WarningAnswer::YesSave: exit = true; break;
        }
    }
    if (!exit)
        return {true, PointField::None};
    // The ON code's invalid-digit text also serves the OFF code.
    const char* invalid = "Invalid digit found in the DTMF ON code, use 0-9, *, #, A, B, C and D only.";
    if (refusedForGroupOutput(code, prompter))
        return {false, PointField::Code};
    if (CheckDTMF(code)) {
        prompter.ask(error(invalid));
        return {false, PointField::Code};
    }
    if (refusedForGroupOutput(offCode, prompter))
        return {false, PointField::OffCode};
    if (CheckDTMF(offCode)) {
        prompter.ask(error(invalid));
        return {false, PointField::OffCode};
    }
    record = edited;
    return {true, PointField::None};
}

PointCheck PointEditor::closeTotalDialog(Prompter& prompter)
{
    if (CheckDTMF(code)) {
        prompter.ask(error("Invalid digit found in the Clear Code, use 0-9, *, #, A, B, C and D only."));
        return {false, PointField::Code};
    }
    readCommon(record);
    record.decimalPlaces = static_cast<std::uint8_t>(decimalIndex);
    record.unitSelector = units;
    storeDtmfCode(code, record.onCode);
    return {true, PointField::None};
}

PointCheck PointEditor::closeAnalogDialog(Prompter& prompter, bool exit)
{
    PointRecord edited = record;
    readCommon(edited);
    edited.unitSelector = units;
    if (!exit && edited != opened) {
        WarningDialog warning("Analog");
        switch (warning.Execute(prompter)) {
        case WarningAnswer::GoBack: return {false, PointField::None};
        case WarningAnswer::NoSave: record = opened; return {true, PointField::None};
        case WarningAnswer::YesSave: exit = true; break;
        }
    }
    if (exit)
        record = edited;
    return {true, PointField::None};
}

} // namespace rk4
