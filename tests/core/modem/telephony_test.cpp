#include "core/link/memory_transport.h"
#include "core/modem/line_errors.h"
#include "core/modem/simulated_modem.h"
#include "core/modem/telephony.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace rk4;
using namespace rk4::modem;

namespace {

std::span<const std::uint8_t> bytesOf(const std::string& text)
{
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

std::string readAll(link::Transport& end)
{
    std::string text;
    std::uint8_t chunk[256];
    for (std::size_t count; (count = end.read(chunk)) > 0;)
        text.append(reinterpret_cast<const char*>(chunk), count);
    return text;
}

// The line against a modem played by the test, line by line.
class TelephonyTest : public ::testing::Test {
  protected:
    ManualClock clock{1000};
    link::MemoryLink wire;
    Telephony line{wire.tool(), "ATE0V1"};
    std::vector<CallState> states;
    std::string sent; // everything the line sent the modem

    void SetUp() override
    {
        line.onCallState = [this](CallState state, const std::string&) { states.push_back(state); };
    }
    void modemSays(const std::string& text) { wire.unit().write(bytesOf(text)); }
    void run(Millis time)
    {
        for (Millis end = clock.now() + time; clock.now() < end;) {
            clock.advance(10);
            line.poll(clock.now());
            sent += readAll(wire.unit());
        }
    }
    void openLine()
    {
        line.telephonyInitialize(clock.now());
        modemSays("\r\nOK\r\n");
        run(20);
        line.telephonyOpen(clock.now());
        modemSays("\r\nOK\r\n");
        run(20);
        ASSERT_TRUE(line.lineOpen());
        sent.clear();
    }
};

} // namespace

TEST_F(TelephonyTest, TheDropLeavesDataModeWithGuardTimesBeforeHangingUp)
{
    openLine();
    ASSERT_EQ(line.lineMakeCall("2255669", clock.now()), 0u);
    EXPECT_EQ(line.lineMakeCall("2255669", clock.now()), LINEERR_INUSE) << "one call at a time";
    modemSays("\r\nCONNECT 9600\r\n");
    run(20);
    ASSERT_TRUE(line.connected());
    EXPECT_EQ(sent, "ATD2255669\r");

    sent.clear();
    line.lineDrop(clock.now());
    run(990);
    EXPECT_EQ(sent, "") << "a second of silence comes before the escape";
    run(20);
    EXPECT_EQ(sent, "+++");
    run(900);
    EXPECT_EQ(sent, "+++") << "the hang-up waits for the modem's OK";
    modemSays("\r\nOK\r\n");
    run(20);
    EXPECT_EQ(sent, "+++ATH\r");
    modemSays("\r\nOK\r\n");
    run(20);
    EXPECT_FALSE(line.busy());
    EXPECT_FALSE(line.callActive());
    EXPECT_EQ(states.back(), CallState::Idle);
}

TEST_F(TelephonyTest, ARingIsAnsweredOnlyWhenAnsweringIsOn)
{
    openLine();
    modemSays("\r\nRING\r\n");
    run(20);
    EXPECT_EQ(sent, "");
    line.answerCalls = true;
    modemSays("\r\nRING\r\n");
    run(20);
    EXPECT_EQ(sent, "ATA\r");
    modemSays("\r\nCONNECT 2400\r\n");
    run(20);
    EXPECT_EQ(states, (std::vector<CallState>{CallState::Offering, CallState::Connected}));

    // The modem's NO CARRIER in the call's data is a lost line.
    line.callPort().open();
    modemSays("\x16\x01 data\r\nNO CARRIER\r\n");
    line.callPort().drain();
    run(20);
    EXPECT_EQ(states.back(), CallState::Idle);
    EXPECT_EQ(states[states.size() - 2], CallState::Disconnected);
    EXPECT_FALSE(line.callPort().isOpen());
}

TEST_F(TelephonyTest, ASetUpStringTheModemRefusesFailsTheOpen)
{
    line.telephonyInitialize(clock.now());
    run(2000 * kProbeAttempts + 20);
    EXPECT_EQ(line.error(), LINEERR_NODEVICE) << "nobody answered AT";
    EXPECT_EQ(sent, "AT\rAT\rAT\r");

    line.telephonyInitialize(clock.now());
    modemSays("AT\r\r\nOK\r\n"); // echoed before the set-up turns echo off
    run(20);
    ASSERT_EQ(line.error(), 0u);
    line.telephonyOpen(clock.now());
    modemSays("\r\nERROR\r\n");
    run(20);
    EXPECT_EQ(line.error(), LINEERR_OPERATIONFAILED);
    EXPECT_FALSE(line.lineOpen());
    EXPECT_EQ(line.lineMakeCall("1", clock.now()), LINEERR_INVALLINEHANDLE);
}

TEST(SimulatedModem, PlusesInsideTheDataAreNoEscape)
{
    ManualClock clock{0};
    link::MemoryLink toolSide, farSide;
    toolSide.tool().open();
    SimulatedModem modem(toolSide.unit(), farSide.tool());
    toolSide.tool().write(bytesOf("ATD1\r"));
    for (int i = 0; i < 200; ++i) {
        clock.advance(10);
        modem.poll(clock.now());
    }
    ASSERT_TRUE(modem.onCall());
    readAll(toolSide.tool());
    toolSide.tool().write(bytesOf("a+++b"));
    modem.poll(clock.now());
    for (int i = 0; i < 300; ++i) {
        clock.advance(10);
        modem.poll(clock.now());
    }
    EXPECT_EQ(readAll(farSide.unit()), "a+++b");
    EXPECT_EQ(readAll(toolSide.tool()), "");
    toolSide.tool().write(bytesOf("+++"));
    for (int i = 0; i < 150; ++i) {
        clock.advance(10);
        modem.poll(clock.now());
    }
    EXPECT_EQ(readAll(toolSide.tool()), "\r\nOK\r\n");
    EXPECT_EQ(readAll(farSide.unit()), "");
}
