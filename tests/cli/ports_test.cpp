#include "core/database/file.h"
#include "tests/support/cli_runner.h"
#include "tests/support/temp_dir.h"

#include <gtest/gtest.h>

#include <cstdlib>

using namespace rk4;

using rk4::test::runRk4;

TEST(PortsVerb, BindsASlotAndListsTheSelectedOne)
{
    ::unsetenv("RK4_COM2");
    test::TempDir dir;
    Config config;
    config.setPortIndex(1);
    ASSERT_TRUE(writeConfigFile(dir / kConfigFile, config));

    auto run = runRk4({"ports", "--dir", dir.path().string(), "com2", "/dev/pts/4"});
    ASSERT_EQ(run.code, 0) << run.err;
    EXPECT_NE(run.out.find("* COM 2  /dev/pts/4\n"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("  COM 1  /dev/ttyS0\n"), std::string::npos) << run.out;

    ::setenv("RK4_COM2", "/dev/pts/8", 1);
    run = runRk4({"ports", "--dir", dir.path().string()});
    ASSERT_EQ(run.code, 0);
    EXPECT_NE(run.out.find("* COM 2  /dev/pts/8  (from RK4_COM2)\n"), std::string::npos) << run.out;
    ::unsetenv("RK4_COM2");

    EXPECT_EQ(runRk4({"ports", "--dir", dir.path().string(), "COM9", "/dev/x"}).code, 2);
}
