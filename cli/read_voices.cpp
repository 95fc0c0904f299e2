#include "cli/transfer.h"

#include <CLI/CLI.hpp>

#include <ostream>

namespace rk4::cli {

using link::ProgrammingSession;
using link::TransferKind;

namespace {

// The voices stream into a private staging file beside the named file, which
// takes the place of the window's save dialog and is replaced only when the
// whole store has arrived.
int readVoices(const FileTransfer& options, Context& context)
{
    const std::filesystem::path target = std::filesystem::absolute(options.file);
    Workspace workspace;
    const auto line = UnitLine::choose(options.line, workspace.workingDirectory(), context);
    if (!line)
        return 2;
    const bool read = runTransfer(*line, workspace, context, [&](ProgrammingSession& session, Millis now) {
        return session.Receive(TransferKind::Voices, now, target);
    });
    if (!read)
        return 1;
    context.out << "Saved " << options.file << " (" << std::filesystem::file_size(target) << " bytes)\n";
    return 0;
}

} // namespace

VerbBody addReadVoicesVerb(CLI::App& rk4, Context& context)
{
    CLI::App* verb = rk4.add_subcommand("read-voices", "Read the unit's voice messages into a file");
    const auto options = addFileTransferOptions(*verb, "OUT.msg", "The file to save them in");
    return [options, &context] { return readVoices(*options, context); };
}

} // namespace rk4::cli
