#include "cli/transfer.h"

#include "core/database/file.h"

#include <ostream>

namespace rk4::cli {

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
    const auto read = receiveDatabase(parsed, workspace, context);
    if (!read)
        return 2;
    if (!*read)
        return 1;
    const FileOutcome saved = writeImageFile(target, workspace.image);
    if (!saved) {
        printFileError(context, saved, target);
        return 1;
    }
    context.out << "Saved " << target << " (" << (workspace.basicMode() ? "Basic" : "Advanced") << " mode)\n";
    return 0;
}

} // namespace rk4::cli
