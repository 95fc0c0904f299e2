#include "cli/transfer.h"

#include "core/database/compare.h"
#include "core/database/text_form.h"

#include <CLI/CLI.hpp>

#include <memory>
#include <ostream>

namespace rk4::cli {

namespace {

struct DiffOptions {
    std::string first;
    std::string second; // empty with --port
    TransferOptions line;
};

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

int diff(const DiffOptions& options, Context& context)
{
    const bool unit = options.line.port.has_value();
    if (options.second.empty() == !unit) {
        printMessage(context.err, "rk4 diff: expected two configurations, or one and --port",
                     "Try 'rk4 diff --help'.");
        return 2;
    }
    const std::string& first = options.first;
    const auto expected = loadConfiguration(first, context);
    if (!expected)
        return 2;
    Workspace workspace;
    std::string second = "the unit";
    if (unit) {
        const auto read = receiveDatabase(options.line, workspace, context);
        if (!read || !*read)
            return 2;
    } else {
        second = options.second;
        const auto loaded = loadConfiguration(second, context);
        if (!loaded)
            return 2;
        workspace.image = *loaded;
    }
    return reportDifferences(compareDatabases(*expected, workspace.image),
                             {first, second, "in " + first, "in " + second},
                             first + " and " + second + " hold the same configuration", context);
}

} // namespace

VerbBody addDiffVerb(CLI::App& rk4, Context& context)
{
    CLI::App* verb = rk4.add_subcommand("diff", "Name every field that differs (.dat, .yaml or the unit)");
    auto options = std::make_shared<DiffOptions>();
    verb->add_option("A", options->first, "A configuration (.dat or .yaml)")->required();
    verb->add_option("B", options->second, "The other configuration; leave it out with --port to compare with the unit");
    addTransferOptions(*verb, options->line);
    verb->footer("Exit status: 0 the same, 1 some field differs, 2 no comparison could be made.\n\n" +
                 verb->get_footer());
    return [options, &context] { return diff(*options, context); };
}

} // namespace rk4::cli
