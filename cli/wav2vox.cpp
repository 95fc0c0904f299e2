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
    converter.keepWaveforms = false;
    converter.source = parsed.positional[0];
    converter.destination =
        parsed.positional.size() == 2 ? parsed.positional[1] : GetDefaultDestination("", converter.source);
    StreamPrompter prompter(context.err);
    if (!converter.CmConvert(prompter))
        return 1;

    context.out << converter.status << ": " << converter.source << " (" << converter.sourceFormat << ") -> "
                << converter.destination << ", " << std::max(converter.outputCount - 1, 0) << " codes\n";
    // Judged on the phrase as the unit will speak it.
    if (converter.clippedCodes)
        context.err << "warning: " << converter.clippedCodes << " samples of the phrase are at full scale (clipped)\n";
    else if (converter.peakPercent < 1)
        context.err << "warning: the phrase is silent\n";
    return 0;
}

} // namespace rk4::cli
