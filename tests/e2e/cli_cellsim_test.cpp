// rk4 cell over a real pseudo-terminal to rk4-cellsim: real termios, real
// bytes, the real one-second tick.

#include "tests/e2e/sim_process.h"
#include "tests/support/cli_runner.h"

#include <gtest/gtest.h>

using namespace rk4;
using test::runRk4;

TEST(CellSimClean, WritesBothNumbersReadsEverythingBackAndPollsTheSignal)
{
    test::SimProcess sim(RK4_CELLSIM, {"--rssi", "31,40,24"});
    ASSERT_FALSE(sim.device.empty());

    const auto written = runRk4({"cell", "write", "--min", " 5551234567", "--mdn", "555-987-65", "--port", sim.device});
    EXPECT_EQ(written.code, 0) << written.err;
    EXPECT_NE(written.err.find("Model unlocked.\nMDN written.\nMIN written.\nNetwork code set.\nModule reset.\n"),
              std::string::npos)
        << written.err;
    EXPECT_NE(written.err.find("MIN check passed.\n"), std::string::npos);
    EXPECT_NE(written.err.find("MDN check passed.\n"), std::string::npos);

    const auto info = runRk4({"cell", "info", "--port", sim.device});
    EXPECT_EQ(info.code, 0) << info.err;
    EXPECT_EQ(info.out, "Model: KX-414\n"
                        "Software version: M6.2B  PRL 52001\n"
                        "Band class: 800 MHz\n"
                        "Band: B\n"
                        "SID: 4152\n"
                        "Protocol: IS-2000\n"
                        "ESN: 159 01223629\n"
                        "MIN: 5551234567\n"
                        "MDN: 555-987-65\n"
                        "RSSI: 15\n");

    // The read took the first value; polling goes on through the list.
    const auto rssi = runRk4({"cell", "rssi", "--count", "3", "--port", sim.device});
    EXPECT_EQ(rssi.code, 0) << rssi.err;
    EXPECT_EQ(rssi.out, "RSSI: 0\nRSSI: 12\nRSSI: 15\n");
    EXPECT_EQ(sim.stop(), 0);
}

TEST(CellSimFault, LockedModuleStopsTheWriteAtTheUnlock)
{
    test::SimProcess sim(RK4_CELLSIM, {"--locked"});
    const auto written = runRk4({"cell", "write", "--min", "5551234567", "--mdn", "5559876543", "--port", sim.device});
    EXPECT_EQ(written.code, 1);
    EXPECT_NE(written.err.find("Module set online.\nError unlocking module.\n"), std::string::npos) << written.err;
    EXPECT_EQ(written.err.find("MDN written."), std::string::npos);
}

TEST(CellSimFault, ReadBackThatDiffersFailsTheWrite)
{
    test::SimProcess sim(RK4_CELLSIM, {"--keep-min", "--min", "5550001111", "--fault", "silence:AT$KWDIR=:0:1"});
    const auto written = runRk4({"cell", "write", "--min", "5551234567", "--mdn", "5559876543", "--port", sim.device});
    EXPECT_EQ(written.code, 1);
    EXPECT_NE(written.err.find("MIN check failed!  Written MIN = 5551234567, Read MIN = 5550001111\n"),
              std::string::npos)
        << written.err;
    EXPECT_NE(written.err.find("MDN check passed.\n"), std::string::npos) << "one lost reply is sent again";
}

TEST(CellSimFault, SilentModuleIsACommunicationsFailureAndBadEntriesSendNothing)
{
    test::SimProcess sim(RK4_CELLSIM, {"--fault", "silence:any"});
    const auto info = runRk4({"cell", "info", "--port", sim.device});
    EXPECT_EQ(info.code, 1);
    EXPECT_EQ(info.out, "");
    EXPECT_NE(info.err.find("Communications failure - check cable connection."), std::string::npos) << info.err;

    const auto refused =
        runRk4({"cell", "write", "--min", "(555) 123-4567", "--mdn", "5559876543", "--port", sim.device});
    EXPECT_EQ(refused.code, 2);
    EXPECT_EQ(refused.err, "Phone Number must be 10 digits\n");

    const auto missing = runRk4({"cell", "rssi", "--port", "/dev/rk4-no-such-port"});
    EXPECT_EQ(missing.code, 1);
    EXPECT_NE(missing.err.find("Error opening COM port"), std::string::npos) << missing.err;
}
