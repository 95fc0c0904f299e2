// Wave files come from anywhere: random headers, truncations and garbage must
// never read or write out of bounds (run under the sanitizers) and must either
// be refused or give a phrase the unit can take.
#include "core/voice/wave.h"

#include "tests/core/voice/wave_builder.h"

#include <gtest/gtest.h>

#include <random>

namespace rk4 {
namespace {

void expectWellFormedPhrase(std::span<const std::uint8_t> wave, const std::string& what)
{
    const VoxConversion result = convertWave(wave);
    if (!result.format.convertible()) {
        EXPECT_TRUE(result.vox.empty()) << what;
        EXPECT_TRUE(sourceWaveform(wave).samples.empty()) << what;
        return;
    }
    ASSERT_GE(result.outputCount, 0) << what;
    EXPECT_LE(result.vox.size(), kVoiceStoreBytes) << what;
    ASSERT_FALSE(result.vox.empty()) << what;
    EXPECT_EQ(result.vox.size() % kPhraseBlock, 0u) << what;
    EXPECT_EQ(result.vox.back(), kFillByte) << what;
    EXPECT_LE(result.vox.size(), static_cast<std::size_t>(result.outputCount) / 2 + 2 * kPhraseBlock) << what;
    EXPECT_LE(phraseData(result.vox).size(), static_cast<std::size_t>(result.outputCount) / 2) << what;
    EXPECT_LE(sourceWaveform(wave).columns(300).size(), 300u);
    EXPECT_LE(phraseWaveform(result.vox).samples.size(), static_cast<std::size_t>(result.outputCount)) << what;
}

TEST(WaveReaderRandom, RandomHeadersTruncationsAndGarbageGiveWholeBlockPhrases)
{
    std::mt19937 random(20240611);
    auto pick = [&](std::uint32_t low, std::uint32_t high) {
        return std::uniform_int_distribution<std::uint32_t>(low, high)(random);
    };
    const std::uint32_t rates[] = {8000, 11025, 16000, 22050, 32000, 44100, 48000, 96000, 0, 7999, 4000000000u};
    const std::uint16_t widths[] = {8, 16, 0, 24, 32, 12};
    const std::uint16_t tags[] = {1, 1, 3, 0xFFFE, 0, 6};

    for (int round = 0; round < 1500; ++round) {
        test::WaveLayout layout;
        layout.sampleRate = pick(0, 3) == 0 ? pick(1000, 200000) : rates[pick(0, std::size(rates) - 1)];
        layout.bitsPerSample = widths[pick(0, std::size(widths) - 1)];
        layout.channels = static_cast<std::uint16_t>(pick(0, 3));
        layout.formatTag = tags[pick(0, std::size(tags) - 1)];
        layout.subFormat = static_cast<std::uint16_t>(pick(0, 3));
        layout.listSize = pick(0, 4) == 0 ? pick(0, 9) : 0;
        layout.fmtExtra = pick(0, 4) == 0 ? pick(0, 40) : 0;
        layout.fact = pick(0, 1) == 1;
        std::vector<std::uint8_t> data(pick(0, 6000));
        for (auto& byte : data)
            byte = static_cast<std::uint8_t>(pick(0, 255));
        if (pick(0, 3) == 0)
            layout.dataSize = pick(0, 3) == 0 ? 0xFFFFFFFFu : pick(0, 20000);
        std::vector<std::uint8_t> wave = test::makeWave(layout, data);

        switch (pick(0, 3)) {
        case 0: wave.resize(pick(0, static_cast<std::uint32_t>(wave.size()))); break; // truncated anywhere
        case 1: // a few bytes of the header scrambled
            for (int i = 0, n = static_cast<int>(pick(1, 6)); i < n && !wave.empty(); ++i)
                wave[pick(0, static_cast<std::uint32_t>(std::min<std::size_t>(wave.size(), 60) - 1))] =
                    static_cast<std::uint8_t>(pick(0, 255));
            break;
        default: break;
        }
        expectWellFormedPhrase(wave, "round " + std::to_string(round));
        if (HasFatalFailure())
            return;
    }
}

} // namespace
} // namespace rk4
