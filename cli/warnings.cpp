#include "cli/support.h"

#include "core/report/warnings.h"

#include <CLI/CLI.hpp>

#include <memory>
#include <ostream>

namespace rk4::cli {

namespace {

int warnings(const std::string& file, Context& context)
{
    const auto db = loadImage(file, context);
    if (!db)
        return 2;
    const std::vector<std::string> warnings = ConfigurationWarnings(*db);
    for (const std::string& line : warningLines(warnings))
        context.out << line << "\n";
    return warnings.empty() ? 0 : 1;
}

} // namespace

VerbBody addWarningsVerb(CLI::App& rk4, Context& context)
{
    CLI::App* verb = rk4.add_subcommand("warnings", "List what is legal but likely wrong (exit 1 when any)");
    auto file = std::make_shared<std::string>();
    verb->add_option("FILE.dat", *file, "The configuration file")->required();
    return [file, &context] { return warnings(*file, context); };
}

} // namespace rk4::cli
