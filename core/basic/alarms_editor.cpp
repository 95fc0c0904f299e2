#include "core/basic/alarms_editor.h"

#include "core/hardware/port_editor.h"
#include "core/shell/workspace.h"

namespace rk4 {

namespace {

std::string trimmedName(const Name& name)
{
    std::string text = nameText(name);
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
}

} // namespace

AlarmsEditor::AlarmsEditor(Workspace& space) : space(space)
{
    const Database& db = space.image;
    for (int i = 0; i < kBasicAlarms; ++i) {
        const PointRecord& point = db.alm[i];
        Alarm& alarm = controls.alarm[i];
        alarm.use = point.inactive ? Use::Disabled : point.groupMask == 2 ? Use::DirB : Use::DirA;
        alarm.name = trimmedName(point.name);
    }
    // In Basic mode every input and alarm shares input 1's and alarm 1's settings.
    const HardwarePort& input = db.hardware.port[0];
    const bool low = input.typeFlags & kPolarityBit;
    const bool latching = db.alm[0].latching != 0;
    controls.format = static_cast<Format>((latching ? 2 : 0) + (low ? 1 : 0));
    controls.debounce.load(input.debounce, input.scaleFlags & kDebounceMinutes);
    opened = controls;
}

bool AlarmsEditor::CanClose(Prompter& prompter)
{
    const auto debounce = controls.debounce.validate(prompter);
    if (!debounce) {
        focus = Field::Debounce;
        return false;
    }

    Database edited = space.image;
    const bool low = controls.format == Format::NormallyLow || controls.format == Format::NormallyLowLatching;
    const bool latching =
        controls.format == Format::NormallyHighLatching || controls.format == Format::NormallyLowLatching;
    for (int i = 0; i < kBasicAlarms; ++i) {
        HardwarePort& input = edited.hardware.port[i];
        input.typeFlags = low ? (input.typeFlags | kPolarityBit) : (input.typeFlags & ~kPolarityBit);
        input.debounce = *debounce;
        input.scaleFlags = controls.debounce.minutes ? (input.scaleFlags | kDebounceMinutes)
                                                     : (input.scaleFlags & ~kDebounceMinutes);
        PointRecord& point = edited.alm[i];
        point.latching = latching ? 1 : 0;

        // An alarm left as it was keeps its bytes.
        const Alarm& alarm = controls.alarm[i];
        if (alarm == opened.alarm[i])
            continue;
        if (alarm.use == Use::Disabled) {
            point.inactive = 1;
        } else {
            point.inactive = 0;
            point.groupMask = alarm.use == Use::DirA ? 1 : 2;
        }
        setName(point.name, alarm.name);
    }
    space.commit(edited);
    focus = Field::None;
    return true;
}

} // namespace rk4
