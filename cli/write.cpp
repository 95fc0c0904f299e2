#include "cli/transfer.h"

#include <CLI/CLI.hpp>

#include <ostream>

namespace rk4::cli {

using link::ProgrammingSession;
using link::TransferKind;

namespace {

// The image goes to the unit as the file holds it; the transfer stamp and any
// clearing for an older unit change only the copy in memory, never the file.
int writeDatabase(const FileTransfer& options, Context& context)
{
    const auto db = loadImage(options.file, context);
    if (!db)
        return 2;
    Workspace workspace;
    const auto line = UnitLine::choose(options.line, workspace.workingDirectory(), context);
    if (!line)
        return 2;
    workspace.image = *db;
    const bool written = runTransfer(*line, workspace, context, [](ProgrammingSession& session, Millis now) {
        return session.Send(TransferKind::Database, now);
    });
    return written ? 0 : 1;
}

} // namespace

VerbBody addWriteVerb(CLI::App& rk4, Context& context)
{
    CLI::App* verb = rk4.add_subcommand("write", "Write a configuration to the unit");
    const auto options = addFileTransferOptions(*verb, "FILE.dat", "The configuration to send");
    return [options, &context] { return writeDatabase(*options, context); };
}

} // namespace rk4::cli
