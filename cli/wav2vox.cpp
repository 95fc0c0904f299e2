#include "cli/support.h"

#include "core/voice/wave_converter.h"

#include <algorithm>
#include <ostream>

namespace rk4::cli {

int runWav2vox(const Arguments& args, Context& context)
{
    const Parsed parsed = parseArguments(args);
    if (parsed.positional.empty() || parsed.positional.size() > 2 || !parsed.flags.empty())
        return usageError(context, "wav2vox", "expected IN.wav and optionally OUT.vox");

    WaveConverter converter;
    converter.SetupWindow();
    converter.source = parsed.positional[0];
    converter.destination = parsed.positional.size() == 2 ? parsed.positional[1]
                                                          : GetDefaultDestination("", converter.source);
    StreamPrompter prompter(context.err);
    if (!converter.CmConvert(prompter))
        return 1;

    context.out << converter.status << ": " << converter.source << " (" << converter.sourceFormat << ") -> "
                << converter.destination << ", " << std::max(converter.outputCount - 1, 0) << " codes\n";
    if (const std::size_t clipped = converter.sourceWave.clippedCount())
        context.err << "warning: " << clipped << " samples of the recording are at full scale (clipped)\n";
    if (converter.sourceWave.peakPercent() == 0)
        context.err << "warning: the recording is silent\n";
    return 0;
}

} // namespace rk4::cli
