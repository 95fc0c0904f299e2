#include "core/database/file.h"
#include "tests/support/cli_runner.h"
#include "tests/support/temp_dir.h"

#include <gtest/gtest.h>

#include <fstream>

using namespace rk4;
using rk4::test::CommandResult;
using rk4::test::runRk4;
using rk4::test::TempDir;

TEST(CommandLine, CheckBasicPrintsTheMaskAndTheListAndToBasicConverts)
{
    TempDir dir;
    const std::string advanced = (dir / "adv.dat").string();
    ASSERT_EQ(runRk4({"new", advanced}).code, 0);
    Database db;
    ASSERT_EQ(readImageFile(advanced, db), FileStatus::Ok);
    const char wait[] = "W5&";
    std::copy(wait, wait + sizeof wait, db.dir[1].dirText.begin());
    ASSERT_EQ(writeImageFile(advanced, db), FileStatus::Ok);

    CommandResult run = runRk4({"check-basic", advanced});
    EXPECT_EQ(run.code, 1);
    EXPECT_EQ(run.out, "0x20048\n"
                       "The Rk4 database that you have opened is not configured for the Basic mode of operation.\n"
                       "The settings that are not compatible with a Basic configuration are listed below.\n"
                       "Point 1, 2, 3, 4, 5, 6, 7 and 8 are not set for digital operation.\n"
                       "Point 9, 10 and 11 are not set up as outputs.\n"
                       "Directory A or B have commands present (Warning only - These can be left unchanged).\n");

    const std::string kept = (dir / "kept.dat").string();
    ASSERT_EQ(runRk4({"to-basic", advanced, kept, "--keep-directories"}).code, 0);
    run = runRk4({"check-basic", kept});
    EXPECT_EQ(run.code, 1);
    EXPECT_EQ(run.out.substr(0, 8), "0x20000\n");

    const std::string basic = (dir / "basic.dat").string();
    ASSERT_EQ(runRk4({"to-basic", advanced, basic}).code, 0);
    run = runRk4({"check-basic", basic});
    EXPECT_EQ(run.code, 0);
    EXPECT_EQ(run.out, "0x0\n");
}

TEST(CommandLine, BasicVerbsRefuseWhatTheyCannotRead)
{
    TempDir dir;
    std::ofstream(dir / "short.dat") << std::string(100, 'x');
    EXPECT_EQ(runRk4({"check-basic", (dir / "short.dat").string()}).code, 2);
    EXPECT_EQ(runRk4({"to-basic", (dir / "short.dat").string(), (dir / "out.dat").string()}).code, 2);
    EXPECT_FALSE(std::filesystem::exists(dir / "out.dat"));
}
