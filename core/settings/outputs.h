#pragma once
// What the general settings and group editors share about the eight outputs:
// their hardware entries, the fixed settings a special function gives an
// output, taking an output away from the points that drive it, and which
// group uses an output for which of its three status functions.

#include "core/common/prompter.h"
#include "core/database/database.h"

#include <cstdint>
#include <optional>
#include <string>

namespace rk4 {

inline constexpr int kOutputCount = 8;

// The hardware entry of output `output` 1..8.
HardwarePort& outputPort(Database& db, int output);
const HardwarePort& outputPort(const Database& db, int output);

// A special function fixes its output's settings: timed with `timer` (25 ms
// steps) or on/off, debounce 2 steps, every other byte 0.
void SetOutputTimed(HardwarePort& port, std::uint16_t timer);
void SetOutputOnOff(HardwarePort& port);

// When points drive output `output`, asks whether giving it to `function`
// ("Ring Out", "Alarm Out", ...) may take it from them; Yes empties those
// points. False when the user answered No; true, without a question, when no
// point uses the output.
bool TakeOutputFromPoints(Database& db, int output, const std::string& function, Prompter& prompter);

// A group's use of an output, as the conflict messages name it.
struct GroupOutputUse {
    int group = 0;        // 1..8
    std::string function; // "Alarm Out", "New Alarm Out" or "Ack Out"
};

// The first use of `output` by any of the eight group records, the groups in
// order and, within a group, Alarm Out, New Alarm Out, then Ack Out.
std::optional<GroupOutputUse> FirstGroupUsingOutput(const Database& db, int output);

} // namespace rk4
