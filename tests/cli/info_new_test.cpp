#include "core/database/file.h"
#include "tests/support/cli_runner.h"
#include "tests/support/temp_dir.h"

#include <gtest/gtest.h>

#include <fstream>

using namespace rk4;
using rk4::test::CommandResult;
using rk4::test::runRk4;
using rk4::test::TempDir;

TEST(CommandLine, NewWritesDefaultsThatInfoDescribes)
{
    TempDir dir;
    const std::string file = (dir / "site.dat").string();
    ASSERT_EQ(runRk4({"new", "--basic", file}).code, 0);
    EXPECT_EQ(std::filesystem::file_size(file), 4704u);
    const CommandResult info = runRk4({"info", file});
    EXPECT_EQ(info.code, 0);
    EXPECT_NE(info.out.find("Mode:        Basic"), std::string::npos) << info.out;
    EXPECT_NE(info.out.find("Groups:      1 2 enabled"), std::string::npos) << info.out;
    EXPECT_NE(info.out.find("\n   1  (no name)         Digital     input  1  active    Group 1\n"), std::string::npos)
        << info.out;
    EXPECT_NE(info.out.find("\n   9  (no name)         On/Off Out  output 1  inactive  Group 1\n"), std::string::npos)
        << info.out;
}

TEST(CommandLine, BadFilesGiveTheSystemsMessageAndAFailure)
{
    TempDir dir;
    std::ofstream(dir / "short.dat") << std::string(4703, 'x');
    CommandResult run = runRk4({"info", (dir / "short.dat").string()});
    EXPECT_NE(run.code, 0);
    EXPECT_NE(run.err.find(" FILE IS NOT THE CORRECT SIZE "), std::string::npos);

    std::ofstream(dir / "notes.txt") << "kept";
    run = runRk4({"new", (dir / "notes.txt").string()});
    EXPECT_NE(run.code, 0);
    EXPECT_NE(run.err.find(" FILE NAME MUST HAVE .DAT EXTENSION "), std::string::npos);
    EXPECT_EQ(std::filesystem::file_size(dir / "notes.txt"), 4u) << "a refused name destroys nothing";
}

TEST(CommandLine, HelpAndUnknownCommands)
{
    EXPECT_EQ(runRk4({"info", "--help"}).code, 0);
    EXPECT_NE(runRk4({"info", "--help"}).out.find("Usage: rk4 info [OPTIONS] FILE.dat"), std::string::npos);
    EXPECT_EQ(runRk4({"--help"}).code, 0);
    EXPECT_EQ(runRk4({"frobnicate"}).code, 2);
    EXPECT_EQ(runRk4({}).code, 2);
    EXPECT_EQ(runRk4({"info"}).code, 2);
}
