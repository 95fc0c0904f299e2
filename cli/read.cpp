#include "cli/transfer.h"

#include "core/database/file.h"

#include <ostream>

namespace rk4::cli {

using link::ProgrammingSession;
using link::TransferKind;

int runRead(const Arguments& args, Context& context)
{
    const Parsed parsed = parseTransferArguments(args);
    if (const auto usage = checkTransferArguments(parsed, context, "read", "OUT.dat"))
        return *usage;
    const std::string& target = parsed.positional[0];
    // Refused before the transfer, so a read is never lost to a bad name.
    if (!CheckFileExt(std::filesystem::path(target).filename().string())) {
        context.err << "File Error:" << kMustHaveDatExtension << "(" << target << ")\n";
        return 1;
    }
    Workspace workspace;
    const auto line = UnitLine::choose(parsed, workspace.workingDirectory(), context);
    if (!line)
        return 2;
    const bool read = runTransfer(*line, workspace, context, [](ProgrammingSession& session, Millis now) {
        return session.Receive(TransferKind::Database, now);
    });
    if (!read)
        return 1;
    const FileStatus saved = writeImageFile(target, workspace.image);
    if (saved != FileStatus::Ok) {
        context.err << "File Error:" << fileStatusText(saved) << "(" << target << ")\n";
        return 1;
    }
    context.out << "Saved " << target << " (" << (workspace.basicMode() ? "Basic" : "Advanced") << " mode)\n";
    return 0;
}

} // namespace rk4::cli
