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

// Inline and without branches on the sample's bits: the converter runs these
// once for every sample of a recording, and a mispredicted branch costs more
// than the arithmetic. `mask(c)` is all ones when c holds, else zero.
namespace adpcm_detail {
inline int mask(bool condition) { return -static_cast<int>(condition); }
} // namespace adpcm_detail

inline std::int16_t AdpcmCodec::ADPCMdecode(int code)
{
    using adpcm_detail::mask;
    const int step = kStepTable[static_cast<std::size_t>(stepIndex)];
    // Integer divisions of a positive step truncate like the unit's.
    int delta = step / 8 + ((step / 4) & mask(code & 1)) + ((step / 2) & mask(code & 2)) + (step & mask(code & 4));
    const int negative = mask(code & 8);
    delta = (delta ^ negative) - negative;
    // |predictor| <= 2047 and |delta| <= 2910, so the 16-bit sum cannot wrap.
    const auto sum = static_cast<std::int16_t>(predictor + delta);
    predictor = std::clamp<std::int16_t>(sum, kMinSample12, kMaxSample12);
    stepIndex = static_cast<std::int16_t>(std::clamp(stepIndex + kStepAdjust[code & 7], 0, 48));
    return predictor;
}

inline int AdpcmCodec::ADPCMencode(std::int16_t sample)
{
    using adpcm_detail::mask;
    const int step = kStepTable[static_cast<std::size_t>(stepIndex)];
    const auto diff = static_cast<std::int16_t>(sample - predictor);
    const int negative = mask(diff < 0);
    // The magnitude in 16 bits, as the unit takes it.
    int magnitude = static_cast<std::int16_t>((diff ^ negative) - negative);
    int code = 8 & negative;
    const int whole = mask(magnitude >= step);
    code |= 4 & whole;
    magnitude -= step & whole;
    const int half = mask(magnitude >= step / 2);
    code |= 2 & half;
    magnitude -= (step / 2) & half;
    code |= 1 & mask(magnitude >= step / 4);
    ADPCMdecode(code);
    return code;
}

} // namespace rk4
