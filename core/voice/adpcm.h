#pragma once
// The unit's 4-bit ADPCM: 12-bit samples at 8000 per second, the 49-step
// table of the common 4-bit telephony ADPCM, and a symmetric clamp.

#include <algorithm>
#include <array>
#include <cstdint>

namespace rk4 {

inline constexpr std::array<std::int16_t, 49> kStepTable = {
    16,  17,  19,  21,  23,  25,  28,  31,  34,  37,  41,   45,   50,   55,   60,  66,  73,
    80,  88,  97,  107, 118, 130, 143, 157, 173, 190, 209,  230,  253,  279,  307, 337, 371,
    408, 449, 494, 544, 598, 658, 724, 796, 876, 963, 1060, 1166, 1282, 1411, 1552};

inline constexpr std::int16_t kMaxSample12 = 2047;
// The lower limit is -2047, not -2048: the unit's reconstruction is symmetric.
inline constexpr std::int16_t kMinSample12 = -2047;

// The index change for a code, chosen by its three magnitude bits.
inline constexpr int kStepAdjust[8] = {-1, -1, -1, -1, 2, 4, 6, 8};
int step_adjust(int code);

// Predictor and step index, both zero at the start of every phrase. The
// encoder runs the decoder on its own codes so that both track the same state.
struct AdpcmCodec {
    std::int16_t predictor = 0;
    std::int16_t stepIndex = 0;

    // Takes a 4-bit code, returns the reconstructed 12-bit sample.
    std::int16_t ADPCMdecode(int code);
    // Takes a 12-bit signed sample, returns its 4-bit code.
    int ADPCMencode(std::int16_t sample);
};

// What a code adds to the predictor at a step: step / 8, and for each
// magnitude bit its share of the step, each division truncating like the unit's.
constexpr int decodedDelta(int step, int code)
{
    const int delta = step / 8 + (code & 1 ? step / 4 : 0) + (code & 2 ? step / 2 : 0) + (code & 4 ? step : 0);
    return code & 8 ? -delta : delta;
}

// Everything the codec needs at one step index, worked out once, so that a
// sample costs a few comparisons and two loads on one cache line. The
// encoder's three bits are chosen greedily (whole step, then half, then
// quarter), and as each share is at least the sum of the smaller ones the
// greedy code is simply how many of the seven code thresholds the magnitude
// reaches.
struct AdpcmStepRow {
    std::int16_t threshold[8]; // the smallest magnitude that gets each code 0..7
    std::int16_t delta[16];    // decodedDelta for every code
    std::uint8_t next[16];     // the step index after every code
};

namespace adpcm_detail {
constexpr std::array<AdpcmStepRow, 49> makeStepRows()
{
    std::array<AdpcmStepRow, 49> rows{};
    for (int index = 0; index < 49; ++index) {
        const int step = kStepTable[static_cast<std::size_t>(index)];
        AdpcmStepRow& row = rows[static_cast<std::size_t>(index)];
        for (int code = 0; code < 16; ++code) {
            row.delta[code] = static_cast<std::int16_t>(decodedDelta(step, code));
            row.next[code] = static_cast<std::uint8_t>(std::clamp(index + kStepAdjust[code & 7], 0, 48));
        }
        for (int code = 0; code < 8; ++code)
            row.threshold[code] = static_cast<std::int16_t>(decodedDelta(step, code) - step / 8);
    }
    return rows;
}
} // namespace adpcm_detail

alignas(64) inline constexpr std::array<AdpcmStepRow, 49> kStepRows = adpcm_detail::makeStepRows();

inline std::int16_t AdpcmCodec::ADPCMdecode(int code)
{
    const AdpcmStepRow& row = kStepRows[static_cast<std::size_t>(stepIndex)];
    // |predictor| <= 2047 and |delta| <= 2910, so the 16-bit sum cannot wrap.
    const auto sum = static_cast<std::int16_t>(predictor + row.delta[code & 15]);
    predictor = std::clamp<std::int16_t>(sum, kMinSample12, kMaxSample12);
    stepIndex = row.next[code & 15];
    return predictor;
}

// Inline: the converter runs this once for every sample of a recording, and
// each code waits on the one before it. No branch depends on the sample,
// since a mispredicted one costs more than the arithmetic.
inline int AdpcmCodec::ADPCMencode(std::int16_t sample)
{
    const AdpcmStepRow& row = kStepRows[static_cast<std::size_t>(stepIndex)];
    const auto diff = static_cast<std::int16_t>(sample - predictor);
    // The magnitude in 16 bits, as the unit takes it.
    const int magnitude = static_cast<std::int16_t>(diff < 0 ? -diff : diff);
    int code = (magnitude >= row.threshold[1]) + (magnitude >= row.threshold[2]) + (magnitude >= row.threshold[3]) +
               (magnitude >= row.threshold[4]) + (magnitude >= row.threshold[5]) + (magnitude >= row.threshold[6]) +
               (magnitude >= row.threshold[7]);
    code |= diff < 0 ? 8 : 0;
    ADPCMdecode(code);
    return code;
}

} // namespace rk4
