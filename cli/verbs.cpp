#include "cli/verbs.h"

#include <CLI/CLI.hpp>

#include <map>
#include <ostream>

namespace rk4::cli {

VerbBody addInfoVerb(CLI::App&, Context&);
VerbBody addNewVerb(CLI::App&, Context&);
VerbBody addDirsVerb(CLI::App&, Context&);
VerbBody addWarningsVerb(CLI::App&, Context&);
VerbBody addSummaryVerb(CLI::App&, Context&);
VerbBody addPortsVerb(CLI::App&, Context&);
VerbBody addWav2voxVerb(CLI::App&, Context&);
VerbBody addVox2wavVerb(CLI::App&, Context&);
VerbBody addSpeakVerb(CLI::App&, Context&);
VerbBody addWriteVerb(CLI::App&, Context&);
VerbBody addReadVerb(CLI::App&, Context&);
VerbBody addVerifyVerb(CLI::App&, Context&);
VerbBody addWriteVocabVerb(CLI::App&, Context&);
VerbBody addWriteVoicesVerb(CLI::App&, Context&);
VerbBody addReadVoicesVerb(CLI::App&, Context&);
VerbBody addMsgVerb(CLI::App&, Context&);
VerbBody addExportVerb(CLI::App&, Context&);
VerbBody addImportVerb(CLI::App&, Context&);
VerbBody addDiffVerb(CLI::App&, Context&);
VerbBody addCheckBasicVerb(CLI::App&, Context&);
VerbBody addToBasicVerb(CLI::App&, Context&);
VerbBody addCellVerb(CLI::App&, Context&);

namespace {

// The verbs, in the order the overview lists them.
constexpr AddVerb kVerbs[] = {
    addInfoVerb,
    addNewVerb,
    addDirsVerb,
    addWarningsVerb,
    addSummaryVerb,
    addPortsVerb,
    addWav2voxVerb,
    addVox2wavVerb,
    addSpeakVerb,
    addWriteVerb,
    addReadVerb,
    addVerifyVerb,
    addExportVerb,
    addImportVerb,
    addDiffVerb,
    addWriteVocabVerb,
    addWriteVoicesVerb,
    addReadVoicesVerb,
    addMsgVerb,
    addCheckBasicVerb,
    addToBasicVerb,
    addCellVerb,
};

constexpr int kUsageError = 2;

} // namespace

int runCommandLine(const Arguments& args, Context& context)
{
    CLI::App rk4("The Rk4 programmer on the command line.", "rk4");
    // Only the long form: "-h" could be a file name, and saying so is clearer than guessing.
    rk4.set_help_flag("--help", "Print this help and exit");
    rk4.require_subcommand(1);
    rk4.get_formatter()->column_width(26);
    rk4.get_formatter()->label("SUBCOMMAND", "COMMAND");

    std::map<const CLI::App*, VerbBody> bodies;
    for (const AddVerb add : kVerbs) {
        VerbBody body = add(rk4, context);
        rk4.get_subcommands([](CLI::App*) { return true; }).back()->group("Commands");
        bodies.emplace(rk4.get_subcommands([](CLI::App*) { return true; }).back(), std::move(body));
    }
    rk4.footer("Every command takes --help."); // after the verbs, which would inherit it

    const auto verbName = [&]() -> std::string {
        const auto selected = rk4.get_subcommands();
        return selected.empty() ? std::string() : " " + selected.back()->get_name();
    };
    try {
        rk4.parse(Arguments(args.rbegin(), args.rend())); // CLI11 takes them last first
    } catch (const CLI::CallForHelp&) {
        context.out << rk4.help();
        return 0;
    } catch (const CLI::ParseError& error) {
        if (rk4.get_subcommands().empty() && !args.empty() && args[0].rfind('-', 0) != 0)
            context.err << "Unknown command: " << args[0] << "\n";
        else
            context.err << error.what() << "\n";
        if (args.empty())
            context.err << rk4.help();
        else
            context.err << "Try 'rk4" << verbName() << " --help'.\n";
        return kUsageError;
    }
    return bodies.at(rk4.get_subcommands().back())();
}

} // namespace rk4::cli
