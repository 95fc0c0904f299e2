#include "core/settings/outputs.h"

#include "core/hardware/port_editor.h"
#include "core/points/points.h"

namespace rk4 {

HardwarePort& outputPort(Database& db, int output) { return db.hardware.port.at(kInputCount + output - 1); }

const HardwarePort& outputPort(const Database& db, int output) { return db.hardware.port.at(kInputCount + output - 1); }

void SetOutputTimed(HardwarePort& port, std::uint16_t timer)
{
    port = HardwarePort{};
    port.typeFlags = kOutputTimed;
    port.debounce = 2;
    port.timer = timer;
}

void SetOutputOnOff(HardwarePort& port)
{
    port = HardwarePort{};
    port.typeFlags = kOutputOnOff;
    port.debounce = 2;
}

bool TakeOutputFromPoints(Database& db, int output, const std::string& function, Prompter& prompter)
{
    if (PointsOnOutput(db, output).empty())
        return true;
    const Answer answer = prompter.ask(Message{"Warning",
                                               "Output " + std::to_string(output) +
                                                   " is presently being used as a controlled output in Points.  "
                                                   "Changing it to the " +
                                                   function + " function will remove it from Points - Proceed?",
                                               Icon::Warning, Buttons::YesNo});
    if (answer != Answer::Yes)
        return false;
    ClearOutputPoints(db, output);
    return true;
}

std::optional<GroupOutputUse> FirstGroupUsingOutput(const Database& db, int output)
{
    if (output == 0)
        return std::nullopt;
    for (int g = 0; g < kGroupCount; ++g) {
        const GroupRecord& group = db.group[g];
        if (group.alarmOut == output)
            return GroupOutputUse{g + 1, "Alarm Out"};
        if (group.newAlarmOut == output)
            return GroupOutputUse{g + 1, "New Alarm Out"};
        if (group.ackOut == output)
            return GroupOutputUse{g + 1, "Ack Out"};
    }
    return std::nullopt;
}

} // namespace rk4
