#pragma once
// Tests of an image against the Basic-mode shape.

#include "core/database/database.h"

#include <array>
#include <cstdint>
#include <vector>

namespace rk4 {

inline constexpr std::uint32_t kDirAdvancedInA = 0x20000;
inline constexpr std::uint32_t kDirAdvancedInBtoF = 0x40000;
inline constexpr std::uint32_t kDirDialInCtoF = 0x10000;

// The directory part of the Basic check alone: a command other than DIAL ('P')
// and VOICE ('V') in Directory A, in Directories B..F, and DIAL or VOICE in C..F.
std::uint32_t CheckForSimpleDir(const Database& db);

// Whether one directory holds a command other than DIAL and VOICE.
bool directoryHasAdvancedCommands(const Database& db, int directory);

// Rule codes of the whole check. Codes 6 and 12..15 are never produced.
enum SimpleRule : int {
    kRuleInputType = 0,
    kRuleInputDebounce = 1,
    kRuleInputPolarity = 2,
    kRuleAlarmType = 3,
    kRuleAlarmGroup = 4,
    kRuleHighPointType = 5,
    kRuleHighPointActive = 7,
    kRuleAlarmLatching = 8,
    kRuleOutputPoint = 9,
    kRuleGroupEnabled = 10,
    kRuleAlarmIsOutput = 11,
    kRuleDirectoryCtoF = 16,
    kRuleDirectoryCommands = 17,
};
inline constexpr int kRuleSlots = 32;

// The mask bit of a rule code (0 for a code the check never produces).
std::uint32_t ruleBit(int code);

struct SimpleCheck {
    std::uint32_t problems = 0; // 0: the image fits Basic mode
    std::vector<int> list;      // the rule codes, in the order found
    // Per rule code, the inputs, points or groups (index 0..29) that broke it.
    std::array<std::array<std::uint8_t, kPointCount>, kRuleSlots> offenders{};
};

// Every rule, in the order the list shows them; never changes the image.
SimpleCheck CheckForSimple(const Database& db);

} // namespace rk4
