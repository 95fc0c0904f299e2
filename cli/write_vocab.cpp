#include "cli/transfer.h"

namespace rk4::cli {

using link::ProgrammingSession;
using link::TransferKind;

// The verb itself is the technician's consent: the window's two questions
// about losing the stored voices are not asked here.
int runWriteVocab(const Arguments& args, Context& context)
{
    const Parsed parsed = parseTransferArguments(args);
    if (const auto usage = checkTransferArguments(parsed, context, "write-vocab", "FILE.bin"))
        return *usage;
    const std::filesystem::path file = parsed.positional[0];
    Workspace workspace;
    const auto line = UnitLine::choose(parsed, workspace.workingDirectory(), context);
    if (!line)
        return 2;
    const bool written = runTransfer(*line, workspace, context, [&](ProgrammingSession& session, Millis now) {
        return session.Send(TransferKind::Vocabulary, now, file);
    });
    return written ? 0 : 1;
}

} // namespace rk4::cli
