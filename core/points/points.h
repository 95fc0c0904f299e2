#pragma once
// Point rules shared by the hardware, points, group and general editors: which
// points sit on a port, emptying them, the type a port gives its points, and
// the special use (byte 69) and its groups (byte 70) of a point's port.

#include "core/database/database.h"

#include <cstdint>
#include <vector>

namespace rk4 {

// Empties every point attached to a port whose hardware type changes. For an
// input `port` is 0..7; for an output it is the hardware entry index 8..15.
// Emptying is all 80 bytes zero, then `inactive` 1. Returns how many points
// were emptied.
int ClearPoints(Database& db, int port, bool isOutput);

// The same, by the number the user sees: input 1..8, output 1..8.
int ClearInputPoints(Database& db, int input);
int ClearOutputPoints(Database& db, int output);

// 1 when exactly one bit of `mask` is set, else 0.
int ConvertMask(std::uint8_t mask);

// Slots (0..29) of the points attached to input or output `number` 1..8.
std::vector<int> PointsOnInput(const Database& db, int input);
std::vector<int> PointsOnOutput(const Database& db, int output);

// The point type a port gives the points attached to it.
std::uint8_t InputPointType(const HardwarePort& entry);  // 0x13, 0x01, 0x02, 0x21 or 0x20
std::uint8_t OutputPointType(const HardwarePort& entry); // 0x60 ON/OFF or 0x61 TIMED

// Special use of a point's port (`outFunction`, byte 69).
inline constexpr std::uint8_t kUseNone = 0;
inline constexpr std::uint8_t kUseAlarmOut = 1;
inline constexpr std::uint8_t kUseNewAlarm = 2;
inline constexpr std::uint8_t kUseAckOut = 3;
inline constexpr std::uint8_t kUseAckIn = 4;
inline constexpr std::uint8_t kUseRingOut = 5;

// Bit g-1 set for each group g of the six in use whose local acknowledge input is `input` 1..8.
std::uint8_t AckInputGroups(const Database& db, int input);
// The same for the groups that use `output` 1..8 for `use` (alarm, new alarm or acknowledge out).
std::uint8_t OutputUseGroups(const Database& db, int output, std::uint8_t use);

// Works out the special use of the port of `point` from the groups and the
// general record, and writes bytes 69 and 70; an acknowledge input also
// leaves its group mask (byte 25) at 0, since it reports to no group itself.
// Returns the special use.
std::uint8_t WorkOutSpecialUse(const Database& db, PointRecord& point);

// Adds group `group` (1..8) to, or removes it from, the special use of every
// point on a port (`number` 1..8): byte 70 gets or loses the group's bit
// (MakeMask / MakeNotMask) and byte 69 takes `use`, or 0 once no group is left.
void SetPointsGroupUse(Database& db, bool isOutput, int number, std::uint8_t use, int group, bool on);

} // namespace rk4
