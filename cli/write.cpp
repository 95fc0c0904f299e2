#include "cli/transfer.h"

#include <CLI/CLI.hpp>

#include <ostream>

namespace rk4::cli {

using link::ProgrammingSession;
using link::TransferKind;

namespace {

// A warning before the write stops the command under --strict.
constexpr int kStoppedByWarning = 3;

struct WriteOptions {
    std::shared_ptr<FileTransfer> transfer;
    bool strict = false;
};

// The image goes to the unit as the file holds it; the transfer stamp and any
// clearing for an older unit change only the copy in memory, never the file.
int writeDatabase(const WriteOptions& options, Context& context)
{
    const auto db = loadImage(options.transfer->file, context);
    if (!db)
        return 2;
    // Without --strict the session prints the same warning and goes on.
    if (options.strict && link::MissingAccessCode(db->gen)) {
        printMessage(context.err, link::kMissingAccessCodeText, "--strict: nothing was sent");
        return kStoppedByWarning;
    }
    Workspace workspace;
    const auto line = UnitLine::choose(options.transfer->line, workspace.workingDirectory(), context);
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
    auto options = std::make_shared<WriteOptions>();
    options->transfer = addFileTransferOptions(*verb, "FILE.dat", "The configuration to send");
    verb->add_flag("--strict", options->strict,
                   "Stop before sending when the configuration draws a warning (exit status 3)");
    return [options, &context] { return writeDatabase(*options, context); };
}

} // namespace rk4::cli
