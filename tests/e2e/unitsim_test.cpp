// The link over a real pseudo-terminal to the rk4-unitsim program: real
// termios, real bytes, the real clock.

#include "core/link/link_session.h"
#include "core/link/serial_transport.h"
#include "tests/e2e/sim_process.h"

#include <gtest/gtest.h>

using namespace rk4;
using namespace rk4::link;

TEST(OverPty, VersionAndLinkRequestsAreAnswered)
{
    test::UnitSim sim({"--product", "RK4-TST", "--firmware", "3.01"});
    ASSERT_FALSE(sim.device.empty());
    SerialTransport port(sim.device);
    const OpenResult opened = port.open();
    ASSERT_TRUE(opened.ok) << opened.detail;
    LinkSession session(port);
    SteadyClock clock;
    const auto exchange = [&](std::uint8_t command) {
        session.start(command, 10000, false, clock.now());
        while (session.status() == ExchangeStatus::Pending) {
            const Millis now = clock.now();
            waitForBytes(port, session.nextPollAt(now) - now);
            session.poll(clock.now());
        }
        return session.status();
    };

    ASSERT_EQ(exchange(CMD_VERSION), ExchangeStatus::Good);
    EXPECT_EQ(session.product(), "RK4-TST");
    EXPECT_EQ(session.firmware(), "3.01");
    EXPECT_EQ(exchange(CMD_LINK), ExchangeStatus::Good);
    EXPECT_EQ(exchange(CMD_END), ExchangeStatus::Sent);
    EXPECT_EQ(sim.stop(), 0);
}
