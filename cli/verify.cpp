#include "cli/transfer.h"

#include "core/database/compare.h"

#include <CLI/CLI.hpp>

#include <ostream>

namespace rk4::cli {

namespace {

// Exit codes as diff has them: 0 the unit holds the file, 1 it differs, 2 no
// comparison could be made.
int verify(const FileTransfer& options, Context& context)
{
    const std::string& file = options.file;
    const auto expected = loadImage(file, context);
    if (!expected)
        return 2;
    Workspace workspace;
    const auto read = receiveDatabase(options.line, workspace, context);
    if (!read || !*read)
        return 2;

    return reportDifferences(compareDatabases(*expected, workspace.image),
                             {file, "the unit", "in the file", "in the unit"}, "The unit holds " + file, context);
}

} // namespace

VerbBody addVerifyVerb(CLI::App& rk4, Context& context)
{
    CLI::App* verb = rk4.add_subcommand("verify", "Read the unit back and name every field that differs");
    const auto options = addFileTransferOptions(*verb, "FILE.dat", "The configuration the unit should hold");
    verb->footer("Exit status: 0 the unit holds the file, 1 some field differs, 2 no comparison could be made\n"
                 "(bad arguments, an unreadable file, a failed read).\n\n" +
                 verb->get_footer());
    return [options, &context] { return verify(*options, context); };
}

} // namespace rk4::cli
