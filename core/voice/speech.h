#pragma once
// Phrases made from text: the point's name spoken by the speech synthesiser,
// resampled and encoded exactly like a recorded wave file, so a technician
// without a microphone still gets a phrase for every slot.

#include "core/voice/wave.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace rk4 {

// The synthesiser's voice, speed and pitch, remembered between runs. rk4.cfg
// is the unit tool's fixed 16-byte record with no room for them, so they live
// in a small text file beside it, "key = value" a line.
inline constexpr char kSpeechSettingsFile[] = "rk4speech.txt";
inline constexpr int kSlowestSpeech = 80; // words per minute
inline constexpr int kFastestSpeech = 450;
inline constexpr int kDefaultSpeech = 150;
inline constexpr int kDefaultPitch = 50; // 0..99

struct SpeechSettings {
    std::string language = "en"; // the synthesiser's voice name, e.g. "en-us"
    std::string variant;         // e.g. "m3" or "f2"; empty for the language's own
    int speed = kDefaultSpeech;
    int pitch = kDefaultPitch;

    // "en", "en+f2": the voice as one name, the form the command line takes.
    std::string voiceName() const { return variant.empty() ? language : language + "+" + variant; }
    void setVoiceName(const std::string& name);

    // A missing file or line keeps the default; unknown lines and values out
    // of range are ignored.
    static SpeechSettings load(const std::filesystem::path& file);
    static SpeechSettings parse(const std::string& text);
    std::string text() const;
    bool save(const std::filesystem::path& file) const;
};

std::filesystem::path speechSettingsPath(const std::filesystem::path& workingDirectory);

// The synthesiser's own output: 16-bit mono samples at its native rate.
struct Speech {
    std::vector<std::int16_t> samples;
    std::uint32_t sampleRate = 0;
    std::string problem; // why nothing was spoken

    bool ok() const { return problem.empty(); }
};

// Speaks `text` in memory. Refuses empty (or all-blank) text, a speed
// outside kSlowestSpeech..kFastestSpeech and a voice the synthesiser lacks.
// The synthesiser is one shared engine: calls from several threads take turns.
Speech synthesise(const std::string& text, const SpeechSettings& settings);

// A phrase (.vox) spoken from `text`: the synthesiser's samples converted as
// a wave file of them would be, padded to whole blocks. `format.problem`
// says why there is none.
VoxConversion speakPhrase(const std::string& text, const SpeechSettings& settings);

// The phrase of a slot given as "text:WORDS": what speakPhrase makes of
// WORDS, or why there is none.
struct PhraseLoad;
PhraseLoad spokenPhraseLoad(const std::string& words, const SpeechSettings& settings);

} // namespace rk4
