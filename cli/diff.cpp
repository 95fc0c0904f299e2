#include "cli/transfer.h"

#include "core/database/compare.h"
#include "core/database/text_form.h"

#include <ostream>

namespace rk4::cli {

namespace {

// A .dat or a .yaml file, read the way export and import read them.
std::optional<Database> loadConfiguration(const std::string& path, Context& context)
{
    if (!isTextFormName(path))
        return loadImage(path, context);
    const ImportResult imported = readTextFormFile(path);
    if (!imported.db)
        context.err << path << ": " << textFormErrorText(imported.error) << "\n";
    return imported.db;
}

} // namespace

int runDiff(const Arguments& args, Context& context)
{
    const Parsed parsed = parseTransferArguments(args);
    const bool unit = parsed.option("--port").has_value();
    if (!parsed.flags.empty() || parsed.positional.size() != (unit ? 1u : 2u))
        return usageError(context, "diff", "expected two configurations, or one and --port");
    const std::string& first = parsed.positional[0];
    const auto expected = loadConfiguration(first, context);
    if (!expected)
        return 2;
    Workspace workspace;
    std::string second = "the unit";
    if (unit) {
        const auto read = receiveDatabase(parsed, workspace, context);
        if (!read || !*read)
            return 2;
    } else {
        second = parsed.positional[1];
        const auto loaded = loadConfiguration(second, context);
        if (!loaded)
            return 2;
        workspace.image = *loaded;
    }
    return reportDifferences(compareDatabases(*expected, workspace.image),
                             {first, second, "in " + first, "in " + second},
                             first + " and " + second + " hold the same configuration", context);
}

} // namespace rk4::cli
