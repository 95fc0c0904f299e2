#include "cli/verbs.h"

#include <iostream>
#include <unistd.h>

int main(int argc, char** argv)
{
    rk4::cli::Arguments args(argv + 1, argv + argc);
    rk4::cli::Context context{std::cout, std::cerr, ::isatty(STDERR_FILENO) != 0};
    return rk4::cli::runCommandLine(args, context);
}
