#include "cli/support.h"

#include "core/database/file.h"
#include "core/voice/wave.h"
#include "core/voice/wave_converter.h"

#include <cstdio>
#include <ostream>

namespace rk4::cli {

int runVox2wav(const Arguments& args, Context& context)
{
    const Parsed parsed = parseArguments(args);
    if (parsed.positional.size() != 2 || !parsed.flags.empty())
        return usageError(context, "vox2wav", "expected IN.vox and OUT.wav");

    StreamPrompter prompter(context.err);
    const auto vox = readWholeFile(parsed.positional[0]);
    if (!vox) {
        prompter.fileError(kCannotOpenFile);
        return 1;
    }
    const std::vector<std::int16_t> samples = decodeVox(phraseData(*vox));
    if (const SaveResult saved = writeFileAtomically(parsed.positional[1], waveFileBytes(samples, kPhraseRate));
        !saved) {
        prompter.fileError(kCannotOpenOutputFile, saved.cause());
        return 1;
    }
    char seconds[32];
    std::snprintf(seconds, sizeof seconds, "%.3f", static_cast<double>(samples.size()) / kPhraseRate);
    context.out << parsed.positional[0] << " -> " << parsed.positional[1] << ", " << samples.size() << " samples, "
                << seconds << " s at 8000 Hz\n";
    return 0;
}

} // namespace rk4::cli
