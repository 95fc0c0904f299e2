#pragma once
// The unit's 4-bit ADPCM: 12-bit samples at 8000 per second, the 49-step
// table of the common 4-bit telephony ADPCM, and a symmetric clamp.

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

} // namespace rk4
