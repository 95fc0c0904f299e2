#pragma once
// Point rules shared by the hardware and the points editors.

#include "core/database/database.h"

#include <cstdint>

namespace rk4 {

// Empties every point attached to a port whose hardware type changes. For an
// input `port` is 0..7; for an output it is the hardware entry index 8..15.
// Emptying is all 80 bytes zero, then `inactive` 1. Returns how many points
// were emptied.
int ClearPoints(Database& db, int port, bool isOutput);

// 1 when exactly one bit of `mask` is set, else 0.
int ConvertMask(std::uint8_t mask);

} // namespace rk4
