#include "core/points/points_editor.h"

#include "core/common/text.h"
#include "core/database/defaults.h"
#include "core/database/dtmf.h"
#include "core/hardware/hardware_editor.h"
#include "core/hardware/port_editor.h"
#include "core/points/points.h"
#include "core/shell/workspace.h"

namespace rk4 {

namespace {

constexpr std::size_t kNameWidth = 16;
constexpr std::size_t kTypeWidth = 10;
constexpr std::size_t kPortWidth = 6;

const char* typeWord(std::uint8_t type)
{
    switch (type) {
    case kPointUnused: return "UNUSED";
    case kPointDigital: return "DIGITAL";
    case kPointWatchdog: return "WATCHDOG";
    case kPointInterval: return "INTERVAL";
    case kPointTotalizer: return "TOTALIZER";
    case kPointAnalog: return "ANALOG";
    case kPointOnOffOutput: return "ON/OFF OUT";
    case kPointTimerOutput: return "TIMED OUT";
    default: return "UNKNOWN";
    }
}

std::vector<int> groupNumbers(std::uint8_t mask)
{
    std::vector<int> groups;
    for (int g = 0; g < kUsedGroupCount; ++g)
        if (mask & MakeMask(g))
            groups.push_back(g + 1);
    return groups;
}

std::string groupPart(std::uint8_t mask)
{
    const std::vector<int> groups = groupNumbers(mask);
    return groups.empty() ? "No group" : groupsText(groups);
}

// A scaled decimal as the user wrote it: 1000 with 1 place is "100.0".
std::string scaledText(std::uint16_t stored, std::uint8_t places)
{
    const int value = static_cast<std::int16_t>(stored);
    const int digits = places & 0x0F;
    std::string text = std::to_string(value < 0 ? -value : value);
    if (digits > 0) {
        if (text.size() <= static_cast<std::size_t>(digits))
            text.insert(0, digits + 1 - text.size(), '0');
        text.insert(text.size() - digits, 1, '.');
    }
    return (value < 0 ? "-" : "") + text;
}

} // namespace

PointsEditor::PointsEditor(Workspace& space) : space(space) {}

void PointsEditor::SetupWindow()
{
    space.navigation.enterEditor(kPortEditorFlags);
    for (PointRecord& point : space.image.alm) {
        point.outFunction = 0;
        point.outGroupMask = 0;
    }
    working = space.image.alm;
    for (int n = 0; n < kInputCount; ++n) {
        const HardwarePort& entry = space.image.hardware.port[n];
        resetsTotalizer[n] = isPlainDigital(entry.typeFlags) && entry.resetMask != 0;
    }
    open = true;
}

std::string PointsEditor::DrawTitles() const
{
    return padRight("No  NAME", 4 + kNameWidth + 2) + padRight("TYPE", kTypeWidth + 1) + padRight("PORT", kPortWidth + 1) +
           "SETTINGS";
}

std::string PointsEditor::DrawLine(int line)
{
    PointRecord& point = working[line];
    WorkOutSpecialUse(space.image, point);
    std::string text = PadValue(std::to_string(line + 1), 2) + "  ";
    if (point.type == kPointUnused)
        return text + std::string(kNameWidth + 2, ' ') + typeWord(kPointUnused);
    std::string port = point.isOutput ? "O/P " : "I/P ";
    port += std::to_string(point.port + 1);
    std::string name = nameText(point.name);
    name.resize(kNameWidth, ' ');
    return text + name + "  " + padRight(typeWord(point.type), kTypeWidth) + " " + padRight(port, kPortWidth) + " " +
           details(point);
}

std::string PointsEditor::details(const PointRecord& point) const
{
    const bool onInput = !point.isOutput && point.port < kInputCount;
    const HardwarePort* entry = onInput ? &space.image.hardware.port[point.port] : nullptr;
    std::string text;
    if (point.type == kPointDigital && point.outFunction == kUseAckIn) {
        text = (entry && (entry->typeFlags & kPolarityBit)) ? "Normal: Low" : "Normal: High";
        text += ", Ack: ";
        const std::vector<int> groups = groupNumbers(point.outGroupMask);
        text += groups.size() == static_cast<std::size_t>(kUsedGroupCount) ? "All Groups " : groupsText(groups);
        if (onInput && resetsTotalizer[point.port])
            text += ", Hardware totalizer reset";
        return text;
    }

    const std::string tag = dtmfCodeText(point.onCode);
    if (point.inactive)
        text = "Disabled, ";
    switch (point.type) {
    case kPointDigital:
        text += (entry && (entry->typeFlags & kPolarityBit)) ? "Normal: Low, " : "Normal: High, ";
        text += groupPart(point.groupMask);
        if (point.latching)
            text += ", Latching";
        if (!tag.empty())
            text += ", Tag: " + tag;
        if (onInput && resetsTotalizer[point.port])
            text += ", Hardware totalizer reset";
        break;
    case kPointWatchdog:
    case kPointInterval:
        text += groupPart(point.groupMask);
        if (!tag.empty())
            text += ", Tag: " + tag;
        break;
    case kPointTotalizer:
        text += groupPart(point.groupMask);
        text += std::string(", Format: ") + kDecimalChoices[point.decimalPlaces < 5 ? point.decimalPlaces : 0];
        if (!tag.empty())
            text += ", Clear Code: " + tag;
        break;
    case kPointAnalog:
        text += groupPart(point.groupMask) + ", Range: " + scaledText(point.decimalMinimum, point.decimalPlaces) +
                " to " + scaledText(point.decimalMaximum, point.decimalPlaces);
        break;
    default: {
        const std::string off = dtmfCodeText(point.offCode);
        text += "ON: " + (tag.empty() ? std::string("none") : tag);
        text += ", OFF: " + (off.empty() ? std::string("none") : off);
        break;
    }
    }
    return text;
}

void PointsEditor::EditLine(const DialogRunner& runDialog)
{
    const int slot = selected;
    PointRecord record = working[slot];
    // A type code the unit does not know is emptied and edited as a digital point.
    bool unknown = pointDialogKindOf(record.type) == PointDialogKind::Digital && record.type != kPointDigital;
    if (unknown)
        working[slot].type = record.type = kPointUnused;

    for (;;) {
        WorkOutSpecialUse(space.image, record);
        PointDialogKind kind = pointDialogKindOf(record.type);
        if (unknown)
            kind = PointDialogKind::Digital;
        else if (record.type == kPointDigital && record.outFunction == kUseAckIn)
            kind = PointDialogKind::Special;
        unknown = false;

        const std::uint8_t typeBefore = record.type;
        PointEditor dialog(space, working, slot, record, kind);
        runDialog(dialog);
        const bool moved = dialog.portChanged() || (kind == PointDialogKind::New && record.type != typeBefore);
        if (record.type != typeBefore)
            ApplyTypeDefaults(record);
        working[slot] = record;
        if (!moved || record.type == kPointUnused)
            break;
    }
    WorkOutSpecialUse(space.image, working[slot]);
}

void PointsEditor::writeBack()
{
    Database edited = space.image;
    edited.alm = working;
    space.commit(edited);
}

bool PointsEditor::changed() const
{
    for (int p = 0; p < kPointCount; ++p) {
        working[p].outFunction = space.image.alm[p].outFunction;
        working[p].outGroupMask = space.image.alm[p].outGroupMask;
    }
    return working != space.image.alm;
}

void PointsEditor::leave() { space.navigation.leaveEditor(kPortEditorFlags); }

} // namespace rk4
