#include "core/hardware/hardware_editor.h"

#include "core/common/text.h"
#include "core/database/defaults.h"
#include "core/shell/workspace.h"

namespace rk4 {

namespace {

constexpr std::size_t kTypeColumnWidth = 11;
constexpr char kIndent[] = "     ";

// A stored count as the list shows it: seconds text, or whole minutes.
std::string countText(std::uint16_t count, bool minutes)
{
    return minutes ? std::to_string(count) : secondsText(count);
}

std::string lineHead(int number, const std::string& type)
{
    return PadValue(std::to_string(number), 2) + "   " + padRight(type, kTypeColumnWidth);
}

} // namespace

std::string PadValue(const std::string& value, std::size_t width)
{
    if (value.size() >= width)
        return value;
    return std::string(width - value.size(), ' ') + value;
}

HardwareEditor::HardwareEditor(Workspace& space, Mode mode) : space(space), windowMode(mode) {}

void HardwareEditor::SetupWindow(Prompter& prompter)
{
    space.navigation.enterEditor(kPortEditorFlags);
    bool corrupt = false;
    for (const HardwarePort& entry : space.image.hardware.port)
        corrupt = corrupt || (entry.typeFlags & kCorruptBit);
    if (corrupt) {
        prompter.tell("Error", "The hardware portion of the database is corrupt, it will now be cleared", Icon::Error);
        space.image.hardware = HardwareRecord{};
        space.DatabaseChanged = true;
    }
    working = space.image.hardware;
    open = true;
}

std::string HardwareEditor::DrawTitles() const { return outputs() ? "O/P  TYPE" : "I/P  TYPE       DEBOUNCE"; }

std::vector<std::string> HardwareEditor::DrawLine(int line)
{
    const int port = line + (outputs() ? kInputCount : 0);
    return outputs() ? outputLine(port) : inputLine(port);
}

std::vector<std::string> HardwareEditor::inputLine(int port)
{
    HardwarePort& entry = working.port[port];
    if (!(entry.typeFlags & kInputAnalog) && (entry.typeFlags & kInputTypeMask) > kInputTotalizer)
        entry = HardwarePort{};

    const int number = port + 1;
    if (entry.typeFlags & kInputAnalog)
        return {PadValue(std::to_string(number), 2) + "   ANALOG"};

    const std::uint8_t type = entry.typeFlags & kInputTypeMask;
    static const char* const kTypeWords[] = {"DIGITAL", "WATCHDOG", "INTERVAL", "TOTALIZER"};
    std::string text = lineHead(number, kTypeWords[type]);
    const bool debounceMinutes = entry.scaleFlags & kDebounceMinutes;
    text += PadValue(countText(entry.debounce, debounceMinutes), 8) + (debounceMinutes ? " min" : " sec") + "  ";

    const bool both = entry.typeFlags & kBothChanges;
    const bool low = entry.typeFlags & kPolarityBit;
    switch (type) {
    case kInputDigital: {
        text += low ? "Normally Low Input" : "Normally High Input";
        std::vector<int> totalizers;
        for (int n = 0; n < kInputCount; ++n)
            if (entry.resetMask & (1u << n))
                totalizers.push_back(n + 1);
        if (!totalizers.empty())
            text +=
                (totalizers.size() == 1 ? ", Resets totalizer " : ", Resets totalizers ") + joinWithCommas(totalizers);
        break;
    }
    case kInputWatchdog: {
        text += both  ? "Restart: Both changes, "
                : low ? "Restart: Low to High changes, "
                      : "Restart: High to Low changes, ";
        const bool timerMinutes = entry.scaleFlags & kTimerMinutes;
        text += "Watchdog timer: " + countText(entry.timer, timerMinutes) + (timerMinutes ? " min " : " sec ");
        break;
    }
    case kInputInterval:
        text += low ? "Normally Low Input, " : "Normally High Input, ";
        text += "Timer resolution: ";
        text += (entry.scaleFlags & kIntervalMinutes) ? "minutes" : "seconds";
        break;
    default: {
        text += both ? "Count: Both changes" : low ? "Count: Low to High changes" : "Count: High to Low changes";
        const std::uint8_t bit = static_cast<std::uint8_t>(1u << port);
        for (int n = 0; n < kInputCount; ++n)
            if (isPlainDigital(working.port[n].typeFlags) && (working.port[n].resetMask & bit))
                text += ", Reset by I/P " + std::to_string(n + 1);
        break;
    }
    }
    return {text};
}

std::vector<std::string> HardwareEditor::outputLine(int port)
{
    HardwarePort& entry = working.port[port];
    if (entry.typeFlags > kOutputTimed)
        entry = HardwarePort{};
    if (entry.typeFlags == kOutputTimed && entry.timer == 0) {
        entry.timer = 2400; // 60 s
        entry.scaleFlags &= static_cast<std::uint8_t>(~kTimerMinutes);
    }

    const int number = port - kInputCount + 1;
    std::vector<std::string> lines;
    if (entry.typeFlags == kOutputTimed) {
        const bool minutes = entry.scaleFlags & kTimerMinutes;
        lines.push_back(lineHead(number, "TIMED") + "Interval: " + countText(entry.timer, minutes) +
                        (minutes ? " min" : " sec"));
    } else {
        lines.push_back(PadValue(std::to_string(number), 2) + "   ON/OFF");
    }

    std::vector<int> ack, newAlarm, alarm;
    for (int g = 0; g < kUsedGroupCount; ++g) {
        const GroupRecord& group = space.image.group[g];
        if (group.ackOut == number)
            ack.push_back(g + 1);
        if (group.newAlarmOut == number)
            newAlarm.push_back(g + 1);
        if (group.alarmOut == number)
            alarm.push_back(g + 1);
    }
    if (!ack.empty())
        lines.push_back(kIndent + std::string("Ack Output: ") + groupsText(ack));
    if (!newAlarm.empty())
        lines.push_back(kIndent + std::string("New Alarm Output: ") + groupsText(newAlarm));
    if (!alarm.empty())
        lines.push_back(kIndent + std::string("Alarm Output: ") + groupsText(alarm));
    if (space.image.gen.ringOut == number)
        lines.push_back(kIndent + std::string("Ring Output "));
    if (space.image.gen.carrierDetectOut == number)
        lines.push_back(kIndent + std::string("Carrier Detect Output "));
    return lines;
}

void HardwareEditor::EditLine(const DialogRunner& runDialog)
{
    const int port = selectedPort();
    HardwarePort entry = working.port[port];
    Snapshot snapshot = makeSnapshot(working);
    const bool wasTotalizer = !outputs() && dialogKindOf(port, entry) == DialogKind::Total;

    for (;;) {
        if (!outputs())
            snapshot[port] = entry.typeFlags; // a port never offers itself as reset input
        PortEditor dialog(space, port, entry, outputs() ? nullptr : &snapshot);
        runDialog(dialog);
        working.port[port] = entry;
        // The reset input chosen in a totalizer's dialog lives in a digital input's mask.
        if (dialog.kind() == DialogKind::Total)
            for (int i = 0; i < kInputCount; ++i)
                if (i != port) {
                    working.port[i].typeFlags = snapshot[i];
                    working.port[i].resetMask = snapshot[kInputCount + i];
                }
        if (!dialog.typeChanged())
            break;
    }

    if (wasTotalizer && dialogKindOf(port, entry) != DialogKind::Total) {
        const std::uint8_t bit = static_cast<std::uint8_t>(1u << port);
        for (int i = 0; i < kInputCount; ++i)
            working.port[i].resetMask &= static_cast<std::uint8_t>(~bit);
    }
}

void HardwareEditor::writeBack()
{
    Database edited = space.image;
    edited.hardware = working;
    space.commit(edited);
}

bool HardwareEditor::changed() const { return working != space.image.hardware; }

void HardwareEditor::leave() { space.navigation.leaveEditor(kPortEditorFlags); }

} // namespace rk4
