// The link over a real pseudo-terminal to the rk4-unitsim program: real
// termios, real bytes, the real clock.

#include "core/database/database.h"
#include "core/database/defaults.h"
#include "core/database/file.h"
#include "core/link/link_session.h"
#include "core/link/serial_transport.h"
#include "core/link/wire_image.h"
#include "tests/support/temp_dir.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

using namespace rk4;
using namespace rk4::link;

namespace {

// rk4-unitsim running for one test, its device path read from its first line.
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
        std::vector<char*> argv;
        for (auto& option : options)
            argv.push_back(option.data());
        argv.push_back(nullptr);
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

struct OverPty : ::testing::Test {
    SteadyClock clock;
    SerialTransport port;
    std::unique_ptr<LinkSession> session;

    void connect(const UnitSim& sim)
    {
        ASSERT_FALSE(sim.device.empty());
        port.setPath(sim.device);
        const OpenResult opened = port.open();
        ASSERT_TRUE(opened.ok) << opened.detail;
        session = std::make_unique<LinkSession>(port);
    }

    ExchangeStatus exchange(std::uint8_t command, int number = 10000, bool withData = false)
    {
        session->start(command, number, withData, clock.now());
        while (session->status() == ExchangeStatus::Pending) {
            const Millis now = clock.now();
            waitForBytes(port, session->nextPollAt(now) - now);
            session->poll(clock.now());
        }
        return session->status();
    }
};

} // namespace

TEST_F(OverPty, VersionAndLinkRequestsAreAnswered)
{
    UnitSim sim({"--product", "RK4-TST", "--firmware", "3.01"});
    connect(sim);
    ASSERT_EQ(exchange(CMD_VERSION), ExchangeStatus::Good);
    EXPECT_EQ(session->product(), "RK4-TST");
    EXPECT_EQ(session->firmware(), "3.01");
    EXPECT_EQ(exchange(CMD_LINK), ExchangeStatus::Good);
    EXPECT_EQ(exchange(CMD_END), ExchangeStatus::Sent);
    EXPECT_EQ(sim.stop(), 0);
}

TEST_F(OverPty, AWrittenDatabaseIsKeptInTheNamedFile)
{
    test::TempDir dir;
    const auto kept = dir / "unit.dat";
    UnitSim sim({"--database", kept.string()});
    connect(sim);

    Database image;
    DefaultValues(image);
    image.alm[0].highSetpoint = 0x0102;
    const ImageBytes bytes = image.toBytes();
    std::copy(bytes.begin(), bytes.end(), session->staging.begin());
    swapWireFields(std::span(session->staging).first(dbasesize));

    ASSERT_EQ(exchange(CMD_LINK), ExchangeStatus::Good);
    ASSERT_EQ(exchange(CMD_WRITE_DATABASE), ExchangeStatus::Good);
    ASSERT_EQ(exchange(CMD_PACKET, 0, true), ExchangeStatus::Good);
    ASSERT_EQ(exchange(CMD_PACKET, 1, true), ExchangeStatus::Good);
    exchange(CMD_END);
    // The unit writes its file after the end of the session; give it a moment.
    Database stored;
    for (int tries = 0; tries < 200 && readImageFile(kept, stored) != FileStatus::Ok; ++tries)
        ::usleep(10'000);
    EXPECT_EQ(stored, image);
}
