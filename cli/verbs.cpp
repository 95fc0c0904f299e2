#include "cli/verbs.h"

#include <algorithm>
#include <ostream>

namespace rk4::cli {

namespace {

constexpr Verb kVerbs[] = {
    {"info", "FILE.dat", "mode, site name and what is in use", runInfo},
    {"new", "[--basic] FILE.dat", "write a default configuration", runNew},
    {"dirs", "FILE.dat", "list the lines of the six directories", runDirs},
    {"warnings", "FILE.dat", "list what is legal but likely wrong (exit 1 when any)", runWarnings},
    {"summary",
     "FILE.dat [--category hardware|inputs|outputs|points|groups|general|directories|warnings|all] [--pdf OUT.pdf]",
     "print the summary pages, a form feed between pages", runSummary},
    {"ports", "[--dir DIR] [COMn DEVICE]", "show the serial ports, or bind one to a device", runPorts},
    {"wav2vox", "IN.wav [OUT.vox]", "convert a recording to a phrase file", runWav2vox},
    {"vox2wav", "IN.vox OUT.wav", "decode a phrase file to an 8000 Hz wave", runVox2wav},
    {"write", "FILE.dat [--port PORT]", "write a configuration to the unit", runWrite},
    {"read", "OUT.dat [--port PORT]", "read the unit's configuration into a file", runRead},
    {"verify", "FILE.dat [--port PORT]", "read the unit back and name every field that differs", runVerify},
    {"export", "FILE.dat [OUT.yaml]", "write a configuration as readable text", runExport},
    {"import", "IN.yaml OUT.dat", "check a configuration's text and write its image", runImport},
    {"diff", "A B | A --port PORT", "name every field that differs (.dat, .yaml or the unit)", runDiff},
    {"write-vocab", "FILE.bin [--port PORT]", "write a vocabulary (erases the unit's voices)", runWriteVocab},
    {"write-voices", "FILE.msg [--port PORT]", "write the voice messages to the unit", runWriteVoices},
    {"read-voices", "OUT.msg [--port PORT]", "read the unit's voice messages into a file", runReadVoices},
    {"check-basic", "FILE.dat", "list what keeps a configuration from Basic mode", runCheckBasic},
    {"to-basic", "FILE.dat OUT.dat [--keep-directories]", "convert a configuration to Basic mode", runToBasic},
};

void printOverview(std::ostream& out)
{
    out << "Usage: rk4 COMMAND [ARGS...]\n\nCommands:\n";
    for (const Verb& verb : kVerbs) {
        std::string left = std::string(verb.name) + " " + verb.usage;
        out << "  " << left << std::string(left.size() < 34 ? 34 - left.size() : 1, ' ') << verb.summary << "\n";
    }
    out << "\nEvery command takes --help.\n";
}

} // namespace

std::span<const Verb> verbs() { return kVerbs; }

int runCommandLine(const Arguments& args, Context& context)
{
    if (args.empty() || args[0] == "--help" || args[0] == "-h" || args[0] == "help") {
        printOverview(args.empty() ? context.err : context.out);
        return args.empty() ? 2 : 0;
    }
    const auto found =
        std::find_if(std::begin(kVerbs), std::end(kVerbs), [&](const Verb& verb) { return args[0] == verb.name; });
    if (found == std::end(kVerbs)) {
        context.err << "rk4: unknown command '" << args[0] << "'\n";
        printOverview(context.err);
        return 2;
    }
    const Arguments rest(args.begin() + 1, args.end());
    if (std::find(rest.begin(), rest.end(), "--help") != rest.end()) {
        context.out << "Usage: rk4 " << found->name << " " << found->usage << "\n" << found->summary << "\n";
        return 0;
    }
    return found->run(rest, context);
}

} // namespace rk4::cli
