#include "cli/support.h"

#include "core/voice/wave_converter.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <ostream>

namespace rk4::cli {

namespace {

struct Wav2voxOptions {
    std::string source;
    std::string destination;
};

// The phrase goes beside the recording, under its name with the last
// extension replaced: zone.1.wav gives zone.1.vox.
std::string defaultDestination(const std::string& source)
{
    return std::filesystem::path(source).replace_extension(".vox").string();
}

int wav2vox(const Wav2voxOptions& options, Context& context)
{
    WaveConverter converter;
    converter.SetupWindow();
    converter.keepWaveforms = false;
    converter.source = options.source;
    converter.destination = options.destination.empty() ? defaultDestination(options.source) : options.destination;
    StreamPrompter prompter(context.err);
    if (!converter.CmConvert(prompter))
        return converter.failure == ConvertFailure::Destination ? 1 : 2;

    context.out << converter.status << ": " << converter.source << " (" << converter.sourceFormat << ") -> "
                << converter.destination << ", " << std::max(converter.outputCount - 1, 0) << " codes\n";
    // Judged on the phrase as the unit will speak it.
    if (converter.clippedCodes)
        context.err << "warning: " << converter.clippedCodes << " samples of the phrase are at full scale (clipped)\n";
    else if (converter.peakPercent < 1)
        context.err << "warning: the phrase is silent\n";
    return 0;
}

} // namespace

VerbBody addWav2voxVerb(CLI::App& rk4, Context& context)
{
    CLI::App* verb = rk4.add_subcommand("wav2vox", "Convert a recording to a phrase file");
    auto options = std::make_shared<Wav2voxOptions>();
    verb->add_option("IN.wav", options->source, "The recording (RIFF WAVE)")->required();
    verb->add_option("OUT.vox", options->destination,
                     "The phrase file to write (default: IN with .vox for its last extension)");
    return [options, &context] { return wav2vox(*options, context); };
}

} // namespace rk4::cli
