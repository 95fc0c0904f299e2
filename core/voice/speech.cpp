#include "core/voice/speech.h"

#include "core/common/safe_file.h"
#include "core/common/text.h"
#include "core/voice/message_file.h"

#include <espeak-ng/speak_lib.h>

#include <algorithm>
#include <charconv>
#include <mutex>

#include <dlfcn.h>
#include <optional>
#include <sstream>

namespace rk4 {

namespace {

// The synthesiser keeps its voice, parameters and callback in globals, so it
// is set up once and then used by one caller at a time.
std::mutex engineMutex;
int engineRate = 0; // its native sample rate once set up; negative when it failed

// The synthesiser's library is opened the first time a phrase is spoken,
// not when the program starts: with its sound-server and codec libraries
// it would otherwise add several milliseconds to every command.
struct Synthesiser {
    decltype(&espeak_Initialize) initialize = nullptr;
    decltype(&espeak_SetSynthCallback) setSynthCallback = nullptr;
    decltype(&espeak_SetVoiceByName) setVoiceByName = nullptr;
    decltype(&espeak_SetParameter) setParameter = nullptr;
    decltype(&espeak_Synth) synth = nullptr;
};
Synthesiser synthesiser;

template <typename Function> bool bind(void* library, const char* name, Function& into)
{
    into = reinterpret_cast<Function>(::dlsym(library, name));
    return into != nullptr;
}

bool openSynthesiser()
{
    void* library = ::dlopen("libespeak-ng.so.1", RTLD_NOW | RTLD_LOCAL);
    if (!library)
        return false;
    // Kept open for the life of the process, like the engine's own globals.
    return bind(library, "espeak_Initialize", synthesiser.initialize) &&
           bind(library, "espeak_SetSynthCallback", synthesiser.setSynthCallback) &&
           bind(library, "espeak_SetVoiceByName", synthesiser.setVoiceByName) &&
           bind(library, "espeak_SetParameter", synthesiser.setParameter) &&
           bind(library, "espeak_Synth", synthesiser.synth);
}

extern "C" int collectSamples(short* samples, int count, espeak_EVENT* events)
{
    if (samples && count > 0 && events && events->user_data) {
        auto* out = static_cast<std::vector<std::int16_t>*>(events->user_data);
        out->insert(out->end(), samples, samples + count);
    }
    return 0; // carry on
}

// With the mutex held. The data comes from the library's installed path, or
// from ESPEAK_DATA_PATH when that is set.
bool startEngine()
{
    if (engineRate == 0) {
        engineRate = openSynthesiser()
                         ? synthesiser.initialize(AUDIO_OUTPUT_SYNCHRONOUS, 0, nullptr, espeakINITIALIZE_DONT_EXIT)
                         : -1;
        if (engineRate <= 0)
            engineRate = -1;
        else
            synthesiser.setSynthCallback(collectSamples);
    }
    return engineRate > 0;
}

std::optional<int> parseNumber(const std::string& text)
{
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return value;
}

} // namespace

void SpeechSettings::setVoiceName(const std::string& name)
{
    // A voice names its language first: "+f2" alone would be saved as no
    // voice at all, so the voice stays as it was.
    const auto plus = name.find('+');
    std::string named = trimBlanks(name.substr(0, plus));
    if (named.empty())
        return;
    language = std::move(named);
    variant = plus == std::string::npos ? std::string() : trimBlanks(name.substr(plus + 1));
}

SpeechSettings SpeechSettings::parse(const std::string& text)
{
    SpeechSettings settings;
    std::istringstream in(text);
    std::string line;
    while (std::getline(in, line)) {
        if (line.starts_with('#'))
            continue;
        const auto equals = line.find('=');
        if (equals == std::string::npos)
            continue;
        const std::string key = trimBlanks(line.substr(0, equals));
        const std::string value = trimBlanks(line.substr(equals + 1));
        const auto number = parseNumber(value);
        if (key == "voice" && !value.empty() && value.size() <= 40)
            settings.setVoiceName(value);
        else if (key == "speed" && number && *number >= kSlowestSpeech && *number <= kFastestSpeech)
            settings.speed = *number;
        else if (key == "pitch" && number && *number >= 0 && *number <= 99)
            settings.pitch = *number;
    }
    return settings;
}

SpeechSettings SpeechSettings::load(const std::filesystem::path& file)
{
    const FileRead read = readFileBytes(file, 4096);
    if (!read)
        return SpeechSettings{};
    return parse(std::string(read.bytes.begin(), read.bytes.end()));
}

std::string SpeechSettings::text() const
{
    std::ostringstream out;
    out << "# The voice the Rk4 programmer speaks phrases in.\n"
        << "voice = " << voiceName() << "\n"
        << "speed = " << speed << "\n"
        << "pitch = " << pitch << "\n";
    return out.str();
}

bool SpeechSettings::save(const std::filesystem::path& file) const
{
    const std::string content = text();
    return static_cast<bool>(writeFileAtomically(file, std::string_view(content)));
}

std::filesystem::path speechSettingsPath(const std::filesystem::path& workingDirectory)
{
    return workingDirectory / kSpeechSettingsFile;
}

Speech synthesise(const std::string& text, const SpeechSettings& settings)
{
    Speech speech;
    if (trimBlanks(text).empty()) {
        speech.problem = "there is no text to speak";
        return speech;
    }
    if (settings.speed < kSlowestSpeech || settings.speed > kFastestSpeech) {
        speech.problem = "the speed must be " + std::to_string(kSlowestSpeech) + " to " +
                         std::to_string(kFastestSpeech) + " words a minute";
        return speech;
    }
    const std::lock_guard lock(engineMutex);
    if (!startEngine()) {
        speech.problem = "the speech synthesiser cannot start (are libespeak-ng1 and its voice data installed?)";
        return speech;
    }
    if (synthesiser.setVoiceByName(settings.voiceName().c_str()) != EE_OK) {
        speech.problem = "there is no voice \"" + settings.voiceName() + "\"";
        return speech;
    }
    synthesiser.setParameter(espeakRATE, settings.speed, 0);
    synthesiser.setParameter(espeakPITCH, std::clamp(settings.pitch, 0, 99), 0);
    speech.sampleRate = static_cast<std::uint32_t>(engineRate);
    const espeak_ERROR result =
        synthesiser.synth(text.c_str(), text.size() + 1, 0, POS_CHARACTER, 0, espeakCHARS_UTF8, nullptr, &speech.samples);
    if (result != EE_OK || speech.samples.empty()) {
        speech.samples.clear();
        speech.problem = "the speech synthesiser could not speak \"" + text + "\"";
    }
    return speech;
}

VoxConversion speakPhrase(const std::string& text, const SpeechSettings& settings)
{
    const Speech speech = synthesise(text, settings);
    if (!speech.ok()) {
        VoxConversion refused;
        refused.format.problem = speech.problem;
        return refused;
    }
    return convertWave(waveFileBytes(speech.samples, speech.sampleRate));
}

PhraseLoad spokenPhraseLoad(const std::string& words, const SpeechSettings& settings)
{
    VoxConversion phrase = speakPhrase(words, settings);
    if (!phrase.format.convertible())
        return {{}, "\"" + words + "\": " + phrase.format.problem};
    return {std::move(phrase.vox), {}};
}

} // namespace rk4
