// The rk4 program over a real pseudo-terminal to rk4-unitsim: real termios,
// real bytes, the real clock, the program as a technician runs it.

#include "core/database/database.h"
#include "core/database/file.h"
#include "core/voice/wave.h"
#include "tests/e2e/program_run.h"
#include "tests/e2e/sim_process.h"
#include "tests/support/temp_dir.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <fcntl.h>
#include <fstream>
#include <functional>
#include <random>
#include <sstream>

using namespace rk4;
using rk4::test::argvOf;
using rk4::test::contents;
using rk4::test::ProgramRun;
using rk4::test::runProgram;
using rk4::test::startProgram;

namespace {

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

TEST(CommandLineOverPty, CleanLineCarriesAMessageFileOfConvertedRecordingsAndSpokenPhrases)
{
    test::TempDir dir;
    // Three recordings of different rates and lengths, converted as a technician does.
    const std::vector<std::tuple<std::string, std::uint32_t, double>> recordings = {
        {"door", 8000, 0.4}, {"pump", 22050, 1.1}, {"site", 44100, 0.7}};
    for (const auto& [name, rate, seconds] : recordings) {
        std::vector<std::int16_t> samples(static_cast<std::size_t>(rate * seconds));
        for (std::size_t i = 0; i < samples.size(); ++i)
            samples[i] = static_cast<std::int16_t>(9000 * std::sin(i * 2 * M_PI * (300 + name.size() * 40) / rate));
        ASSERT_TRUE(writeFileAtomically(dir / (name + ".wav"), waveFileBytes(samples, rate)));
        const ProgramRun converted = runProgram(dir.path(), {"wav2vox", name + ".wav"});
        ASSERT_EQ(converted.code, 0) << converted.err;
    }
    const ProgramRun built =
        runProgram(dir.path(), {"msg", "build", "site.msg", "point1=door.vox", "group2=pump.vox", "site=site.vox",
                                "point2=text:PUMP HOUSE HIGH LEVEL", "group3=text:NORTH RESERVOIR"});
    ASSERT_EQ(built.code, 0) << built.err;
    EXPECT_NE(built.out.find(": 5 phrases, "), std::string::npos) << built.out;
    const std::string message = contents(dir / "site.msg");
    ASSERT_GT(message.size(), 4u * 4096);

    test::UnitSim sim({"--voices", (dir / "unit.msg").string(), "--erase-ms", "500"});
    ASSERT_FALSE(sim.device.empty()) << "rk4-unitsim gave no device";
    const ProgramRun write = runProgram(dir.path(), {"write-voices", "site.msg", "--port", sim.device});
    ASSERT_EQ(write.code, 0) << write.err;
    const ProgramRun read = runProgram(dir.path(), {"read-voices", "back.msg", "--port", sim.device});
    ASSERT_EQ(read.code, 0) << read.err;
    EXPECT_EQ(contents(dir / "back.msg"), message);
    const ProgramRun listed = runProgram(dir.path(), {"msg", "list", "back.msg"});
    EXPECT_EQ(listed.code, 0) << listed.err;
}

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

TEST(CommandLineOverPty, AnInterruptedVoiceReadStopsAndLeavesNothingBesideItsTarget)
{
    test::TempDir dir;
    std::filesystem::create_directory(dir / "unit");
    // At the pace of a real line a store this size takes minutes to read.
    std::ofstream(dir / "unit" / "voices.msg", std::ios::binary) << std::string(100 * 4096, '\x11');
    test::UnitSim sim({"--voices", (dir / "unit" / "voices.msg").string(), "--pace"});
    ASSERT_FALSE(sim.device.empty()) << "rk4-unitsim gave no device";

    const pid_t pid = startProgram(dir.path(), {"read-voices", "out.msg", "--port", sim.device});
    ASSERT_GT(pid, 0);
    const auto staged = [&] {
        for (const auto& entry : std::filesystem::directory_iterator(dir.path()))
            if (entry.path().filename().string().starts_with("out.msg."))
                return true;
        return false;
    };
    // Waits for a condition for up to 30 s, looking every 20 ms.
    const auto within30s = [](const std::function<bool()>& done) {
        for (int i = 0; i < 1500; ++i) {
            if (done())
                return true;
            ::usleep(20000);
        }
        return false;
    };
    const bool started = within30s(staged);
    ::kill(pid, SIGINT);
    int status = 0;
    const bool ended = within30s([&] { return ::waitpid(pid, &status, WNOHANG) == pid; });
    if (!ended) {
        ::kill(pid, SIGKILL);
        ::waitpid(pid, &status, 0);
    }
    ASSERT_TRUE(started) << "the read never staged its voices";
    ASSERT_TRUE(ended) << "Ctrl-C did not stop the read";
    ASSERT_TRUE(WIFEXITED(status)) << "died of its signal instead of stopping";
    EXPECT_EQ(WEXITSTATUS(status), 1);
    EXPECT_NE(contents(dir / "rk4.err").find("Stopped (Interrupt)\n"), std::string::npos) << contents(dir / "rk4.err");
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(dir.path()))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    EXPECT_EQ(names, (std::vector<std::string>{"rk4.err", "rk4.out", "unit"}));
}
