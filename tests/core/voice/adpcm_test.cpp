#include "core/voice/adpcm.h"

#include <gtest/gtest.h>

namespace rk4 {
namespace {

TEST(Adpcm, SampleEqualToPredictorGivesCodeZeroAndLowersTheIndexButNotBelowZero)
{
    AdpcmCodec codec;
    codec.predictor = 100;
    codec.stepIndex = 1;
    // Code 0 still adds step / 8 (17 / 8 = 2): the predictor creeps, the index falls.
    EXPECT_EQ(codec.ADPCMencode(100), 0);
    EXPECT_EQ(codec.predictor, 102);
    EXPECT_EQ(codec.stepIndex, 0);
    codec.predictor = 0;
    EXPECT_EQ(codec.ADPCMencode(0), 0);
    EXPECT_EQ(codec.stepIndex, 0);
}

TEST(Adpcm, DecodeTruncatesEachPartOfTheStepAndMovesTheIndexByTheMagnitudeBits)
{
    struct Case {
        int index, code, delta, nextIndex;
    };
    // Step 17: 17/8 = 2, 17/4 = 4, 17/2 = 8. Step 1552 at the top of the table.
    const Case cases[] = {{1, 0, 2, 0},      {1, 1, 6, 0},       {1, 2, 10, 0},     {1, 3, 14, 0},
                          {1, 4, 19, 3},     {1, 5, 23, 5},      {1, 7, 31, 9},     {1, 9, -6, 0},
                          {1, 15, -31, 9},   {48, 7, 2910, 48},  {48, 6, 2522, 48}, {47, 12, -1587, 48}};
    for (const Case& c : cases) {
        AdpcmCodec codec;
        codec.stepIndex = static_cast<std::int16_t>(c.index);
        const int before = codec.predictor = (c.delta > 0 ? -900 : 900);
        codec.ADPCMdecode(c.code);
        EXPECT_EQ(codec.predictor - before, c.delta) << "index " << c.index << " code " << c.code;
        EXPECT_EQ(codec.stepIndex, c.nextIndex) << "index " << c.index << " code " << c.code;
    }
}

TEST(Adpcm, PredictorClampsSymmetricallyAtPlusAndMinus2047)
{
    AdpcmCodec codec;
    codec.stepIndex = 48;
    codec.predictor = 2000;
    EXPECT_EQ(codec.ADPCMdecode(7), 2047);
    codec.predictor = -2000;
    EXPECT_EQ(codec.ADPCMdecode(15), -2047);

    // Driven by full-scale samples the encoder settles on the limits, never past them.
    AdpcmCodec encoder;
    for (int i = 0; i < 200; ++i)
        encoder.ADPCMencode(2047);
    EXPECT_EQ(encoder.predictor, 2047);
    int lowest = 0;
    for (int i = 0; i < 200; ++i) {
        encoder.ADPCMencode(-2048);
        lowest = std::min<int>(lowest, encoder.predictor);
    }
    EXPECT_EQ(lowest, -2047);
}

TEST(Adpcm, EncoderSetsTheMagnitudeBitsAgainstStepHalfStepAndQuarterStep)
{
    // From predictor 0 at step 16: magnitudes 0..3 -> 0, 4..7 -> 1, 8..11 -> 2, 16 -> 4, 28 -> 7.
    const std::pair<int, int> cases[] = {{3, 0}, {4, 1}, {8, 2}, {12, 3}, {16, 4}, {28, 7}, {-4, 9}, {-28, 15}, {-3, 8}};
    for (const auto& [sample, code] : cases) {
        AdpcmCodec codec;
        EXPECT_EQ(codec.ADPCMencode(static_cast<std::int16_t>(sample)), code) << "sample " << sample;
    }
}

} // namespace
} // namespace rk4
