#pragma once
// Builds wave files in memory for the voice tests.

#include "core/common/bytes.h"

#include <algorithm>
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
    std::int64_t dataSize = -1;  // -1: the size of the data given
    std::uint16_t subFormat = 0; // with formatTag 0xFFFE: the encoding its sub-format names
    std::uint32_t listSize = 0;  // a LIST chunk of this many bytes (padded to even) before the data
};

inline std::vector<std::uint8_t> makeWave(const WaveLayout& layout, std::span<const std::uint8_t> data)
{
    const bool extensible = layout.formatTag == 0xFFFE;
    const std::uint32_t fmtExtra = extensible ? 24 : layout.fmtExtra;
    const std::uint32_t list = layout.listSize ? 8 + layout.listSize + (layout.listSize & 1) : 0;
    std::vector<std::uint8_t> bytes(12 + 8 + 16 + fmtExtra + (layout.fact ? 12 : 0) + list + 8);
    std::span<std::uint8_t> out(bytes);
    std::memcpy(bytes.data(), "RIFFxxxxWAVEfmt ", 16);
    writeLE32(out, 16, 16 + fmtExtra);
    writeLE16(out, 20, layout.formatTag);
    writeLE16(out, 22, layout.channels);
    writeLE32(out, 24, layout.sampleRate);
    writeLE32(out, 28, layout.sampleRate * layout.channels * layout.bitsPerSample / 8);
    writeLE16(out, 32, static_cast<std::uint16_t>(layout.channels * layout.bitsPerSample / 8));
    writeLE16(out, 34, layout.bitsPerSample);
    if (extensible) {
        writeLE16(out, 36, 22);                   // the size of what follows
        writeLE16(out, 38, layout.bitsPerSample); // valid bits
        writeLE16(out, 44, layout.subFormat);     // the sub-format's first two bytes
    }
    std::size_t at = 36 + fmtExtra;
    if (list) {
        std::memcpy(bytes.data() + at, "LIST", 4);
        writeLE32(out, at + 4, layout.listSize);
        at += list;
    }
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

// The unit's 4-bit ADPCM written out again from its definition, apart from
// the product's codec, so that a fault there cannot cancel out: codes 12-bit
// samples from a fresh state, low nibble first, unpaired last code dropped.
inline std::vector<std::uint8_t> encodePhrase(std::span<const std::int16_t> samples12)
{
    static constexpr int kSteps[49] = {16,  17,  19,  21,  23,  25,   28,   31,   34,   37,  41,  45,  50,
                                       55,  60,  66,  73,  80,  88,   97,   107,  118,  130, 143, 157, 173,
                                       190, 209, 230, 253, 279, 307,  337,  371,  408,  449, 494, 544, 598,
                                       658, 724, 796, 876, 963, 1060, 1166, 1282, 1411, 1552};
    static constexpr int kIndexMoves[8] = {-1, -1, -1, -1, 2, 4, 6, 8};
    int predictor = 0, index = 0;
    auto encode = [&](int sample) {
        const int step = kSteps[index];
        int rest = sample - predictor;
        int code = rest < 0 ? 8 : 0;
        rest = rest < 0 ? -rest : rest;
        if (rest >= step) {
            code |= 4;
            rest -= step;
        }
        if (rest >= step / 2) {
            code |= 2;
            rest -= step / 2;
        }
        if (rest >= step / 4)
            code |= 1;
        const int delta = step / 8 + (code & 1 ? step / 4 : 0) + (code & 2 ? step / 2 : 0) + (code & 4 ? step : 0);
        predictor = std::clamp(predictor + (code & 8 ? -delta : delta), -2047, 2047);
        index = std::clamp(index + kIndexMoves[code & 7], 0, 48);
        return code;
    };
    std::vector<std::uint8_t> bytes;
    for (std::size_t i = 0; i + 1 < samples12.size(); i += 2) {
        const int low = encode(samples12[i]);
        bytes.push_back(static_cast<std::uint8_t>(low | encode(samples12[i + 1]) << 4));
    }
    return bytes;
}

// Eight 8-bit samples at 8000 Hz and their phrase file, worked by hand. Only
// the first seven are coded: 128 129 131 135 136 120 133 are 0 16 48 112 128
// -128 80 in 12 bits and give the codes 0 3 7 7 1 15 1, so the data is 0x30
// 0x77 0xF1 and the unpaired seventh code is dropped.
struct KnownPhrase {
    std::vector<std::uint8_t> wave;
    std::vector<std::uint8_t> vox;
};

inline KnownPhrase knownPhrase()
{
    const std::vector<std::uint8_t> samples = {128, 129, 131, 135, 136, 120, 133, 128};
    KnownPhrase phrase{makeWave({.bitsPerSample = 8}, samples), {0x30, 0x77, 0xF1}};
    phrase.vox.resize(3 + 252, 0x80); // count 8: 256 - 8 / 2 bytes of 0x80
    phrase.vox.resize(4096, 0xFF);    // 15 blocks of 0xFF, then one byte to a whole packet
    return phrase;
}

} // namespace rk4::test
