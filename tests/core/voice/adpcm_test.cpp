#include "core/voice/adpcm.h"

#include <gtest/gtest.h>

namespace rk4 {
namespace {

TEST(Adpcm, EncodeSetsEachBitAtExactlyItsShareOfTheStep)
{
    struct Case {
        int predictor, index, sample, code, nextPredictor, nextIndex;
    };
    // Step 16 at index 0 (step / 4 = 4, step / 2 = 8) and 17 at index 1; code 0
    // still adds step / 8, and the index never goes below 0.
    const Case cases[] = {
        {0, 0, 0, 0, 2, 0},   {0, 0, 3, 0, 2, 0},   {0, 0, 4, 1, 6, 0},
        {0, 0, 8, 2, 10, 0},  {0, 0, 16, 4, 18, 2}, {0, 0, 28, 7, 30, 8},
        {0, 0, -4, 9, -6, 0}, {0, 1, 12, 3, 14, 0}, {100, 1, 100, 0, 102, 0},
    };
    for (const Case& c : cases) {
        AdpcmCodec codec{static_cast<std::int16_t>(c.predictor), static_cast<std::int16_t>(c.index)};
        EXPECT_EQ(codec.ADPCMencode(static_cast<std::int16_t>(c.sample)), c.code) << c.sample << " at " << c.index;
        EXPECT_EQ(codec.predictor, c.nextPredictor) << c.sample << " at " << c.index;
        EXPECT_EQ(codec.stepIndex, c.nextIndex) << c.sample << " at " << c.index;
    }
}

TEST(Adpcm, DecodeTruncatesEachPartOfTheStepAndMovesTheIndexByTheMagnitudeBits)
{
    struct Case {
        int index, code, delta, nextIndex;
    };
    // Step 17: 17/8 = 2, 17/4 = 4, 17/2 = 8; step 1411 and 1552 at the top of the table.
    const Case cases[] = {{1, 1, 6, 0},    {1, 2, 10, 0},     {1, 4, 19, 3},      {1, 5, 23, 5},
                          {1, 15, -31, 9}, {48, 7, 2910, 48}, {47, 12, -1587, 48}};
    for (const Case& c : cases) {
        const int before = c.delta > 0 ? -900 : 900;
        AdpcmCodec codec{static_cast<std::int16_t>(before), static_cast<std::int16_t>(c.index)};
        codec.ADPCMdecode(c.code);
        EXPECT_EQ(codec.predictor - before, c.delta) << "index " << c.index << " code " << c.code;
        EXPECT_EQ(codec.stepIndex, c.nextIndex) << "index " << c.index << " code " << c.code;
    }
}

TEST(Adpcm, PredictorClampsSymmetricallyAtPlusAndMinus2047)
{
    AdpcmCodec codec{2000, 48};
    EXPECT_EQ(codec.ADPCMdecode(7), 2047);
    codec.predictor = -2000;
    EXPECT_EQ(codec.ADPCMdecode(15), -2047);

    // Driven by full-scale samples the encoder settles on the limits, never past them.
    AdpcmCodec encoder;
    for (int i = 0; i < 200; ++i)
        encoder.ADPCMencode(2047);
    EXPECT_EQ(encoder.predictor, 2047);
    int lowest = 0;
    for (int i = 0; i < 200; ++i)
        lowest = std::min<int>(lowest, (encoder.ADPCMencode(-2048), encoder.predictor));
    EXPECT_EQ(lowest, -2047);
}

} // namespace
} // namespace rk4
