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

    const auto differences = compareDatabases(*expected, workspace.image);
    if (differences.empty()) {
        context.out << "The unit holds " << file << "\n";
        return 0;
    }
    context.out << differences.size() << (differences.size() == 1 ? " field differs" : " fields differ") << " between "
                << file << " and the unit:\n";
    for (const auto& difference : differences)
        context.out << "  " << differenceText(difference, "in the file", "in the unit") << "\n";
    return 1;
}

} // namespace rk4::cli
