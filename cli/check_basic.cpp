#include "cli/support.h"

#include "core/basic/simple_warning.h"
#include "core/database/defaults.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <memory>
#include <ostream>

namespace rk4::cli {

namespace {

int checkBasic(const std::string& file, Context& context)
{
    auto db = loadImage(file, context);
    if (!db)
        return 2;
    // Checked as the window would see it after Open.
    if (!db->gen.basicMode)
        DefaultValues(*db);

    const SimpleWarning warning(*db, true);
    char mask[16];
    std::snprintf(mask, sizeof mask, "0x%X", static_cast<unsigned>(warning.check().problems));
    context.out << mask << "\n";
    if (warning.check().problems == 0)
        return 0;
    for (const auto& item : warning.items())
        context.out << item.text << "\n";
    return 1;
}

} // namespace

VerbBody addCheckBasicVerb(CLI::App& rk4, Context& context)
{
    CLI::App* verb = rk4.add_subcommand("check-basic", "List what keeps a configuration from Basic mode");
    auto file = std::make_shared<std::string>();
    verb->add_option("FILE.dat", *file, "The configuration")->required();
    verb->footer("Exit status: 0 it fits Basic mode, 1 something keeps it from Basic mode, 2 unreadable.");
    return [file, &context] { return checkBasic(*file, context); };
}

} // namespace rk4::cli
