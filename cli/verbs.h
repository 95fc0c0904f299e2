#pragma once
// The command-line verbs. Each lives in its own file; all are listed once, in
// the table in verbs.cpp.

#include <iosfwd>
#include <span>
#include <string>
#include <vector>

namespace rk4::cli {

struct Context {
    std::ostream& out;
    std::ostream& err;
    bool interactiveTerminal = false; // progress bars only on a terminal
};

using Arguments = std::vector<std::string>;

struct Verb {
    const char* name;
    const char* usage;   // arguments after the verb
    const char* summary; // one line for the overview
    int (*run)(const Arguments& args, Context& context);
};

std::span<const Verb> verbs();

// Runs `rk4 ARGS...`; returns the process exit code.
int runCommandLine(const Arguments& args, Context& context);

// Verb implementations.
int runInfo(const Arguments& args, Context& context);
int runNew(const Arguments& args, Context& context);
int runDirs(const Arguments& args, Context& context);
int runWarnings(const Arguments& args, Context& context);
int runSummary(const Arguments& args, Context& context);
int runPorts(const Arguments& args, Context& context);
int runWav2vox(const Arguments& args, Context& context);
int runVox2wav(const Arguments& args, Context& context);
int runWrite(const Arguments& args, Context& context);
int runRead(const Arguments& args, Context& context);
int runVerify(const Arguments& args, Context& context);
int runExport(const Arguments& args, Context& context);
int runImport(const Arguments& args, Context& context);
int runDiff(const Arguments& args, Context& context);
int runWriteVocab(const Arguments& args, Context& context);
int runWriteVoices(const Arguments& args, Context& context);
int runReadVoices(const Arguments& args, Context& context);
int runCheckBasic(const Arguments& args, Context& context);
int runToBasic(const Arguments& args, Context& context);

} // namespace rk4::cli
