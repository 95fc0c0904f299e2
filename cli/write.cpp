#include "cli/transfer.h"

#include <ostream>

namespace rk4::cli {

using link::ProgrammingSession;
using link::TransferKind;

// The image goes to the unit as the file holds it; the transfer stamp and any
// clearing for an older unit change only the copy in memory, never the file.
int runWrite(const Arguments& args, Context& context)
{
    const Parsed parsed = parseTransferArguments(args);
    if (const auto usage = checkTransferArguments(parsed, context, "write", "FILE.dat"))
        return *usage;
    const auto db = loadImage(parsed.positional[0], context);
    if (!db)
        return 1;
    Workspace workspace;
    const auto line = UnitLine::choose(parsed, workspace.workingDirectory(), context);
    if (!line)
        return 2;
    workspace.image = *db;
    const bool written = runTransfer(*line, workspace, context, [](ProgrammingSession& session, Millis now) {
        return session.Send(TransferKind::Database, now);
    });
    return written ? 0 : 1;
}

} // namespace rk4::cli
