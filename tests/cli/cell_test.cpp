#include "tests/support/cli_runner.h"

#include <gtest/gtest.h>

using rk4::test::runRk4;

TEST(CellCommand, BuiltInModuleIsWrittenAndPolledWithoutWaiting)
{
    const auto written = runRk4({"cell", "write", "--min", "5551234567", "--mdn", "5559876543", "--port", "sim"});
    EXPECT_EQ(written.code, 0) << written.err;
    EXPECT_NE(written.err.find("MIN check passed.\nChecking MDN number in module.\nMDN check passed.\n"),
              std::string::npos)
        << written.err;

    const auto rssi = runRk4({"cell", "rssi", "--count", "2", "--port", "sim"});
    EXPECT_EQ(rssi.code, 0);
    EXPECT_EQ(rssi.out, "RSSI: 15\nRSSI: 15\n");

    EXPECT_EQ(runRk4({"cell", "write", "--min", "5551234567", "--port", "sim"}).code, 2) << "--mdn is required";
    EXPECT_EQ(runRk4({"cell", "info", "--port", "COM9"}).code, 2);
}
