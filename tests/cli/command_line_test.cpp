#include "tests/support/cli_runner.h"

#include <gtest/gtest.h>

namespace rk4::cli {
namespace {

using test::CommandResult;
using test::runRk4;

bool contains(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

// Arguments that do not parse stop before the verb does anything, with exit
// status 2 and the problem on the error stream.
TEST(CommandLine, ArgumentsThatDoNotParseAreUsageErrors)
{
    const struct {
        std::vector<std::string> args;
        const char* problem;
    } cases[] = {
        {{"write", "site.dat", "--port"}, "--port"},
        {{"read", "out.dat", "--port"}, "--port"},
        {{"verify", "site.dat", "--sim-database"}, "--sim-database"},
        {{"info", "-h"}, ""},
        {{"info", "site.dat", "-h"}, "-h"},
        {{"info", "site.dat", "--verbose"}, "--verbose"},
        {{"dirs", "site.dat", "--all"}, "--all"},
        {{"warnings", "site.dat", "--all"}, "--all"},
        {{"summary", "site.dat", "--category"}, "--category"},
        {{"summary", "site.dat", "--category", "alarms"}, "alarms"},
        {{"ports", "--all"}, "--all"},
        {{"ports", "com3"}, "DEVICE"},
        {{"ports", "COM9", "/dev/ttyS0"}, "COM9"},
        {{"ports", "COM1", "/dev/ttyS0", "extra"}, "extra"},
        {{"new"}, "FILE.dat"},
        {{"new", "a.dat", "b.dat"}, "b.dat"},
        {{"wav2vox"}, "IN.wav"},
        {{"vox2wav"}, "IN.vox"},
        {{"write"}, "FILE.dat"},
        {{"write", "site.dat", "--fast"}, "--fast"},
        {{"write", "site.dat", "--port", "sim", "--sim-fault", "hiccup"}, "hiccup"},
        {{"write-vocab", "a.bin", "b.bin"}, "b.bin"},
        {{"write-voices"}, "FILE.msg"},
        {{"read-voices", "--sim-older"}, "OUT.msg"},
        {{"frobnicate"}, "frobnicate"},
        {{}, "COMMAND"},
    };
    for (const auto& [args, problem] : cases) {
        const CommandResult run = runRk4(args);
        const std::string shown = args.empty() ? std::string("(none)") : args[0] + (args.size() > 1 ? " " + args[1] : "");
        EXPECT_EQ(run.code, 2) << shown << "\n" << run.err;
        EXPECT_TRUE(contains(run.err, problem)) << shown << "\n" << run.err;
        EXPECT_EQ(run.out, "") << shown;
    }
}

TEST(CommandLine, EachVerbsHelpNamesEveryOption)
{
    const std::vector<std::string> transferOptions{"--port",     "--sim-database", "--sim-vocabulary",
                                                   "--sim-voices", "--sim-older",  "--sim-fault", "KIND[:COMMAND"};
    const struct {
        const char* verb;
        std::vector<std::string> mentions;
        bool transfer;
    } cases[] = {
        {"info", {"Usage: rk4 info [OPTIONS] FILE.dat"}, false},
        {"new", {"FILE.dat", "--basic"}, false},
        {"dirs", {"FILE.dat"}, false},
        {"warnings", {"FILE.dat"}, false},
        {"summary", {"FILE.dat", "--category", "--pdf"}, false},
        {"ports", {"--dir", "PORT", "DEVICE"}, false},
        {"wav2vox", {"IN.wav", "OUT.vox"}, false},
        {"vox2wav", {"IN.vox", "OUT.wav"}, false},
        {"write", {"FILE.dat"}, true},
        {"read", {"OUT.dat"}, true},
        {"verify", {"FILE.dat", "Exit status: 0", " 1 ", " 2 "}, true},
        {"write-vocab", {"FILE.bin"}, true},
        {"write-voices", {"FILE.msg"}, true},
        {"read-voices", {"OUT.msg"}, true},
    };
    for (const auto& [verb, mentions, transfer] : cases) {
        const CommandResult run = runRk4({verb, "--help"});
        EXPECT_EQ(run.code, 0) << verb;
        EXPECT_EQ(run.err, "") << verb;
        EXPECT_TRUE(contains(run.out, "--help")) << verb;
        for (const std::string& mention : mentions)
            EXPECT_TRUE(contains(run.out, mention)) << verb << " help lacks " << mention << "\n" << run.out;
        for (const std::string& option : transferOptions)
            EXPECT_EQ(contains(run.out, option), transfer) << verb << " and " << option << "\n" << run.out;
    }

    const CommandResult overview = runRk4({"--help"});
    EXPECT_EQ(overview.code, 0);
    for (const auto& entry : cases)
        EXPECT_TRUE(contains(overview.out, std::string("\n  ") + entry.verb + " ")) << entry.verb;
}

} // namespace
} // namespace rk4::cli
