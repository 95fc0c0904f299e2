#pragma once
// Runs the rk4 command in-process with captured output.

#include "cli/verbs.h"

#include <sstream>
#include <string>
#include <vector>

namespace rk4::test {

struct CommandResult {
    int code = 0;
    std::string out;
    std::string err;
};

inline CommandResult runRk4(std::vector<std::string> args)
{
    std::ostringstream out, err;
    cli::Context context{out, err};
    const int code = cli::runCommandLine(args, context);
    return {code, out.str(), err.str()};
}

} // namespace rk4::test
