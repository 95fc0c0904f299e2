#include "cli/support.h"

#include "core/database/file.h"
#include "core/voice/wave.h"
#include "core/voice/wave_converter.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <ostream>

namespace rk4::cli {

namespace {

struct Vox2wavOptions {
    std::string source;
    std::string destination;
};

int vox2wav(const Vox2wavOptions& options, Context& context)
{
    // No phrase is longer than the largest voice store, so a bigger file is
    // something else, and is refused before it is read into memory.
    std::error_code error;
    if (const auto size = std::filesystem::file_size(options.source, error); !error && size > kVoiceStoreBytes) {
        printMessage(context.err, kCannotOpenFile,
                     fileAndCause(options.source, std::to_string(size) + " bytes, and a phrase is at most " +
                                                      std::to_string(kVoiceStoreBytes) + ", the largest voice store"));
        return 2;
    }
    const FileRead vox = readFileBytes(options.source);
    if (!vox) {
        printMessage(context.err, kCannotOpenFile, fileAndCause(options.source, vox.cause()));
        return 2;
    }
    const std::string destination = options.destination.empty()
                                        ? std::filesystem::path(options.source).replace_extension(".wav").string()
                                        : options.destination;
    if (wouldReplace(destination, options.source)) {
        printMessage(context.err, kCannotOpenOutputFile, destination + ": it is the phrase file being decoded");
        return 2;
    }
    const std::vector<std::int16_t> samples = decodeVox(phraseData(vox.bytes));
    if (const SaveResult saved = writeFileAtomically(destination, waveFileBytes(samples, kPhraseRate)); !saved) {
        printMessage(context.err, kCannotOpenOutputFile, fileAndCause(destination, saved.cause()));
        return 1;
    }
    char seconds[32];
    std::snprintf(seconds, sizeof seconds, "%.3f", static_cast<double>(samples.size()) / kPhraseRate);
    context.out << options.source << " -> " << destination << ", " << samples.size() << " samples, " << seconds
                << " s at 8000 Hz\n";
    return 0;
}

} // namespace

VerbBody addVox2wavVerb(CLI::App& rk4, Context& context)
{
    CLI::App* verb = rk4.add_subcommand("vox2wav", "Decode a phrase file to an 8000 Hz wave");
    auto options = std::make_shared<Vox2wavOptions>();
    verb->add_option("IN.vox", options->source, "The phrase file")->required();
    verb->add_option("OUT.wav", options->destination,
                     "The wave file to write (default: IN with .wav for its last extension)");
    return [options, &context] { return vox2wav(*options, context); };
}

} // namespace rk4::cli
