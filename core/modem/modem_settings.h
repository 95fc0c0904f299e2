#pragma once
// What the modem link remembers between runs: the number dialled last (its
// three parts), where the tool dials from, the modem's port and its set-up
// string. rk4.cfg is the unit tool's fixed 16-byte record with no room for
// them, so they live in a small text file beside it, "key = value" a line.

#include "core/modem/dial_number.h"

#include <filesystem>
#include <string>

namespace rk4::modem {

inline constexpr char kModemSettingsFile[] = "rk4modem.txt";
// Echo off, word results, DCD follows the carrier, DTR off hangs up, and the
// results that report dial tone, busy and ringing.
inline constexpr char kDefaultInitString[] = "ATE0V1Q0&C1&D2X4";
inline constexpr int kSearchAllPorts = -1;

struct ModemSettings {
    DialledNumber lastNumber;
    DialingLocation location;
    int portSlot = kSearchAllPorts; // 0..7, or every slot in turn
    std::string initString = kDefaultInitString;

    // A missing file or line keeps the default; unknown lines are ignored.
    static ModemSettings load(const std::filesystem::path& file);
    static ModemSettings parse(const std::string& text);
    std::string text() const;
    bool save(const std::filesystem::path& file) const;
};

std::filesystem::path modemSettingsPath(const std::filesystem::path& workingDirectory);

} // namespace rk4::modem
