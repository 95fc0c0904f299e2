#include "core/voice/adpcm.h"

#include <algorithm>

namespace rk4 {

int step_adjust(int code)
{
    static constexpr int kAdjust[8] = {-1, -1, -1, -1, 2, 4, 6, 8};
    return kAdjust[code & 7];
}

std::int16_t AdpcmCodec::ADPCMdecode(int code)
{
    const int step = kStepTable[static_cast<std::size_t>(stepIndex)];
    // Integer divisions of a positive step truncate like the unit's.
    int delta = step / 8;
    if (code & 1)
        delta += step / 4;
    if (code & 2)
        delta += step / 2;
    if (code & 4)
        delta += step;
    if (code & 8)
        delta = -delta;
    // |predictor| <= 2047 and |delta| <= 2910, so the 16-bit sum cannot wrap.
    const auto sum = static_cast<std::int16_t>(predictor + delta);
    predictor = std::clamp<std::int16_t>(sum, kMinSample12, kMaxSample12);
    stepIndex = static_cast<std::int16_t>(std::clamp(stepIndex + step_adjust(code), 0, 48));
    return predictor;
}

int AdpcmCodec::ADPCMencode(std::int16_t sample)
{
    const int step = kStepTable[static_cast<std::size_t>(stepIndex)];
    auto diff = static_cast<std::int16_t>(sample - predictor);
    int code = 0;
    if (diff < 0) {
        code = 8;
        diff = static_cast<std::int16_t>(-diff);
    }
    if (diff >= step) {
        code |= 4;
        diff = static_cast<std::int16_t>(diff - step);
    }
    if (diff >= step / 2) {
        code |= 2;
        diff = static_cast<std::int16_t>(diff - step / 2);
    }
    if (diff >= step / 4)
        code |= 1;
    ADPCMdecode(code);
    return code;
}

} // namespace rk4
