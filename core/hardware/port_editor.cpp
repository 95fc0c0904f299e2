#include "core/hardware/port_editor.h"

#include "core/common/text.h"
#include "core/points/points.h"
#include "core/shell/workspace.h"

namespace rk4 {

namespace {

void setBit(std::uint8_t& flags, std::uint8_t bit, bool on)
{
    flags = static_cast<std::uint8_t>(on ? flags | bit : flags & ~bit);
}

} // namespace

Snapshot makeSnapshot(const HardwareRecord& record)
{
    Snapshot snapshot{};
    for (int i = 0; i < kInputCount; ++i) {
        snapshot[i] = record.port[i].typeFlags;
        snapshot[kInputCount + i] = record.port[i].resetMask;
    }
    return snapshot;
}

DialogKind dialogKindOf(int port, const HardwarePort& entry)
{
    if (port >= kInputCount)
        return (entry.typeFlags & 0x01) ? DialogKind::Timed : DialogKind::OnOff;
    if (entry.typeFlags & kInputAnalog)
        return DialogKind::Analog;
    switch (entry.typeFlags & kInputTypeMask) {
    case kInputWatchdog: return DialogKind::Wdog;
    case kInputInterval: return DialogKind::Interval;
    case kInputTotalizer: return DialogKind::Total;
    default: return DialogKind::Digital;
    }
}

const char* dialogName(DialogKind kind)
{
    switch (kind) {
    case DialogKind::Digital: return "DigitalDialog";
    case DialogKind::Wdog: return "WdogDialog";
    case DialogKind::Interval: return "IntervalDialog";
    case DialogKind::Total: return "TotalDialog";
    case DialogKind::Analog: return "AnalogDialog";
    case DialogKind::OnOff: return "OnOffDialog";
    case DialogKind::Timed: break;
    }
    return "TimedDialog";
}

PortEditor::PortEditor(Workspace& space, int port, HardwarePort& entry, Snapshot* snapshot)
    : space(space), portIndex(port), entry(entry), snapshot(snapshot), dialogKind(dialogKindOf(port, entry))
{
    timer.kind = isOutput() ? TimeKind::Timer : TimeKind::Watchdog;
    SetupWindow();
}

std::vector<std::string> PortEditor::inputTypes() { return {"DIGITAL", "WATCHDOG", "INTERVAL", "TOTALIZER", "ANALOG"}; }
std::vector<std::string> PortEditor::outputTypes() { return {"ON/OFF", "TIMED"}; }

std::string PortEditor::title() const
{
    const std::vector<std::string> types = typeChoices();
    return (isOutput() ? "Output " : "Input ") + std::to_string(number()) + " - " + types[currentTypeIndex()];
}

bool PortEditor::hasDebounce() const
{
    return dialogKind == DialogKind::Digital || dialogKind == DialogKind::Wdog || dialogKind == DialogKind::Interval ||
           dialogKind == DialogKind::Total;
}

int PortEditor::currentTypeIndex() const
{
    if (isOutput())
        return entry.typeFlags & 0x01;
    if (entry.typeFlags & kInputAnalog)
        return 4;
    const int type = entry.typeFlags & kInputTypeMask;
    return type <= kInputTotalizer ? type : 0;
}

std::vector<std::string> PortEditor::resetChoices() const
{
    std::vector<std::string> choices{"NONE"};
    if (!snapshot)
        return choices;
    for (int i = 0; i < kInputCount; ++i)
        if (isPlainDigital((*snapshot)[i]))
            choices.push_back("I/P " + std::to_string(i + 1));
    return choices;
}

std::vector<std::string> PortEditor::outputUsage() const
{
    const int output = number();
    std::vector<int> newAlarm, alarm, acknowledge;
    for (int g = 0; g < kUsedGroupCount; ++g) {
        const GroupRecord& group = space.image.group[g];
        if (group.newAlarmOut == output)
            newAlarm.push_back(g + 1);
        if (group.alarmOut == output)
            alarm.push_back(g + 1);
        if (group.ackOut == output)
            acknowledge.push_back(g + 1);
    }
    std::vector<std::string> lines;
    if (!newAlarm.empty())
        lines.push_back("Used for New Alarm out - " + groupsText(newAlarm));
    if (!alarm.empty())
        lines.push_back("Used for Alarm out - " + groupsText(alarm));
    if (!acknowledge.empty())
        lines.push_back("Used for Acknowledge out - " + groupsText(acknowledge));
    return lines;
}

void PortEditor::SetupWindow()
{
    typeIndex = currentTypeIndex();
    debounce.load(entry.debounce, entry.scaleFlags & kDebounceMinutes);
    timer.load(entry.timer, entry.scaleFlags & kTimerMinutes);
    normallyLow = entry.typeFlags & kPolarityBit;
    edge = (entry.typeFlags & kBothChanges)   ? Edge::Both
           : (entry.typeFlags & kPolarityBit) ? Edge::LowToHigh
                                              : Edge::HighToLow;
    intervalMinutes = entry.scaleFlags & kIntervalMinutes;

    resetChoice = 0;
    if (dialogKind == DialogKind::Total && snapshot) {
        const std::uint8_t bit = static_cast<std::uint8_t>(1u << portIndex);
        const std::vector<std::string> choices = resetChoices();
        for (std::size_t c = 1; c < choices.size(); ++c) {
            const int input = choices[c][4] - '1';
            if ((*snapshot)[kInputCount + input] & bit) {
                resetChoice = static_cast<int>(c);
                break;
            }
        }
    }
}

CloseCheck PortEditor::CanClose(Prompter& prompter)
{
    // A watchdog dialog whose type was changed away has nothing left to check.
    if (dialogKind == DialogKind::Wdog && dialogKindOf(portIndex, entry) != DialogKind::Wdog)
        return {true, FieldId::None};

    std::optional<std::uint16_t> debounceCount;
    std::optional<std::uint16_t> timerCount;
    if (hasDebounce()) {
        debounceCount = debounce.validate(prompter);
        if (!debounceCount)
            return {false, FieldId::Debounce};
    }
    const bool checkTimer =
        dialogKind == DialogKind::Wdog || (dialogKind == DialogKind::Timed && (entry.typeFlags & 0x01) == kOutputTimed);
    if (checkTimer) {
        timerCount = timer.validate(prompter);
        if (!timerCount)
            return {false, FieldId::Timer};
    }

    if (debounceCount) {
        entry.debounce = *debounceCount;
        setBit(entry.scaleFlags, kDebounceMinutes, debounce.minutes);
    }
    if (timerCount) {
        entry.timer = *timerCount;
        setBit(entry.scaleFlags, kTimerMinutes, timer.minutes);
    }
    switch (dialogKind) {
    case DialogKind::Interval: setBit(entry.scaleFlags, kIntervalMinutes, intervalMinutes); [[fallthrough]];
    case DialogKind::Digital: setBit(entry.typeFlags, kPolarityBit, normallyLow); break;
    case DialogKind::Total: storeResetInput(); [[fallthrough]];
    case DialogKind::Wdog:
        setBit(entry.typeFlags, kBothChanges, edge == Edge::Both);
        setBit(entry.typeFlags, kPolarityBit, edge == Edge::LowToHigh);
        break;
    default: break;
    }
    return {true, FieldId::None};
}

void PortEditor::storeResetInput()
{
    if (!snapshot)
        return;
    const std::uint8_t bit = static_cast<std::uint8_t>(1u << portIndex);
    for (int i = 0; i < kInputCount; ++i)
        if (isPlainDigital((*snapshot)[i]))
            (*snapshot)[kInputCount + i] &= static_cast<std::uint8_t>(~bit);
    const std::vector<std::string> choices = resetChoices();
    if (resetChoice <= 0 || resetChoice >= static_cast<int>(choices.size()))
        return;
    // The input number is the digit after "I/P ".
    const int input = choices[resetChoice][4] - '1';
    (*snapshot)[kInputCount + input] |= bit;
}

bool PortEditor::ChangeInput(int index, Prompter& prompter)
{
    if (isOutput() || index == currentTypeIndex() || index < 0 || index > 4)
        return false;
    const Answer answer = prompter.ask(Message{
        "Warning", "Changing input type will delete existing settings - Continue?", Icon::Warning, Buttons::YesNo});
    if (answer != Answer::Yes) {
        typeIndex = currentTypeIndex();
        return false;
    }
    if (ClearPoints(space.image, portIndex, false) > 0)
        space.DatabaseChanged = true;
    entry.typeFlags = index == 4 ? kInputAnalog : static_cast<std::uint8_t>(index);
    if (dialogKind == DialogKind::Digital)
        releaseDigitalDuties(prompter);
    resetToNewType();
    typeIndex = index;
    changedType = true;
    return true;
}

bool PortEditor::ChangeOutput(int index, Prompter& prompter)
{
    if (!isOutput() || index == currentTypeIndex() || index < 0 || index > 1)
        return false;
    const Answer answer = prompter.ask(Message{
        "Warning", "Changing output type will delete existing settings - Continue?", Icon::Warning, Buttons::YesNo});
    if (answer != Answer::Yes) {
        typeIndex = currentTypeIndex();
        return false;
    }
    if (ClearPoints(space.image, portIndex, true) > 0)
        space.DatabaseChanged = true;
    entry.typeFlags = (entry.typeFlags & 0x01) == kOutputOnOff ? kOutputTimed : kOutputOnOff;
    resetToNewType();
    typeIndex = index;
    changedType = true;
    return true;
}

// Only a digital input resets totalizers and acknowledges groups; those duties
// go when it becomes another type.
void PortEditor::releaseDigitalDuties(Prompter& prompter)
{
    if (snapshot) {
        const std::uint8_t mask = (*snapshot)[kInputCount + portIndex];
        for (int n = 0; n < kInputCount; ++n)
            if (mask & (1u << n))
                prompter.tell("Warning",
                              "The totalizer using input port " + std::to_string(n + 1) +
                                  " will no longer be reset by this digital input",
                              Icon::Warning);
    }

    std::vector<int> groups;
    for (int g = 0; g < kUsedGroupCount; ++g)
        if (space.image.group[g].ackIn == portIndex + 1)
            groups.push_back(g + 1);
    if (!groups.empty()) {
        const std::string text =
            groupsText(groups) + (groups.size() == 1
                                      ? " is using this input for local Acknowledge - this function will be deleted."
                                      : " are using this input for local Acknowledge - this function will be deleted.");
        for (int g : groups)
            space.image.group[g - 1].ackIn = 0;
        space.DatabaseChanged = true;
        prompter.tell("Warning", text, Icon::Warning);
    }
    if (snapshot)
        (*snapshot)[kInputCount + portIndex] = 0;
}

void PortEditor::resetToNewType()
{
    entry.debounce = 2;
    entry.scaleFlags = kTimerMinutes;
    entry.resetMask = 0;
    entry.timer = 10;
}

} // namespace rk4
