#pragma once
// Phrase bytes for the voice tests: each 4096-byte block filled with its own
// value, counting up from `fill`, so a block out of place shows.

#include "core/voice/message_file.h"

#include <cstdint>
#include <vector>

namespace rk4::test {

inline std::vector<std::uint8_t> blocks(std::size_t bytes, std::uint8_t fill)
{
    std::vector<std::uint8_t> out(bytes);
    for (std::size_t i = 0; i < bytes; ++i)
        out[i] = static_cast<std::uint8_t>(fill + i / kMessageBlock);
    return out;
}

} // namespace rk4::test
