#pragma once
// The built rk4 program run as a technician runs it, in a directory of the
// test's, with its exit code and what it printed.

#include "tests/e2e/sim_process.h"

#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <spawn.h>
#include <sstream>
#include <string>
#include <sys/wait.h>
#include <vector>

namespace rk4::test {

inline std::string contents(const std::filesystem::path& file)
{
    std::ifstream in(file, std::ios::binary);
    std::ostringstream all;
    all << in.rdbuf();
    return all.str();
}

struct ProgramRun {
    int code = -1;
    std::string out;
    std::string err;
};

// Starts the built rk4 program in `directory` with its output in files; -1
// when it could not be started.
inline pid_t startProgram(const std::filesystem::path& directory, std::vector<std::string> args)
{
    const auto outFile = directory / "rk4.out", errFile = directory / "rk4.err";
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, outFile.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, errFile.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    args.insert(args.begin(), RK4_PROGRAM);
    const auto argv = argvOf(args);
    pid_t pid = -1;
    // The program finds rk4.cfg in its working directory.
    const auto previous = std::filesystem::current_path();
    std::filesystem::current_path(directory);
    const int spawned = ::posix_spawn(&pid, RK4_PROGRAM, &actions, nullptr, argv.data(), environ);
    std::filesystem::current_path(previous);
    posix_spawn_file_actions_destroy(&actions);
    return spawned == 0 ? pid : -1;
}

// Runs the built rk4 program in `directory` to its end.
inline ProgramRun runProgram(const std::filesystem::path& directory, std::vector<std::string> args)
{
    ProgramRun run;
    const pid_t pid = startProgram(directory, std::move(args));
    if (pid < 0)
        return run;
    int status = 0;
    ::waitpid(pid, &status, 0);
    run.code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    run.out = contents(directory / "rk4.out");
    run.err = contents(directory / "rk4.err");
    return run;
}

} // namespace rk4::test
