// A directory record from an image: what the editor shows must be what it
// writes back, so decoding, encoding and decoding again changes nothing.

#include "fuzz/fuzz_target.h"

#include "core/database/database.h"
#include "core/database/directory_codec.h"

#include <algorithm>
#include <array>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::array<std::uint8_t, rk4::DirectoryRecord::size> record{};
    std::copy_n(data, std::min(size, record.size()), record.begin());
    const rk4::DirLines shown = rk4::DecodeDirectory(record);
    std::array<std::uint8_t, rk4::DirectoryRecord::size> written{};
    if (rk4::EncodeDirectory(shown, written))
        FUZZ_REQUIRE(rk4::DecodeDirectory(written) == shown);
    for (const auto& line : shown)
        (void)rk4::dirLineText(line);
    return 0;
}
