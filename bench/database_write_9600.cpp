// A database write to rk4-unitsim at the pace of a 9600-baud line,
// timed against the least it can take: every byte on the wire at 10 bits a
// byte, plus the pauses the session itself must make.
//
//     database_write_9600 [--runs N] [--unitsim PATH]
//
// rk4-unitsim is looked for beside this program's build tree by default.

#include "core/database/defaults.h"
#include "core/link/memory_transport.h"
#include "core/link/programming_session.h"
#include "core/link/serial_transport.h"
#include "core/link/session_driver.h"
#include "core/shell/workspace.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <signal.h>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

extern char** environ;

using namespace rk4;
using namespace rk4::link;

namespace {

constexpr double kBaud = 9600;
constexpr double kBitsPerByte = 10; // start, 8 data, stop

// Counts every byte the tool puts on the line and takes off it.
class CountingTransport final : public Transport {
  public:
    explicit CountingTransport(Transport& inner) : inner(inner) {}

    OpenResult open() override { return inner.open(); }
    bool isOpen() const override { return inner.isOpen(); }
    void close() override { inner.close(); }
    bool write(std::span<const std::uint8_t> bytes) override
    {
        sent += bytes.size();
        return inner.write(bytes);
    }
    bool allSent() override { return inner.allSent(); }
    std::size_t read(std::span<std::uint8_t> buffer) override
    {
        const std::size_t count = inner.read(buffer);
        received += count;
        return count;
    }
    void purge(Purge side) override { inner.purge(side); }
    LinkTiming timing() const override { return inner.timing(); }
    int readableDescriptor() const override { return inner.readableDescriptor(); }

    std::size_t sent = 0;
    std::size_t received = 0;

  private:
    Transport& inner;
};

class NoPrompter final : public Prompter {
  public:
    Answer ask(const Message& message) override { return message.buttons == Buttons::Ok ? Answer::Ok : Answer::No; }
    std::optional<std::string> chooseFile(const FileRequest&) override { return std::nullopt; }
};

struct Simulator {
    pid_t pid = -1;
    std::string device;
};

Simulator startSimulator(const std::string& program)
{
    Simulator sim;
    int out[2];
    if (::pipe(out) != 0)
        return sim;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, out[1], STDOUT_FILENO);
    posix_spawn_file_actions_addclose(&actions, out[0]);
    std::vector<std::string> args{program, "--pace", "--quiet"};
    std::vector<char*> argv;
    for (auto& arg : args)
        argv.push_back(arg.data());
    argv.push_back(nullptr);
    if (::posix_spawn(&sim.pid, program.c_str(), &actions, nullptr, argv.data(), environ) != 0)
        sim.pid = -1;
    posix_spawn_file_actions_destroy(&actions);
    ::close(out[1]);
    char c;
    while (::read(out[0], &c, 1) == 1 && c != '\n')
        sim.device += c;
    ::close(out[0]);
    return sim;
}

std::string besideBuildTree()
{
    char self[4096];
    const ssize_t length = ::readlink("/proc/self/exe", self, sizeof self - 1);
    if (length <= 0)
        return "rk4-unitsim";
    std::string path(self, static_cast<std::size_t>(length));
    path = path.substr(0, path.rfind('/')); // bench/
    path = path.substr(0, path.rfind('/')); // the build tree
    return path + "/sim/unitsim/rk4-unitsim";
}

struct Measured {
    bool succeeded = false;
    double millis = 0;
    std::size_t sent = 0;
    std::size_t received = 0;
    int goodReplies = 0;
};

// One write on a freshly opened port, so the 2000 ms wait is part of it.
Measured writeOnce(const std::string& device, Workspace& workspace)
{
    SteadyClock clock;
    SerialTransport serial(device);
    // A pseudo-terminal takes every byte at once; a serial port's transmitter
    // sends one per character time and only then reports them sent.
    PacedTransport transmitter(serial, clock, static_cast<unsigned>(kBaud));
    CountingTransport line(transmitter);
    NoPrompter prompter;
    ProgrammingSession session(workspace, line, prompter);
    Measured measured;
    const Millis started = clock.now();
    if (!session.Send(TransferKind::Database, started))
        return measured;
    while (session.running()) {
        session.poll(clock.now());
        if (session.running())
            sleepUntil(line, clock, session.nextPollAt(clock.now()));
    }
    measured.millis = static_cast<double>(clock.now() - started);
    // The replies the session moved on from: the version, the announce and each packet.
    measured.goodReplies = (session.view().version.empty() ? 0 : 1) + 1 + session.view().packetsDone;
    measured.succeeded = session.outcome() == SessionOutcome::Succeeded;
    measured.sent = line.sent;
    measured.received = line.received;
    return measured;
}

} // namespace

int main(int argc, char** argv)
{
    int runs = 3;
    std::string unitsim = besideBuildTree();
    for (int i = 1; i < argc; ++i) {
        const std::string option = argv[i];
        if (option == "--runs" && i + 1 < argc)
            runs = std::max(1, std::atoi(argv[++i]));
        else if (option == "--unitsim" && i + 1 < argc)
            unitsim = argv[++i];
        else {
            std::cerr << "usage: database_write_9600 [--runs N] [--unitsim PATH]\n";
            return 2;
        }
    }

    const Simulator sim = startSimulator(unitsim);
    if (sim.pid <= 0 || sim.device.empty()) {
        std::cerr << "cannot start " << unitsim << "\n";
        return 1;
    }

    Workspace workspace;
    DefaultValues(workspace.image);
    std::vector<double> times;
    int status = 0;
    for (int run = 0; run < runs; ++run) {
        const Measured measured = writeOnce(sim.device, workspace);
        if (!measured.succeeded) {
            std::cerr << "run " << run + 1 << ": the write failed\n";
            status = 1;
            break;
        }
        const int goodReplies = measured.goodReplies;
        const std::size_t bytes = measured.sent + measured.received;
        const double wire = static_cast<double>(bytes) * kBitsPerByte / kBaud * 1000.0;
        const double waits = kFreshPortWait + goodReplies * kAfterReply + kAfterReply /* completion */ + kEndWait;
        const double bound = wire + waits;
        std::printf("run %d: %zu bytes on the wire (%zu to the unit, %zu from it) = %.1f ms at 9600 baud\n", run + 1,
                    bytes, measured.sent, measured.received, wire);
        std::printf("       waits %.0f ms (2000 fresh port + %d x 50 after good replies + 50 completion + 1000 "
                    "after CMD_END)\n",
                    waits, goodReplies);
        std::printf("       bound %.1f ms, measured %.1f ms, %+.2f %%\n", bound, measured.millis,
                    (measured.millis - bound) / bound * 100.0);
        times.push_back(measured.millis / bound);
    }
    if (!times.empty()) {
        std::sort(times.begin(), times.end());
        std::printf("median over %zu runs: %+.2f %% against the bound\n", times.size(),
                    (times[times.size() / 2] - 1.0) * 100.0);
    }

    ::kill(sim.pid, SIGTERM);
    ::waitpid(sim.pid, nullptr, 0);
    return status;
}
