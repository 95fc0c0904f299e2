#include "core/voice/speech.h"

#include "core/voice/adpcm.h"

#include "tests/support/temp_dir.h"

#include <gtest/gtest.h>

#include <thread>

namespace rk4 {
namespace {

constexpr char kSentence[] = "Pump house high level alarm at the north reservoir";

double spokenSeconds(const VoxConversion& phrase)
{
    return static_cast<double>(decodeVox(phraseData(phrase.vox)).size()) / kPhraseRate;
}

TEST(Speech, APhraseLastsAsLongAsTheSynthesiserSpeaksAndIsNeverClipped)
{
    for (const int speed : {100, kDefaultSpeech, 300}) {
        SpeechSettings settings;
        settings.speed = speed;
        const Speech native = synthesise(kSentence, settings);
        ASSERT_TRUE(native.ok()) << native.problem;
        ASSERT_GT(native.sampleRate, 0u);
        const double expected = static_cast<double>(native.samples.size()) / native.sampleRate;

        const VoxConversion phrase = speakPhrase(kSentence, settings);
        ASSERT_TRUE(phrase.format.convertible()) << phrase.format.problem;
        EXPECT_EQ(phrase.vox.size() % kPhraseBlock, 0u);
        EXPECT_NEAR(spokenSeconds(phrase), expected, expected * 0.2) << speed << " words a minute";
        EXPECT_EQ(phrase.clippedCodes, 0u) << speed;
        // Speech, not a murmur: the loudest part uses a fair share of the range.
        EXPECT_GT(phrase.peak12, kMaxSample12 / 8) << speed;
    }
}

TEST(Speech, TheSpeedReachesTheSynthesiser)
{
    SpeechSettings slow, fast;
    slow.speed = 100;
    fast.speed = 300;
    const double slowSeconds = spokenSeconds(speakPhrase(kSentence, slow));
    EXPECT_LT(spokenSeconds(speakPhrase(kSentence, fast)), slowSeconds * 0.6);
}

TEST(Speech, RefusesWhatCannotBeSpoken)
{
    struct Case {
        std::string text, voice;
        int speed;
        std::string problem;
    };
    const Case cases[] = {
        {"", "en", kDefaultSpeech, "there is no text to speak"},
        {" \t\n", "en", kDefaultSpeech, "there is no text to speak"},
        {"pump", "en", kSlowestSpeech - 1, "the speed must be 80 to 450 words a minute"},
        {"pump", "en", kFastestSpeech + 1, "the speed must be 80 to 450 words a minute"},
        {"pump", "xx-nowhere", kDefaultSpeech, "there is no voice \"xx-nowhere\""},
    };
    for (const Case& c : cases) {
        SpeechSettings settings;
        settings.setVoiceName(c.voice);
        settings.speed = c.speed;
        const VoxConversion phrase = speakPhrase(c.text, settings);
        EXPECT_EQ(phrase.format.problem, c.problem) << "\"" << c.text << "\"";
        EXPECT_TRUE(phrase.vox.empty());
    }
    // A refusal leaves the engine usable.
    EXPECT_TRUE(speakPhrase("pump", SpeechSettings{}).format.convertible());
}

TEST(Speech, CallersOnSeveralThreadsEachGetTheirOwnPhrase)
{
    // The synthesiser varies its output slightly from call to call, so the
    // phrases are compared by length: samples of one caller landing in the
    // other's phrase would make one far longer.
    const SpeechSettings settings;
    const std::size_t alone = synthesise(kSentence, settings).samples.size();
    Speech first, second;
    std::thread a([&] { first = synthesise(kSentence, settings); });
    std::thread b([&] { second = synthesise(kSentence, settings); });
    a.join();
    b.join();
    EXPECT_NEAR(static_cast<double>(first.samples.size()), alone, alone * 0.05);
    EXPECT_NEAR(static_cast<double>(second.samples.size()), alone, alone * 0.05);
}

TEST(SpeechSettings, KeepsVoiceSpeedAndPitchAndIgnoresWhatItCannotUse)
{
    SpeechSettings settings;
    settings.setVoiceName("en-us+f2");
    settings.speed = 210;
    settings.pitch = 30;
    EXPECT_EQ(settings.language, "en-us");
    EXPECT_EQ(settings.variant, "f2");

    test::TempDir dir;
    const auto file = speechSettingsPath(dir.path());
    ASSERT_TRUE(settings.save(file));
    const SpeechSettings loaded = SpeechSettings::load(file);
    EXPECT_EQ(loaded.voiceName(), "en-us+f2");
    EXPECT_EQ(loaded.speed, 210);
    EXPECT_EQ(loaded.pitch, 30);

    const SpeechSettings odd = SpeechSettings::parse("speed = 9000\npitch = high\nvoice =\ncolour = blue\n");
    EXPECT_EQ(odd.voiceName(), "en");
    EXPECT_EQ(odd.speed, kDefaultSpeech);
    EXPECT_EQ(odd.pitch, kDefaultPitch);
    EXPECT_EQ(SpeechSettings::parse("pitch = 99\n").pitch, 99);
    EXPECT_EQ(SpeechSettings::parse("pitch = 100\n").pitch, kDefaultPitch);
    EXPECT_EQ(SpeechSettings::load(dir.path() / "missing.txt").speed, kDefaultSpeech);
}

} // namespace
} // namespace rk4
