#include "cli/verbs.h"
#include "core/database/file.h"
#include "tests/support/temp_dir.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <sstream>

using namespace rk4;

namespace {

int run(cli::Arguments args, std::string& out, std::string& err)
{
    std::ostringstream outStream, errStream;
    cli::Context context{outStream, errStream};
    const int code = cli::runCommandLine(args, context);
    out = outStream.str();
    err = errStream.str();
    return code;
}

} // namespace

TEST(PortsVerb, BindsASlotAndListsTheSelectedOne)
{
    ::unsetenv("RK4_COM2");
    test::TempDir dir;
    Config config;
    config.setPortIndex(1);
    ASSERT_TRUE(writeConfigFile(dir / kConfigFile, config));

    std::string out, err;
    ASSERT_EQ(run({"ports", "--dir", dir.path().string(), "COM2", "/dev/pts/4"}, out, err), 0) << err;
    EXPECT_NE(out.find("* COM 2  /dev/pts/4\n"), std::string::npos) << out;
    EXPECT_NE(out.find("  COM 1  /dev/ttyS0\n"), std::string::npos) << out;

    ::setenv("RK4_COM2", "/dev/pts/8", 1);
    ASSERT_EQ(run({"ports", "--dir", dir.path().string()}, out, err), 0);
    EXPECT_NE(out.find("* COM 2  /dev/pts/8  (from RK4_COM2)\n"), std::string::npos) << out;
    ::unsetenv("RK4_COM2");

    EXPECT_EQ(run({"ports", "--dir", dir.path().string(), "COM9", "/dev/x"}, out, err), 2);
}
