#pragma once
// Tests of an image against the Basic-mode shape.

#include "core/database/database.h"

#include <cstdint>

namespace rk4 {

inline constexpr std::uint32_t kDirAdvancedInA = 0x20000;
inline constexpr std::uint32_t kDirAdvancedInBtoF = 0x40000;
inline constexpr std::uint32_t kDirDialInCtoF = 0x10000;

// The directory part of the Basic check alone: a command other than DIAL ('P')
// and VOICE ('V') in Directory A, in Directories B..F, and DIAL or VOICE in C..F.
std::uint32_t CheckForSimpleDir(const Database& db);

// Whether one directory holds a command other than DIAL and VOICE.
bool directoryHasAdvancedCommands(const Database& db, int directory);

} // namespace rk4
