#include "cli/support.h"

#include "core/database/file.h"
#include "core/database/text_form.h"

#include <CLI/CLI.hpp>

#include <memory>
#include <ostream>

namespace rk4::cli {

namespace {

struct ImportOptions {
    std::string source;
    std::string target;
};

// The whole text is checked before anything is written, so a refused value
// leaves OUT.dat exactly as it was.
int importText(const ImportOptions& options, Context& context)
{
    const ImportResult imported = readTextFormFile(options.source);
    if (!imported.db) {
        context.err << options.source << ": " << textFormErrorText(imported.error) << "\n"; // as a compiler names a place
        return 2;
    }
    const FileOutcome saved = writeImageFile(options.target, *imported.db);
    if (!saved) {
        printFileError(context, saved, options.target);
        return 1;
    }
    return 0;
}

} // namespace

VerbBody addImportVerb(CLI::App& rk4, Context& context)
{
    CLI::App* verb = rk4.add_subcommand("import", "Check a configuration's text and write its image");
    auto options = std::make_shared<ImportOptions>();
    verb->add_option("IN.yaml", options->source, "The text form")->required();
    verb->add_option("OUT.dat", options->target, "The configuration file to write")->required();
    return [options, &context] { return importText(*options, context); };
}

} // namespace rk4::cli
