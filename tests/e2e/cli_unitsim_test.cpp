// The rk4 program over a real pseudo-terminal to rk4-unitsim: real termios,
// real bytes, the real clock, the program as a technician runs it.

#include "core/database/database.h"
#include "core/database/file.h"
#include "tests/e2e/unitsim_process.h"
#include "tests/support/temp_dir.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <fstream>
#include <random>
#include <sstream>

using namespace rk4;
using rk4::test::argvOf;

namespace {

std::string contents(const std::filesystem::path& file)
{
    std::ifstream in(file, std::ios::binary);
    std::ostringstream all;
    all << in.rdbuf();
    return all.str();
}

struct ProgramRun {
    int code = -1;
    std::string out;
    std::string err;
};

// Runs the built rk4 program in `directory` with its output in files.
ProgramRun runProgram(const std::filesystem::path& directory, std::vector<std::string> args)
{
    const auto outFile = directory / "rk4.out", errFile = directory / "rk4.err";
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, outFile.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, errFile.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    args.insert(args.begin(), RK4_PROGRAM);
    const auto argv = argvOf(args);
    ProgramRun run;
    pid_t pid = -1;
    // The program finds rk4.cfg and writes voice.tmp in its working directory.
    const auto previous = std::filesystem::current_path();
    std::filesystem::current_path(directory);
    const int spawned = ::posix_spawn(&pid, RK4_PROGRAM, &actions, nullptr, argv.data(), environ);
    std::filesystem::current_path(previous);
    posix_spawn_file_actions_destroy(&actions);
    if (spawned != 0)
        return run;
    int status = 0;
    ::waitpid(pid, &status, 0);
    run.code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    run.out = contents(outFile);
    run.err = contents(errFile);
    return run;
}

// An image with every byte set, so that every field, swapped or not, has to
// make the round trip.
Database scrambledImage()
{
    std::mt19937 random(4704);
    ImageBytes bytes{};
    for (auto& byte : bytes)
        byte = static_cast<std::uint8_t>(random());
    return Database::fromImage(bytes);
}

// The image bytes with the transfer stamp (general bytes 48..57) left out.
std::string withoutStamp(const std::string& image)
{
    std::string rest = image;
    rest.erase(kGeneralOffset + 48, 10);
    return rest;
}

void expectRoundTrip(const std::vector<std::string>& faults, const std::string& expectedRetry)
{
    test::TempDir dir;
    std::vector<std::string> options{"--database", (dir / "unit.dat").string()};
    options.insert(options.end(), faults.begin(), faults.end());
    test::UnitSim sim(options);
    ASSERT_FALSE(sim.device.empty()) << "rk4-unitsim gave no device";

    ASSERT_EQ(writeImageFile(dir / "site.dat", scrambledImage()), FileStatus::Ok);
    const std::string sent = contents(dir / "site.dat");

    const ProgramRun write = runProgram(dir.path(), {"write", "site.dat", "--port", sim.device});
    EXPECT_EQ(write.code, 0) << write.err;
    EXPECT_NE(write.err.find("Database transferred to the Rk4\nSuccess\n"), std::string::npos) << write.err;
    EXPECT_EQ(contents(dir / "site.dat"), sent) << "the file is never stamped";

    const ProgramRun read = runProgram(dir.path(), {"read", "back.dat", "--port", sim.device});
    EXPECT_EQ(read.code, 0) << read.err;
    const std::string back = contents(dir / "back.dat");
    ASSERT_EQ(back.size(), dbasesize);
    EXPECT_EQ(withoutStamp(back), withoutStamp(sent));
    EXPECT_EQ(back.substr(kGeneralOffset + 48, 10), std::string("555555555") + '\0');
    EXPECT_EQ(withoutStamp(contents(dir / "unit.dat")), withoutStamp(sent)) << "the unit keeps what it received";

    if (!expectedRetry.empty()) {
        EXPECT_NE(write.err.find(expectedRetry), std::string::npos) << write.err;
        EXPECT_NE(read.err.find(expectedRetry), std::string::npos) << read.err;
    }
}

} // namespace

TEST(CommandLineOverPty, CleanLineWritesAndReadsTheSameImage) { expectRoundTrip({}, ""); }

TEST(CommandLineOverPty, FaultyLineStillCarriesTheImageWithNoiseNaksAndACorruptReply)
{
    // The first fault that matches a request decides it: the first two packet
    // requests answered busy; one packet of the write and one of the read
    // answered with a bad CRC; the first read announce lost; noise before
    // every other reply.
    expectRoundTrip({"--fault", "nak:packet:0:2", "--fault", "crc:packet:3:1", "--fault", "crc:packet:6:1", "--fault",
                     "silence:read-database:0:1", "--fault", "noise:any:0:0"},
                    "No response - retry 1\n");
}
