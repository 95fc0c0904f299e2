#include "cli/transfer.h"

#include <ostream>

namespace rk4::cli {

using link::ProgrammingSession;
using link::TransferKind;

// The voices stream through voice.tmp in the current directory, as in the
// window; the named file takes the place of the save dialog.
int runReadVoices(const Arguments& args, Context& context)
{
    const Parsed parsed = parseTransferArguments(args);
    if (const auto usage = checkTransferArguments(parsed, context, "read-voices", "OUT.msg"))
        return *usage;
    const std::filesystem::path target = std::filesystem::absolute(parsed.positional[0]);
    Workspace workspace;
    const auto line = UnitLine::choose(parsed, workspace.workingDirectory(), context);
    if (!line)
        return 2;
    const bool read = runTransfer(*line, workspace, context, [&](ProgrammingSession& session, Millis now) {
        return session.Receive(TransferKind::Voices, now, target);
    });
    if (!read)
        return 1;
    context.out << "Saved " << parsed.positional[0] << " (" << std::filesystem::file_size(target) << " bytes)\n";
    return 0;
}

} // namespace rk4::cli
