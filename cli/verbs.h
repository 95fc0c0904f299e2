#pragma once
// The command-line verbs, parsed by CLI11: one verb a file, all listed once in
// the table in verbs.cpp.
//
// To add a verb, write cli/<verb>.cpp with
//
//     VerbBody addFrobVerb(CLI::App& rk4, Context& context)
//     {
//         CLI::App* verb = rk4.add_subcommand("frob", "one line for the overview");
//         auto file = std::make_shared<std::string>();
//         verb->add_option("FILE.dat", *file, "what the file is for")->required();
//         return [file, &context] { return frob(*file, context); };
//     }
//
// and add one line, `addFrobVerb,`, to the table in verbs.cpp. Declare every
// option with its help text: --help is generated from them, and what does not
// parse is a usage error with exit status 2 before the body runs. Bodies
// return 0 for success, 1 for a negative answer (differences, a failed
// transfer), 2 for unreadable input. Transfer verbs take --port and the
// simulated unit's options through addTransferOptions (cli/transfer.h).

#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace rk4::cli {

struct Context {
    std::ostream& out;
    std::ostream& err;
    bool interactiveTerminal = false; // progress bars only on a terminal
};

using Arguments = std::vector<std::string>;

// What a verb does once its arguments are parsed; returns the exit status.
using VerbBody = std::function<int()>;
using AddVerb = VerbBody (*)(CLI::App& rk4, Context& context);

// Runs `rk4 ARGS...`; returns the process exit status.
int runCommandLine(const Arguments& args, Context& context);

} // namespace rk4::cli
