#include "cli/support.h"

#include "core/database/defaults.h"
#include "core/database/file.h"

#include <CLI/CLI.hpp>

#include <memory>
#include <ostream>

namespace rk4::cli {

namespace {

struct NewOptions {
    std::string file;
    bool basic = false;
};

int newImage(const NewOptions& options, Context& context)
{
    Database db;
    db.gen.basicMode = options.basic ? 1 : 0;
    ClearDatabase(db, false);
    const FileOutcome status = writeImageFile(options.file, db);
    if (!status) {
        printFileError(context, status, options.file);
        return 1;
    }
    context.out << "Wrote " << (db.gen.basicMode ? "Basic" : "Advanced") << " defaults to " << options.file << "\n";
    return 0;
}

} // namespace

VerbBody addNewVerb(CLI::App& rk4, Context& context)
{
    CLI::App* verb = rk4.add_subcommand("new", "Write a default configuration");
    auto options = std::make_shared<NewOptions>();
    verb->add_option("FILE.dat", options->file, "The file to write (its name must have .dat)")->required();
    verb->add_flag("--basic", options->basic, "Basic mode defaults (Advanced without it)");
    return [options, &context] { return newImage(*options, context); };
}

} // namespace rk4::cli
