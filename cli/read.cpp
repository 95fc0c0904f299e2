#include "cli/transfer.h"

#include "core/database/file.h"

#include <CLI/CLI.hpp>

#include <ostream>

namespace rk4::cli {

namespace {

int readDatabase(const FileTransfer& options, Context& context)
{
    const std::string& target = options.file;
    // Refused before the transfer, so a read is never lost to a bad name, a
    // target that cannot be written or a full disk.
    if (!CheckFileExt(std::filesystem::path(target).filename().string())) {
        printMessage(context.err, kMustHaveDatExtension, target);
        return 2;
    }
    SaveResult writable = checkSaveTarget(target);
    if (writable)
        writable = checkSaveRoom(target, dbasesize);
    if (!writable) {
        printMessage(context.err, kCannotOpenFile, fileAndCause(target, writable.cause()));
        return 2;
    }
    Workspace workspace;
    const auto read = receiveDatabase(options.line, workspace, context);
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

} // namespace

VerbBody addReadVerb(CLI::App& rk4, Context& context)
{
    CLI::App* verb = rk4.add_subcommand("read", "Read the unit's configuration into a file");
    const auto options = addFileTransferOptions(*verb, "OUT.dat", "The file to save it in (its name must have .dat)");
    return [options, &context] { return readDatabase(*options, context); };
}

} // namespace rk4::cli
