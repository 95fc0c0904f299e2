#include "cli/support.h"

#include "core/database/text_form.h"

#include <CLI/CLI.hpp>

#include <memory>
#include <ostream>

namespace rk4::cli {

namespace {

struct ExportOptions {
    std::string source;
    std::string target; // empty: the text goes to standard output
};

int exportConfiguration(const ExportOptions& options, Context& context)
{
    const auto db = loadImage(options.source, context);
    if (!db)
        return 2;
    if (options.target.empty()) {
        context.out << exportText(*db);
        return 0;
    }
    const SaveResult saved = writeTextFormFile(options.target, *db);
    if (!saved) {
        printMessage(context.err, "File Error: CANNOT WRITE FILE", fileAndCause(options.target, saved.cause()));
        return 1;
    }
    return 0;
}

} // namespace

VerbBody addExportVerb(CLI::App& rk4, Context& context)
{
    CLI::App* verb = rk4.add_subcommand("export", "Write a configuration as readable text");
    auto options = std::make_shared<ExportOptions>();
    verb->add_option("FILE.dat", options->source, "The configuration")->required();
    verb->add_option("OUT.yaml", options->target, "The text file to write (default: standard output)")
        ->check([](const std::string& name) {
            return isTextFormName(name) ? std::string() : "the text form is written to a .yaml file: " + name;
        });
    return [options, &context] { return exportConfiguration(*options, context); };
}

} // namespace rk4::cli
