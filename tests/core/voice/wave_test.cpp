#include "core/voice/wave.h"

#include "tests/core/voice/wave_builder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace rk4 {
namespace {

using test::encodePhrase;
using test::makeWave;
using test::samples16;
using test::WaveLayout;

std::vector<std::uint8_t> firstBytes(const std::vector<std::uint8_t>& vox, std::size_t count)
{
    return {vox.begin(), vox.begin() + static_cast<std::ptrdiff_t>(std::min(count, vox.size()))};
}

bool allEqual(const std::vector<std::uint8_t>& bytes, std::size_t begin, std::size_t end, std::uint8_t value)
{
    return std::all_of(bytes.begin() + static_cast<std::ptrdiff_t>(begin),
                       bytes.begin() + static_cast<std::ptrdiff_t>(end),
                       [value](std::uint8_t byte) { return byte == value; });
}

TEST(WaveConversion, AShortPhraseGivesTheCodesWorkedByHand)
{
    const test::KnownPhrase phrase = test::knownPhrase();
    EXPECT_EQ(convertWave(phrase.wave).vox, phrase.vox);
}

TEST(WaveConversion, ThousandEightBitSamplesAt8000HzFillExactlyOneBlock)
{
    std::vector<std::uint8_t> data(1000);
    for (std::size_t i = 0; i < data.size(); ++i)
        data[i] = static_cast<std::uint8_t>(128 + 100 * std::sin(i * 0.3));
    const VoxConversion result = convertWave(makeWave({.bitsPerSample = 8}, data));

    EXPECT_EQ(result.outputCount, 1000);
    ASSERT_EQ(result.vox.size(), 4096u);
    std::vector<std::int16_t> samples12;
    for (std::size_t i = 0; i < 999; ++i)
        samples12.push_back(static_cast<std::int16_t>((data[i] - 128) * 16));
    EXPECT_EQ(firstBytes(result.vox, 499), encodePhrase(samples12)); // the 999th code is never written
    EXPECT_TRUE(allEqual(result.vox, 499, 511, 0x80));
    EXPECT_TRUE(allEqual(result.vox, 511, 4096, 0xFF));
    EXPECT_NE(result.vox[498], 0x80); // the phrase's own last byte is not padding here
}

TEST(WaveConversion, PaddingRunsAreFullWhenTheirBoundariesAreAlreadyReached)
{
    // 7680 codes: 3840 bytes is a whole number of 256-byte blocks (full 0x80 run)
    // and those 15 blocks plus one more are a whole 16 (full 4096-byte 0xFF run).
    const std::vector<std::uint8_t> data(7680, 128);
    const VoxConversion result = convertWave(makeWave({.bitsPerSample = 8}, data));
    ASSERT_EQ(result.vox.size(), 8192u);
    EXPECT_TRUE(allEqual(result.vox, 3839, 4095, 0x80));
    EXPECT_NE(result.vox[3838], 0xFF);
    EXPECT_TRUE(allEqual(result.vox, 4095, 8192, 0xFF));

    // An empty data chunk still makes a phrase: one 0x80 block and the fill.
    const VoxConversion empty = convertWave(makeWave({}, {}));
    EXPECT_EQ(empty.outputCount, 0);
    ASSERT_EQ(empty.vox.size(), 4096u);
    EXPECT_TRUE(allEqual(empty.vox, 0, 256, 0x80));
    EXPECT_TRUE(allEqual(empty.vox, 256, 4096, 0xFF));
}

TEST(WaveConversion, ExactRatesTakeEveryNthSampleAndRestartEachBlockAtItsStart)
{
    // 16 kHz: every second sample; negative values that are not multiples of
    // 16 tell a truncating division from a shift.
    std::vector<std::int16_t> input(5000);
    for (std::size_t i = 0; i < input.size(); ++i)
        input[i] = static_cast<std::int16_t>(9000 * std::sin(i * 0.01) - 17);
    const VoxConversion sixteen = convertWave(makeWave({.sampleRate = 16000}, samples16(input)));
    EXPECT_EQ(sixteen.outputCount, 2500);
    std::vector<std::int16_t> expected;
    for (std::size_t i = 0; i < 2499; ++i)
        expected.push_back(static_cast<std::int16_t>(input[2 * i] / 16));
    EXPECT_EQ(firstBytes(sixteen.vox, 1249), encodePhrase(expected));

    // 48 kHz: six into 1024 overshoots by two, which is dropped: after input
    // 1020 comes input 1024, not 1026.
    std::vector<std::uint8_t> data(6 * 1024);
    for (std::size_t i = 0; i < data.size(); ++i)
        data[i] = static_cast<std::uint8_t>(i * 37 % 251);
    const VoxConversion fortyEight = convertWave(makeWave({.sampleRate = 48000, .bitsPerSample = 8}, data));
    ASSERT_EQ(fortyEight.outputCount, 1024);
    expected.clear();
    for (std::size_t block = 0; expected.size() < 1023; ++block)
        for (std::size_t at = 0; at < 1024 && expected.size() < 1023; at += 6)
            expected.push_back(static_cast<std::int16_t>((data[block * 1024 + at] - 128) * 16));
    EXPECT_EQ(firstBytes(fortyEight.vox, 511), encodePhrase(expected));
}

TEST(WaveConversion, TwentyTwoKilohertzInterpolatesAcrossBlockBoundaries)
{
    std::vector<std::int16_t> input(22050);
    for (std::size_t i = 0; i < input.size(); ++i)
        input[i] = static_cast<std::int16_t>(12000 * std::sin(i * 0.05) + 3000 * std::sin(i * 0.0071));
    const VoxConversion result = convertWave(makeWave({.sampleRate = 22050}, samples16(input)));

    const double ratio = 22050 * 0.000125;
    ASSERT_EQ(result.outputCount, static_cast<int>(44100 / ratio / 2));
    std::vector<std::int16_t> expected;
    for (int i = 0; i < result.outputCount - 1; ++i) {
        const double position = i * ratio;
        const auto whole = static_cast<std::size_t>(position);
        const double fraction = position - static_cast<double>(whole);
        int sample = input[whole];
        const double step = (input[whole + 1] - sample) * fraction;
        if (fraction > 0.05 && std::abs(step) > 0.5)
            sample = static_cast<int>(sample + step);
        expected.push_back(static_cast<std::int16_t>(sample / 16));
    }
    EXPECT_EQ(firstBytes(result.vox, expected.size() / 2), encodePhrase(expected));
}

TEST(WaveConversion, FactChunkAndLongerFmtChunkConvertTheSameAsThePlainLayout)
{
    std::vector<std::uint8_t> data(3000);
    for (std::size_t i = 0; i < data.size(); ++i)
        data[i] = static_cast<std::uint8_t>(128 + 90 * std::sin(i * 0.2));
    const auto plain = convertWave(makeWave({.sampleRate = 11025, .bitsPerSample = 8}, data));
    const auto withFact = convertWave(makeWave({.sampleRate = 11025, .bitsPerSample = 8, .fact = true}, data));
    const auto longFmt =
        convertWave(makeWave({.sampleRate = 11025, .bitsPerSample = 8, .fmtExtra = 2, .fact = true}, data));
    EXPECT_TRUE(withFact.format.hasFact);
    EXPECT_EQ(withFact.vox, plain.vox);
    EXPECT_EQ(longFmt.vox, plain.vox);
    EXPECT_EQ(plain.outputCount, static_cast<int>(3000 / (11025 * 0.000125)));
}

TEST(WaveConversion, ShortDataChunkRepeatsWhatTheBlockBufferLastHeld)
{
    // The header promises 1500 samples, the file holds 1000: the rest of the
    // first block is silence, the second block its stale first part.
    std::vector<std::uint8_t> data(1000);
    for (std::size_t i = 0; i < data.size(); ++i)
        data[i] = static_cast<std::uint8_t>(40 + i % 170);
    const auto result = convertWave(makeWave({.bitsPerSample = 8, .dataSize = 1500}, data));
    ASSERT_EQ(result.outputCount, 1500);
    std::vector<std::int16_t> expected;
    for (std::size_t i = 0; i < 1499; ++i) {
        const std::size_t slot = i % 1024;
        expected.push_back(static_cast<std::int16_t>(slot < 1000 ? (data[slot] - 128) * 16 : 0));
    }
    EXPECT_EQ(firstBytes(result.vox, 749), encodePhrase(expected));

    // A data size far beyond the file stops one block after its end.
    const auto huge = convertWave(makeWave({.bitsPerSample = 8, .dataSize = 0xFFFFFFFF}, data));
    EXPECT_EQ(huge.outputCount, 2049);
    EXPECT_EQ(huge.vox.size(), 4096u);
}

TEST(Waveform, ColumnsMarkClippingAtTheFormatsOwnFullScale)
{
    std::vector<std::uint8_t> data(800, 128);
    data[700] = 255; // full scale for 8-bit, though short of 16-bit full scale
    const auto columns = sourceWaveform(makeWave({.bitsPerSample = 8}, data)).columns(8);
    ASSERT_EQ(columns.size(), 8u);
    EXPECT_FALSE(columns[6].clipped);
    EXPECT_TRUE(columns[7].clipped);
    EXPECT_EQ(columns[7].high, 127 * 256);
}

} // namespace
} // namespace rk4
