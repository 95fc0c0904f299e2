#include "core/database/compare.h"
#include "core/database/file.h"
#include "tests/support/cli_runner.h"
#include "tests/support/temp_dir.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <sstream>

using namespace rk4;
using rk4::test::CommandResult;
using rk4::test::runRk4;
using rk4::test::TempDir;

namespace {

bool contains(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

// The transfer verbs work in the current directory (rk4.cfg, voice.tmp), so
// each test runs in a fresh one.
class TransferVerbs : public ::testing::Test {
  protected:
    TempDir dir;
    std::filesystem::path previous = std::filesystem::current_path();

    void SetUp() override { std::filesystem::current_path(dir.path()); }
    void TearDown() override { std::filesystem::current_path(previous); }

    std::string newImage(const std::string& name, bool basic = false)
    {
        std::vector<std::string> args{"new", name};
        if (basic)
            args.insert(args.begin() + 1, "--basic");
        EXPECT_EQ(runRk4(args).code, 0);
        return name;
    }

    Database imageOf(const std::string& name)
    {
        Database db;
        EXPECT_EQ(readImageFile(name, db), FileStatus::Ok) << name;
        return db;
    }

    static void bytesFile(const std::string& name, std::size_t size)
    {
        std::vector<std::uint8_t> bytes(size);
        for (std::size_t i = 0; i < size; ++i)
            bytes[i] = static_cast<std::uint8_t>(i * 13 + 7);
        ASSERT_TRUE(writeFileAtomically(name, bytes));
    }
};

} // namespace

TEST_F(TransferVerbs, WriteVerifyAndReadAgreeWithTheUnitAndLeaveTheFileAlone)
{
    const std::string site = newImage("site.dat", true);
    const auto before = readWholeFile(site);
    const std::vector<std::string> unit{"--port", "sim", "--sim-database", "unit.dat"};
    auto with = [&](std::vector<std::string> args) {
        args.insert(args.end(), unit.begin(), unit.end());
        return runRk4(args);
    };

    const CommandResult write = with({"write", site});
    EXPECT_EQ(write.code, 0) << write.err;
    EXPECT_TRUE(contains(write.err, "Transmitting packet 2 of 2\n")) << write.err;
    EXPECT_TRUE(contains(write.err, "Database transferred to the Rk4\nSuccess\n")) << write.err;
    EXPECT_TRUE(contains(write.err, "Product: BRK4-CEL  Version: 2.14\n"));
    EXPECT_EQ(readWholeFile(site), before) << "the stamped image must not be saved back";

    const CommandResult same = with({"verify", site});
    EXPECT_EQ(same.code, 0) << same.err;
    EXPECT_EQ(same.out, "The unit holds site.dat\n");

    Database edited = imageOf(site);
    edited.group[0].ackCode[0] ^= 0x01;
    edited.alm[2].port = 5;
    ASSERT_EQ(writeImageFile("edited.dat", edited), FileStatus::Ok);
    const CommandResult differs = with({"verify", "edited.dat"});
    EXPECT_EQ(differs.code, 1);
    EXPECT_TRUE(contains(differs.out, "2 fields differ between edited.dat and the unit:\n")) << differs.out;
    EXPECT_TRUE(contains(differs.out, "  group 1 ackCode\n")) << differs.out;
    EXPECT_TRUE(contains(differs.out, "  point 3 port: 5 in the file, " + std::to_string(imageOf(site).alm[2].port) +
                                          " in the unit\n"))
        << differs.out;

    const CommandResult read = with({"read", "back.dat"});
    EXPECT_EQ(read.code, 0) << read.err;
    EXPECT_EQ(read.out, "Saved back.dat (Basic mode)\n");
    EXPECT_TRUE(contains(read.err, "Configuration data read from the Rk4\nSuccess\n")) << read.err;
    const Database back = imageOf("back.dat");
    EXPECT_TRUE(compareDatabases(imageOf(site), back).empty());
    EXPECT_EQ(std::string(back.gen.transferStamp.begin(), back.gen.transferStamp.end()),
              std::string("555555555") + '\0');
}

TEST_F(TransferVerbs, FailuresGiveTheSystemsTextsAndAFailingExitCode)
{
    const std::string site = newImage("site.dat");

    CommandResult run = runRk4({"write", site, "--port", "sim", "--sim-fault", "silence:any:0:0"});
    EXPECT_EQ(run.code, 1);
    EXPECT_TRUE(contains(run.err, "Communications Failure - Starting second pass.\n")) << run.err;
    EXPECT_TRUE(contains(run.err, "Communications Failure - Check connection.\n")) << run.err;
    EXPECT_FALSE(contains(run.err, "Success"));

    run = runRk4({"read", "out.dat", "--port", "sim", "--sim-fault", "crc:packet:1:0"});
    EXPECT_EQ(run.code, 1);
    EXPECT_TRUE(contains(run.err, "No response - retry 3\n")) << run.err;
    EXPECT_TRUE(contains(run.err, "Transfer failed at packet number 2\n")) << run.err;
    EXPECT_FALSE(std::filesystem::exists("out.dat")) << "a failed read writes nothing";

    run = runRk4({"verify", site, "--port", "sim", "--sim-fault", "silence:read-database:0:0"});
    EXPECT_EQ(run.code, 2) << "no comparison was made";
    EXPECT_EQ(run.out, "");

    // Targets that could never be written are refused before any transfer.
    std::filesystem::create_directory("folder.dat");
    const struct {
        std::vector<std::string> args;
        const char* message;
    } refused[] = {
        {{"read", "out.txt"}, " FILE NAME MUST HAVE .DAT EXTENSION \n  out.txt\n"},
        {{"read", "folder.dat"}, " CANNOT OPEN FILE \n  folder.dat: not a regular file (a folder)\n"},
        {{"read", "no/such/folder/out.dat"},
         " CANNOT OPEN FILE \n  no/such/folder/out.dat: No such file or directory\n"},
        {{"read-voices", "folder.dat"}, " CANNOT OPEN voice.tmp FILE \n"},
    };
    for (const auto& target : refused) {
        std::vector<std::string> args = target.args;
        args.insert(args.end(), {"--port", "sim"});
        run = runRk4(args);
        EXPECT_EQ(run.code, args[0] == "read" ? 2 : 1) << args[1];
        EXPECT_TRUE(contains(run.err, target.message)) << run.err;
        EXPECT_FALSE(contains(run.err, "Checking Rk4 version")) << args[1];
    }
}

TEST_F(TransferVerbs, AMissingAccessCodeIsAWarningThatStrictTurnsIntoAStop)
{
    Database db = imageOf(newImage("site.dat"));
    db.gen.securityLevel = 1;
    db.gen.accessCode.fill(0);
    ASSERT_EQ(writeImageFile("site.dat", db), FileStatus::Ok);
    const std::string warning = "The Access Code has not been entered in the General section.\n"
                                "Remote programming will not be available without an Access Code.\n";

    CommandResult run = runRk4({"write", "site.dat", "--strict", "--port", "sim", "--sim-database", "unit.dat"});
    EXPECT_EQ(run.code, 3);
    EXPECT_TRUE(contains(run.err, warning)) << run.err;
    EXPECT_FALSE(contains(run.err, "Checking Rk4 version")) << "stopped before anything was sent";
    EXPECT_FALSE(std::filesystem::exists("unit.dat"));

    run = runRk4({"write", "site.dat", "--port", "sim", "--sim-database", "unit.dat"});
    EXPECT_EQ(run.code, 0) << run.err;
    EXPECT_TRUE(contains(run.err, warning)) << run.err;
    EXPECT_FALSE(contains(run.err, "Do you want to change this?"));
    EXPECT_TRUE(std::filesystem::exists("unit.dat"));
}

TEST_F(TransferVerbs, VocabularyIsSentWhole)
{
    bytesFile("voc.bin", 3 * 4096);
    const CommandResult run = runRk4({"write-vocab", "voc.bin", "--port", "sim", "--sim-vocabulary", "unit.bin"});
    EXPECT_EQ(run.code, 0) << run.err;
    EXPECT_TRUE(contains(run.err, "Transmitting packet 3 of 3\n"));
    EXPECT_TRUE(contains(run.err, "Vocab transferred to the Rk4\nVocab succesfully transferred to the Rk4\n"))
        << run.err;
    EXPECT_EQ(readWholeFile("unit.bin"), readWholeFile("voc.bin"));
}

TEST_F(TransferVerbs, VoicesGoToTheUnitAndComeBackByteForByte)
{
    bytesFile("rk4.msg", 5 * 4096);
    std::vector<std::uint8_t> voices = *readWholeFile("rk4.msg");
    std::fill_n(voices.begin(), 78, 0);
    voices[1] = 4; // point 1's phrase: the four blocks after the header
    ASSERT_TRUE(writeFileAtomically("rk4.msg", voices));
    CommandResult run = runRk4({"write-voices", "rk4.msg", "--port", "sim", "--sim-voices", "unit.msg"});
    EXPECT_EQ(run.code, 0) << run.err;
    EXPECT_TRUE(contains(run.err, "Waiting for Rk4 to initialize voice storage memory.\n10 seconds remaining.\n"));
    EXPECT_TRUE(contains(run.err, "Voices transferred to the Rk4\n")) << run.err;

    run = runRk4({"read-voices", "back.msg", "--port", "sim", "--sim-voices", "unit.msg"});
    EXPECT_EQ(run.code, 0) << run.err;
    EXPECT_EQ(run.out, "Saved back.msg (20480 bytes)\n");
    EXPECT_EQ(readWholeFile("back.msg"), readWholeFile("rk4.msg"));
    EXPECT_FALSE(std::filesystem::exists("voice.tmp"));
}

TEST_F(TransferVerbs, ThePortComesFromTheOptionOrFromTheSavedSlot)
{
    const std::string site = newImage("site.dat");

    Config config;
    config.setPortIndex(3);
    ASSERT_TRUE(writeConfigFile(kConfigFile, config));
    ::setenv("RK4_COM4", (dir / "no-such-tty").c_str(), 1);
    CommandResult run = runRk4({"write", site});
    ::unsetenv("RK4_COM4");
    EXPECT_EQ(run.code, 1);
    EXPECT_TRUE(contains(run.err, "Port: COM 4 (" + (dir / "no-such-tty").string() + ")\n")) << run.err;
    EXPECT_TRUE(contains(run.err, "Error opening COM port\n  There is no device")) << run.err;

    // The slot is named as the ports verb names it, in either case.
    ::setenv("RK4_COM3", (dir / "no-such-tty").c_str(), 1);
    run = runRk4({"write", site, "--port", "com3"});
    ::unsetenv("RK4_COM3");
    EXPECT_EQ(run.code, 1);
    EXPECT_TRUE(contains(run.err, "Port: COM 3 (")) << run.err;

    run = runRk4({"read", "out.dat", "--port", "/dev/null"});
    EXPECT_EQ(run.code, 1);
    EXPECT_TRUE(contains(run.err, "/dev/null is not a serial port.")) << run.err;

    EXPECT_EQ(runRk4({"write", site, "--port", "9"}).code, 2);
    EXPECT_EQ(runRk4({"write", site, "--port", "COM 1", "--sim-fault", "nak"}).code, 2);
    EXPECT_EQ(runRk4({"write", site, "--port", "sim", "--sim-fault", "hiccup"}).code, 2);
    EXPECT_EQ(runRk4({"write", site, "--port", "sim", "--fast"}).code, 2);
    EXPECT_EQ(runRk4({"write", "--port", "sim"}).code, 2);
}

TEST_F(TransferVerbs, AProgressBarIsDrawnOnATerminalOnly)
{
    const std::string site = newImage("site.dat");
    std::ostringstream out, err;
    cli::Context terminal{out, err, true};
    ASSERT_EQ(cli::runCommandLine({"write", site, "--port", "sim"}, terminal), 0) << err.str();
    // The bar moves with the bytes of each packet, not once a packet.
    const std::string shown = err.str();
    EXPECT_TRUE(contains(shown, "\r[#######.......................] 25% 0/2 packets")) << shown;
    EXPECT_TRUE(contains(shown, "\r[###############...............] 50% 1/2 packets")) << shown;
    EXPECT_TRUE(contains(shown, "\r[##############################] 100% 2/2 packets"));
    std::size_t draws = 0;
    for (std::size_t at = shown.find("\r["); at != std::string::npos; at = shown.find("\r[", at + 1))
        ++draws;
    EXPECT_GE(draws, 100u);

    EXPECT_FALSE(contains(runRk4({"write", site, "--port", "sim"}).err, "packets"));
}
