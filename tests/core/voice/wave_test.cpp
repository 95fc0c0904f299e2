#include "core/voice/wave.h"

#include "tests/core/voice/wave_builder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>

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

TEST(WaveConversion, FactListAndLongerFmtChunksConvertTheSameAsThePlainLayout)
{
    std::vector<std::uint8_t> data(3000);
    for (std::size_t i = 0; i < data.size(); ++i)
        data[i] = static_cast<std::uint8_t>(128 + 90 * std::sin(i * 0.2));
    const auto plain = convertWave(makeWave({.sampleRate = 11025, .bitsPerSample = 8}, data));
    const auto withFact = convertWave(makeWave({.sampleRate = 11025, .bitsPerSample = 8, .fact = true}, data));
    const auto longFmt =
        convertWave(makeWave({.sampleRate = 11025, .bitsPerSample = 8, .fmtExtra = 2, .fact = true}, data));
    // A recorder's LIST chunk of odd length, padded, before the samples.
    const auto withList = convertWave(makeWave({.sampleRate = 11025, .bitsPerSample = 8, .listSize = 27}, data));
    EXPECT_TRUE(withFact.format.hasFact);
    EXPECT_EQ(withFact.vox, plain.vox);
    EXPECT_EQ(longFmt.vox, plain.vox);
    EXPECT_EQ(withList.vox, plain.vox);
    EXPECT_EQ(plain.outputCount, static_cast<int>(3000 / (11025 * 0.000125)));
}

TEST(WaveConversion, ATruncatedDataChunkConvertsWhatIsThere)
{
    std::vector<std::uint8_t> data(1000);
    for (std::size_t i = 0; i < data.size(); ++i)
        data[i] = static_cast<std::uint8_t>(40 + i % 170);
    std::vector<std::int16_t> expected;
    for (std::size_t i = 0; i < 999; ++i)
        expected.push_back(static_cast<std::int16_t>((data[i] - 128) * 16));

    for (const std::int64_t promised : {std::int64_t{1500}, std::int64_t{0xFFFFFFFF}}) {
        const auto result = convertWave(makeWave({.bitsPerSample = 8, .dataSize = promised}, data));
        EXPECT_TRUE(result.format.truncated()) << promised;
        EXPECT_EQ(result.format.dataAvailable, 1000u);
        ASSERT_EQ(result.outputCount, 1000) << promised;
        EXPECT_EQ(firstBytes(result.vox, 499), encodePhrase(expected)) << promised;
        EXPECT_EQ(result.vox.size(), 4096u);
    }
    // A header alone that promises four gigabytes is an empty phrase, not millions of codes.
    const auto header = convertWave(makeWave({.dataSize = 0xFFFFFFFF}, {}));
    EXPECT_EQ(header.outputCount, 0);
    EXPECT_EQ(header.vox.size(), 4096u);
}

std::vector<std::uint8_t> bytesOf(const char* text) { return {text, text + std::strlen(text)}; }

std::vector<std::uint8_t> withFourCC(std::vector<std::uint8_t> wave, std::size_t at, const char* id)
{
    std::memcpy(wave.data() + at, id, 4);
    return wave;
}

TEST(WaveConversion, RefusesWhatIsNotAConvertibleWaveAndSaysWhy)
{
    const std::vector<std::uint8_t> samples(400, 128);
    const auto wave = [&](WaveLayout layout) { return makeWave(layout, samples); };
    std::vector<std::uint8_t> shortFmt = wave({});
    writeLE32(std::span<std::uint8_t>(shortFmt), 16, 14);
    const std::vector<std::uint8_t> riffOnly = {'R', 'I', 'F', 'F', 4, 0, 0, 0, 'W', 'A', 'V', 'E'};
    std::vector<std::uint8_t> noData = wave({.fact = true});
    noData.resize(36 + 12); // ends after the fact chunk

    const struct {
        const char* what;
        std::vector<std::uint8_t> bytes;
        const char* problem;
    } cases[] = {
        {"empty", {}, "the file is empty"},
        {"text", bytesOf("hello, this is not a recording\n"), "not a RIFF WAVE file: it starts with \"hell\""},
        {"binary", {0x4D, 0x5A, 0x90, 0x00, 0x03}, "not a RIFF WAVE file: it starts with \"MZ\\x90\\x00\""},
        {"two bytes", {'R', 'I'}, "not a RIFF WAVE file: it starts with \"RI\""},
        {"other RIFF", withFourCC(wave({}), 8, "AVI "), "a RIFF file of type \"AVI \", not WAVE"},
        {"no chunks", riffOnly, "no fmt chunk"},
        {"no data", noData, "no data chunk"},
        {"data first", withFourCC(withFourCC(wave({}), 12, "data"), 36, "fmt "), "no fmt chunk before the data"},
        {"short fmt", shortFmt, "the fmt chunk is too short"},
        {"A-law", wave({.formatTag = 6}), "A-law: only PCM and 32-bit float wave files can be converted"},
        {"IMA", wave({.formatTag = 0x11}), "IMA ADPCM: only PCM and 32-bit float wave files can be converted"},
        {"unknown", wave({.formatTag = 0x1234}),
         "encoding 0x1234: only PCM and 32-bit float wave files can be converted"},
        {"extensible mu-law", wave({.formatTag = 0xFFFE, .subFormat = 7}),
         "mu-law: only PCM and 32-bit float wave files can be converted"},
        {"12-bit", wave({.bitsPerSample = 12}), "12-bit PCM: only 8, 16, 24 and 32-bit PCM can be converted"},
        {"double", wave({.bitsPerSample = 64, .formatTag = 3}), "64-bit float: only 32-bit float can be converted"},
        {"no channels", wave({.channels = 0}), "the header gives no channels"},
        {"surround", wave({.channels = 6}), "6 channels: only mono and stereo can be converted"},
        {"1 Hz", wave({.sampleRate = 1}), "sample rate 1 Hz: phrases are made from 4000 to 192000 Hz"},
        {"3999 Hz", wave({.sampleRate = 3999}), "sample rate 3999 Hz: phrases are made from 4000 to 192000 Hz"},
        {"192001 Hz", wave({.sampleRate = 192001}), "sample rate 192001 Hz: phrases are made from 4000 to 192000 Hz"},
    };
    for (const auto& refused : cases) {
        const VoxConversion result = convertWave(refused.bytes);
        EXPECT_EQ(result.format.problem, refused.problem) << refused.what;
        EXPECT_TRUE(result.vox.empty()) << refused.what;
    }
    EXPECT_TRUE(convertWave(wave({.sampleRate = 4000})).format.convertible());
    EXPECT_TRUE(convertWave(wave({.sampleRate = 192000})).format.convertible());
}

TEST(WaveConversion, NeverMakesAPhraseLongerThanTheVoiceStoreHolds)
{
    // 1048063 samples at 8000 Hz fill the 512 KiB store to its last byte; a
    // few seconds more are refused before any work is done.
    const std::vector<std::uint8_t> longest(1048063, 128);
    const VoxConversion fits = convertWave(makeWave({.bitsPerSample = 8}, longest));
    ASSERT_TRUE(fits.format.convertible()) << fits.format.problem;
    EXPECT_EQ(fits.vox.size(), 524288u);

    const std::vector<std::uint8_t> longer(1100000, 128);
    const VoxConversion refused = convertWave(makeWave({.bitsPerSample = 8}, longer));
    EXPECT_EQ(refused.format.problem, "too long: 137.5 s at 8000 Hz, and the unit's voice store holds 131.0 s");
    EXPECT_TRUE(refused.vox.empty());
}

// 32-bit words and floats as little-endian bytes.
std::vector<std::uint8_t> words(std::initializer_list<std::uint32_t> values)
{
    std::vector<std::uint8_t> bytes;
    for (const std::uint32_t value : values)
        for (int shift = 0; shift < 32; shift += 8)
            bytes.push_back(static_cast<std::uint8_t>(value >> shift));
    return bytes;
}

std::vector<std::uint8_t> floats(std::initializer_list<float> values)
{
    std::vector<std::uint32_t> bits;
    for (const float value : values) {
        std::uint32_t word;
        std::memcpy(&word, &value, sizeof word);
        bits.push_back(word);
    }
    std::vector<std::uint8_t> bytes;
    for (const std::uint32_t word : bits) {
        const auto four = words({word});
        bytes.insert(bytes.end(), four.begin(), four.end());
    }
    return bytes;
}

TEST(WaveConversion, WiderAndStereoFormatsGiveTheirTrueSamplesIn12Bits)
{
    // Five frames at 8000 Hz give four codes; the 12-bit samples behind them
    // are worked out by hand. A stereo pair is the mean of its two samples,
    // truncated toward zero; wide samples keep their top 12 bits, truncated
    // toward zero; floats are full scale at 1.0.
    const std::vector<std::uint8_t> wide24 = {0xFF, 0xFF, 0x7F, 0x00, 0x00, 0x80, 0x00, 0xF0,
                                              0xFF, 0x45, 0x23, 0x01, 0,    0,    0};
    const struct {
        const char* what;
        WaveLayout layout;
        std::vector<std::uint8_t> data;
        std::vector<std::int16_t> samples12;
    } cases[] = {
        // (72 - 28) / 2 = 22; (-128 + 127) / 2 = 0; 127; (-127 - 128) / 2 = -127; each times 16
        {"8-bit stereo",
         {.bitsPerSample = 8, .channels = 2},
         {200, 100, 0, 255, 255, 255, 1, 0, 128, 128},
         {352, 0, 2032, -2032}},
        // 3001 / 2 = 1500, / 16 = 93; -5 / 2 = -2, / 16 = 0; -32768 / 16; 0
        {"16-bit stereo",
         {.bitsPerSample = 16, .channels = 2},
         samples16(std::vector<std::int16_t>{1000, 2001, -3, -2, -32768, -32768, 32767, -32767, 0, 0}),
         {93, 0, -2048, 0}},
        // 0x7FFFFF, -0x800000, -0x1000, 0x12345 over 4096
        {"24-bit mono", {.bitsPerSample = 24}, wide24, {2047, -2048, -1, 18}},
        // over 2^20: 2047.99.., -2048, 1, -1.000001
        {"32-bit mono",
         {.bitsPerSample = 32},
         words({0x7FFFFFFF, 0x80000000, 0x00100000, 0xFFEFFFFF, 0}),
         {2047, -2048, 1, -1}},
        {"float mono",
         {.bitsPerSample = 32, .formatTag = 3},
         floats({0.5f, -0.25f, 1.5f, -1.0f, 0.0f}),
         {1024, -512, 2047, -2048}},
        // (0.25 + 0.125) / 2 = 0.1875, 384; a NaN sample is silence
        {"float stereo",
         {.bitsPerSample = 32, .channels = 2, .formatTag = 3},
         floats({0.5f, -0.5f, 0.25f, 0.125f, std::nanf(""), 0.0f, -1.0f, -1.0f, 0, 0}),
         {0, 384, 0, -2048}},
        {"extensible 24-bit",
         {.bitsPerSample = 24, .formatTag = 0xFFFE, .subFormat = 1},
         wide24,
         {2047, -2048, -1, 18}},
    };
    for (const auto& known : cases) {
        const VoxConversion result = convertWave(makeWave(known.layout, known.data));
        ASSERT_TRUE(result.format.convertible()) << known.what << ": " << result.format.problem;
        EXPECT_EQ(result.outputCount, 5) << known.what;
        EXPECT_EQ(firstBytes(result.vox, 2), encodePhrase(known.samples12)) << known.what;
        EXPECT_EQ(result.vox[2], 0x80) << known.what;
    }
}

// A recording as its frames' values (a stereo pair already mixed), and the
// wave file that holds them.
struct Recording {
    std::vector<int> frames;
    std::vector<std::uint8_t> wave;
};

// Speech-like material without the maths library: a wandering triangle with
// noise and now and then a jump, so that some samples are interpolated and
// some are not, and a stretch at full scale.
Recording recording(const WaveLayout& layout, double seconds)
{
    const auto count = static_cast<std::size_t>(seconds * layout.sampleRate);
    const int bits = layout.bitsPerSample;
    const int full = bits == 8 ? 127 : (1 << (bits - 1)) - 1;
    std::uint32_t seed = 12345;
    const auto noise = [&seed](int range) {
        seed = seed * 1664525u + 1013904223u;
        return static_cast<int>(seed >> 8) % (2 * range + 1) - range;
    };
    Recording made;
    for (std::size_t i = 0; i < count; ++i) {
        int mixed = 0;
        for (int channel = 0; channel < layout.channels; ++channel) {
            const int triangle = static_cast<int>((i * (37 + 11 * channel)) % 400) - 200;
            int value = triangle * full / 200 + noise(full / 16) + (i % 3001 < 40 ? full / 2 : 0);
            if (i / 4000 == 3)
                value = i % 2 ? full : -full;
            value = std::clamp(value, -full, full);
            for (int shift = 0; shift < bits; shift += 8)
                made.wave.push_back(static_cast<std::uint8_t>((bits == 8 ? value + 128 : value) >> shift));
            mixed = channel == 0 ? value : (mixed + value) / 2;
        }
        made.frames.push_back(bits == 8 ? mixed + 128 : mixed);
    }
    made.wave = makeWave(layout, made.wave);
    return made;
}

TEST(WaveConversion, LongRecordingsGiveTheCodesOfTheRuleTakenSampleBySample)
{
    // Long enough to be read and coded in many batches; each starts a block
    // of the input at a different place.
    const struct {
        const char* what;
        WaveLayout layout;
        double seconds;
    } cases[] = {
        {"44100 Hz, 16-bit mono", {.sampleRate = 44100}, 9.3},
        {"22050 Hz, 8-bit mono", {.sampleRate = 22050, .bitsPerSample = 8}, 5.1},
        {"48000 Hz, 16-bit mono", {.sampleRate = 48000}, 6.01},
        {"16000 Hz, 24-bit stereo", {.sampleRate = 16000, .bitsPerSample = 24, .channels = 2}, 4.7},
        {"11025 Hz, 16-bit stereo", {.sampleRate = 11025, .channels = 2}, 4.41},
    };
    for (const auto& known : cases) {
        const Recording input = recording(known.layout, known.seconds);
        const VoxConversion result = convertWave(input.wave);
        ASSERT_TRUE(result.format.convertible()) << known.what;
        const int bits = known.layout.bitsPerSample;
        const auto twelveBits = [bits](int value) { return bits == 8 ? (value - 128) * 16 : value / (1 << (bits - 12)); };
        const double ratio = known.layout.sampleRate * 0.000125;
        const auto step = static_cast<std::size_t>(ratio);
        const bool exact = ratio == 2.0 || ratio == 6.0;
        std::vector<std::int16_t> samples12;
        for (std::int32_t i = 0; i + 1 < result.outputCount; ++i) {
            int sample;
            if (exact) { // every step-th sample of a 1024-sample block, then the next block from its start
                const std::size_t perBlock = (1024 + step - 1) / step;
                sample = input.frames[i / perBlock * 1024 + i % perBlock * step];
            } else {
                const double position = i * ratio;
                const auto whole = static_cast<std::size_t>(position);
                const double fraction = position - static_cast<double>(whole);
                sample = input.frames[whole];
                const double rise = (input.frames[whole + 1] - sample) * fraction;
                if (fraction > 0.05 && (rise < -0.5 || rise > 0.5))
                    sample = static_cast<int>(sample + rise);
            }
            samples12.push_back(static_cast<std::int16_t>(twelveBits(sample)));
        }
        const std::vector<std::uint8_t> codes = encodePhrase(samples12);
        EXPECT_GT(samples12.size(), 32768u) << known.what; // long enough for the coding to run beside the reading
        EXPECT_EQ(firstBytes(result.vox, codes.size()), codes) << known.what;
        EXPECT_EQ(result.vox[codes.size()], 0x80) << known.what;
    }
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
