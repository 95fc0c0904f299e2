#pragma once
// The database as it travels: the same record order as the image, but the
// 16-bit fields of every point record and hardware entry high byte first.

#include <cstdint>
#include <span>

namespace rk4::link {

// Swaps those fields in place. Swapping is its own inverse, so the same call
// packs a 4704-byte image for the wire and unpacks one read from it. Fewer
// bytes than a whole image are left alone.
void swapWireFields(std::span<std::uint8_t> image);

} // namespace rk4::link
