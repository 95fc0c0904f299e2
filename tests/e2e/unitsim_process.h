#pragma once
// rk4-unitsim as a child process for one test; its device is the first line it prints.

#include <csignal>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

extern char** environ;

namespace rk4::test {

inline std::vector<char*> argvOf(std::vector<std::string>& args)
{
    std::vector<char*> argv;
    for (auto& arg : args)
        argv.push_back(arg.data());
    argv.push_back(nullptr);
    return argv;
}

class UnitSim {
  public:
    explicit UnitSim(std::vector<std::string> options)
    {
        int out[2];
        if (::pipe(out) != 0)
            return;
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, out[1], STDOUT_FILENO);
        posix_spawn_file_actions_addclose(&actions, out[0]);
        options.insert(options.begin(), {RK4_UNITSIM, "--quiet"});
        const auto argv = argvOf(options);
        if (::posix_spawn(&pid, RK4_UNITSIM, &actions, nullptr, argv.data(), environ) != 0)
            pid = -1;
        posix_spawn_file_actions_destroy(&actions);
        ::close(out[1]);
        char c;
        while (::read(out[0], &c, 1) == 1 && c != '\n')
            device += c;
        ::close(out[0]);
    }
    ~UnitSim()
    {
        if (pid > 0)
            stop();
    }
    UnitSim(const UnitSim&) = delete;
    UnitSim& operator=(const UnitSim&) = delete;

    // Stops it as an operator would and returns its exit status.
    int stop()
    {
        ::kill(pid, SIGTERM);
        int status = 0;
        ::waitpid(pid, &status, 0);
        pid = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    pid_t pid = -1;
    std::string device;
};

} // namespace rk4::test
