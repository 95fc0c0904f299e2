#include "cli/support.h"

#include "core/report/warnings.h"

#include <ostream>

namespace rk4::cli {

int runWarnings(const Arguments& args, Context& context)
{
    const Parsed parsed = parseArguments(args);
    if (parsed.positional.size() != 1 || !parsed.flags.empty())
        return usageError(context, "warnings", "expected one FILE.dat");
    const auto db = loadImage(parsed.positional[0], context);
    if (!db)
        return 2;
    const std::vector<std::string> warnings = ConfigurationWarnings(*db);
    for (const std::string& line : warningLines(warnings))
        context.out << line << "\n";
    return warnings.empty() ? 0 : 1;
}

} // namespace rk4::cli
