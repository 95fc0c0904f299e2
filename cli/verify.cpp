#include "cli/transfer.h"

#include "core/database/compare.h"

#include <ostream>

namespace rk4::cli {

// Exit codes as diff has them: 0 the unit holds the file, 1 it differs, 2 no
// comparison could be made.
int runVerify(const Arguments& args, Context& context)
{
    const Parsed parsed = parseTransferArguments(args);
    if (const auto usage = checkTransferArguments(parsed, context, "verify", "FILE.dat"))
        return *usage;
    const std::string& file = parsed.positional[0];
    const auto expected = loadImage(file, context);
    if (!expected)
        return 2;
    Workspace workspace;
    const auto read = receiveDatabase(parsed, workspace, context);
    if (!read || !*read)
        return 2;

    return reportDifferences(compareDatabases(*expected, workspace.image),
                             {file, "the unit", "in the file", "in the unit"}, "The unit holds " + file, context);
}

} // namespace rk4::cli
