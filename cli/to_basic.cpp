#include "cli/support.h"

#include "core/basic/simple_warning.h"
#include "core/database/file.h"

#include <CLI/CLI.hpp>

#include <memory>
#include <ostream>

namespace rk4::cli {

namespace {

struct ToBasicOptions {
    std::string source;
    std::string target;
    bool keepDirectories = false;
};

int toBasic(const ToBasicOptions& options, Context& context)
{
    auto db = loadImage(options.source, context);
    if (!db)
        return 2;
    if (options.keepDirectories)
        Change2Simple2(*db);
    else
        Change2Simple(*db);
    const FileOutcome status = writeImageFile(options.target, *db);
    if (!status) {
        printFileError(context, status, options.target);
        return 1;
    }
    context.out << "Wrote a Basic configuration" << (options.keepDirectories ? " with the directories kept" : "")
                << " to " << options.target << "\n";
    return 0;
}

} // namespace

VerbBody addToBasicVerb(CLI::App& rk4, Context& context)
{
    CLI::App* verb = rk4.add_subcommand("to-basic", "Convert a configuration to Basic mode");
    auto options = std::make_shared<ToBasicOptions>();
    verb->add_option("FILE.dat", options->source, "The configuration")->required();
    verb->add_option("OUT.dat", options->target, "The Basic configuration to write")->required();
    verb->add_flag("--keep-directories", options->keepDirectories, "Keep the directories as they are");
    return [options, &context] { return toBasic(*options, context); };
}

} // namespace rk4::cli
