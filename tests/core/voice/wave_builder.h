#pragma once
// Builds wave files in memory for the voice tests.

#include "core/common/bytes.h"
#include "core/voice/adpcm.h"

#include <cstdint>
#include <cstring>
#include <span>
#include <vector>

namespace rk4::test {

struct WaveLayout {
    std::uint32_t sampleRate = 8000;
    std::uint16_t bitsPerSample = 16;
    std::uint16_t channels = 1;
    std::uint16_t formatTag = 1;
    std::uint32_t fmtExtra = 0; // bytes after the 16 fmt fields
    bool fact = false;
    std::int64_t dataSize = -1; // -1: the size of the data given
};

inline std::vector<std::uint8_t> makeWave(const WaveLayout& layout, std::span<const std::uint8_t> data)
{
    std::vector<std::uint8_t> bytes(12 + 8 + 16 + layout.fmtExtra + (layout.fact ? 12 : 0) + 8);
    std::span<std::uint8_t> out(bytes);
    std::memcpy(bytes.data(), "RIFFxxxxWAVEfmt ", 16);
    writeLE32(out, 16, 16 + layout.fmtExtra);
    writeLE16(out, 20, layout.formatTag);
    writeLE16(out, 22, layout.channels);
    writeLE32(out, 24, layout.sampleRate);
    writeLE32(out, 28, layout.sampleRate * layout.channels * layout.bitsPerSample / 8);
    writeLE16(out, 32, static_cast<std::uint16_t>(layout.channels * layout.bitsPerSample / 8));
    writeLE16(out, 34, layout.bitsPerSample);
    std::size_t at = 36 + layout.fmtExtra;
    if (layout.fact) {
        std::memcpy(bytes.data() + at, "fact", 4);
        writeLE32(out, at + 4, 4);
        writeLE32(out, at + 8, 12345);
        at += 12;
    }
    std::memcpy(bytes.data() + at, "data", 4);
    writeLE32(out, at + 4, static_cast<std::uint32_t>(layout.dataSize < 0 ? data.size() : layout.dataSize));
    bytes.insert(bytes.end(), data.begin(), data.end());
    writeLE32(std::span<std::uint8_t>(bytes), 4, static_cast<std::uint32_t>(bytes.size() - 8));
    return bytes;
}

inline std::vector<std::uint8_t> samples16(std::span<const std::int16_t> samples)
{
    std::vector<std::uint8_t> data(samples.size() * 2);
    for (std::size_t i = 0; i < samples.size(); ++i)
        writeLE16(std::span<std::uint8_t>(data), 2 * i, static_cast<std::uint16_t>(samples[i]));
    return data;
}

// Encodes 12-bit samples with a fresh codec, low nibble first, unpaired last code dropped.
inline std::vector<std::uint8_t> encodePhrase(std::span<const std::int16_t> samples12)
{
    AdpcmCodec codec;
    std::vector<std::uint8_t> bytes;
    for (std::size_t i = 0; i + 1 < samples12.size(); i += 2) {
        const int low = codec.ADPCMencode(samples12[i]);
        const int high = codec.ADPCMencode(samples12[i + 1]);
        bytes.push_back(static_cast<std::uint8_t>(low | (high << 4)));
    }
    return bytes;
}

} // namespace rk4::test
