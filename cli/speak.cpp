#include "cli/support.h"

#include "core/common/safe_file.h"
#include "core/voice/speech.h"
#include "core/voice/wave_converter.h"

#include <CLI/CLI.hpp>

#include <memory>
#include <ostream>

namespace rk4::cli {

namespace {

inline constexpr char kCannotSpeak[] = " CANNOT SPEAK THE PHRASE ";

struct SpeakOptions {
    std::string text;
    std::string destination;
    SpeechOptions speech;
};

int speak(const SpeakOptions& options, Context& context)
{
    const VoxConversion phrase = speakPhrase(options.text, speechSettings(options.speech));
    if (!phrase.format.convertible()) {
        printMessage(context.err, kCannotSpeak, phrase.format.problem);
        return 2;
    }
    if (const SaveResult saved = writeFileAtomically(options.destination, phrase.vox); !saved) {
        printMessage(context.err, kCannotOpenOutputFile, fileAndCause(options.destination, saved.cause()));
        return 1;
    }
    const double seconds = static_cast<double>(phrase.outputCount > 0 ? phrase.outputCount - 1 : 0) / kPhraseRate;
    char length[32];
    std::snprintf(length, sizeof length, "%.1f s", seconds);
    context.out << "Spoken: \"" << options.text << "\" -> " << options.destination << ", " << length << " ("
                << phrase.vox.size() / kPhraseBlock << (phrase.vox.size() == kPhraseBlock ? " block)\n" : " blocks)\n");
    if (phrase.clippedCodes)
        context.err << "warning: " << phrase.clippedCodes << " samples of the phrase are at full scale (clipped)\n";
    return 0;
}

} // namespace

VerbBody addSpeakVerb(CLI::App& rk4, Context& context)
{
    CLI::App* verb = rk4.add_subcommand("speak", "Make a phrase file by speaking a text");
    auto options = std::make_shared<SpeakOptions>();
    verb->add_option("TEXT", options->text, "What the phrase says, e.g. \"PUMP HOUSE HIGH LEVEL\"")->required();
    verb->add_option("OUT.vox", options->destination, "The phrase file to write")->required();
    addSpeechOptions(*verb, options->speech);
    verb->footer(std::string("The voice, speed and pitch come from ") + kSpeechSettingsFile +
                 " in the working folder when it is there; --voice and --speed override them.\n");
    return [options, &context] { return speak(*options, context); };
}

} // namespace rk4::cli
