#pragma once
// A simulated peer (rk4-unitsim, rk4-cellsim, rk4-modemsim) as a child process for one
// test; its device is the first line it prints.

#include <csignal>
#include <fcntl.h>
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

class SimProcess {
  public:
    // With a log file the peer's log goes there; without, it is quiet.
    SimProcess(const char* program, std::vector<std::string> options, const std::string& logFile = {})
    {
        int out[2];
        if (::pipe(out) != 0)
            return;
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, out[1], STDOUT_FILENO);
        posix_spawn_file_actions_addclose(&actions, out[0]);
        if (logFile.empty())
            options.insert(options.begin(), "--quiet");
        else
            posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, logFile.c_str(), O_WRONLY | O_CREAT | O_TRUNC,
                                             0644);
        options.insert(options.begin(), program);
        const auto argv = argvOf(options);
        if (::posix_spawn(&pid, program, &actions, nullptr, argv.data(), environ) != 0)
            pid = -1;
        posix_spawn_file_actions_destroy(&actions);
        ::close(out[1]);
        char c;
        while (::read(out[0], &c, 1) == 1 && c != '\n')
            device += c;
        ::close(out[0]);
    }
    ~SimProcess()
    {
        if (pid > 0)
            stop();
    }
    SimProcess(const SimProcess&) = delete;
    SimProcess& operator=(const SimProcess&) = delete;

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

#ifdef RK4_UNITSIM
class UnitSim : public SimProcess {
  public:
    explicit UnitSim(std::vector<std::string> options) : SimProcess(RK4_UNITSIM, std::move(options)) {}
};
#endif

} // namespace rk4::test
