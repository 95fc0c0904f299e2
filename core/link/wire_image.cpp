#include "core/link/wire_image.h"

#include "core/database/database.h"

#include <array>
#include <utility>

namespace rk4::link {

namespace {

constexpr std::array<std::size_t, 9> kPointWordOffsets{26, 28, 41, 46, 48, 50, 55, 57, 62};
constexpr std::array<std::size_t, 2> kPortWordOffsets{1, 6};

void swapAt(std::span<std::uint8_t> image, std::size_t offset) { std::swap(image[offset], image[offset + 1]); }

} // namespace

void swapWireFields(std::span<std::uint8_t> image)
{
    if (image.size() < dbasesize)
        return;
    for (int point = 0; point < kPointCount; ++point)
        for (std::size_t offset : kPointWordOffsets)
            swapAt(image, kPointOffset + point * PointRecord::size + offset);
    for (int port = 0; port < kPortCount; ++port)
        for (std::size_t offset : kPortWordOffsets)
            swapAt(image, kHardwareOffset + port * HardwarePort::size + offset);
}

} // namespace rk4::link
