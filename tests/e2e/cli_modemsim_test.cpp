// rk4 --dial over a real pseudo-terminal to rk4-modemsim: the program finds
// the modem, dials, moves the database through the call and hangs up, as a
// technician runs it.

#include "core/database/database.h"
#include "core/database/defaults.h"
#include "core/database/file.h"
#include "tests/e2e/program_run.h"
#include "tests/support/temp_dir.h"

#include <gtest/gtest.h>

using namespace rk4;
using rk4::test::contents;
using rk4::test::ProgramRun;
using rk4::test::runProgram;

namespace {

bool has(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

struct ModemSim : test::SimProcess {
    ModemSim(const test::TempDir& dir, std::vector<std::string> options)
        : test::SimProcess(RK4_MODEMSIM, withRing(std::move(options)), (dir / "modem.log").string()),
          log(dir / "modem.log")
    {}
    static std::vector<std::string> withRing(std::vector<std::string> options)
    {
        options.insert(options.end(), {"--ring-ms", "300"});
        return options;
    }
    std::string heard() const { return contents(log); }
    std::filesystem::path log;
};

Database siteImage()
{
    Database db;
    ClearDatabase(db, false);
    for (std::size_t i = 0; i < db.alm.size(); ++i)
        db.alm[i].port = static_cast<std::uint16_t>(0x0100 + i);
    return db;
}

} // namespace

TEST(DialOverPty, WritesReadsBackAndHangsUp)
{
    test::TempDir dir;
    ModemSim modem(dir, {});
    ASSERT_FALSE(modem.device.empty()) << "rk4-modemsim gave no device";
    ASSERT_EQ(writeImageFile(dir / "site.dat", siteImage()), FileStatus::Ok);

    const ProgramRun write =
        runProgram(dir.path(), {"write", "site.dat", "--port", modem.device, "--dial", "+1(555)CALL-NOW"});
    EXPECT_EQ(write.code, 0) << write.err;
    for (const char* text :
         {"Dial Tone Detected.", "Ringing Detected.", "Call: connected", "Call Connected", "Setting up data transfer.",
          "Database transferred to the Rk4", "Terminating modem link.", "Call: idle"})
        EXPECT_TRUE(has(write.err, text)) << text << "\n" << write.err;

    const ProgramRun read = runProgram(dir.path(), {"read", "back.dat", "--port", modem.device, "--dial", "CALL-NOW"});
    EXPECT_EQ(read.code, 0) << read.err;
    EXPECT_TRUE(has(read.err, "Configuration data read from the Rk4")) << read.err;
    Database back;
    ASSERT_TRUE(readImageFile(dir / "back.dat", back));
    Database sent = siteImage();
    sent.gen.transferStamp = back.gen.transferStamp; // stamped on the way out
    EXPECT_EQ(back, sent) << "read back byte for byte";

    modem.stop();
    const std::string heard = modem.heard();
    EXPECT_TRUE(has(heard, "ATD15552255669")) << heard; // no rk4modem.txt: dialled as another area of country 1
    EXPECT_TRUE(has(heard, "+++\n")) << heard;
    EXPECT_TRUE(has(heard, "ATH\n")) << heard;
    EXPECT_TRUE(has(heard, "ATZ\n")) << heard;
}

TEST(DialOverPty, ACallThatFailsOrDropsExitsWithTheFailureTexts)
{
    struct Case {
        const char* fault;
        std::vector<const char*> texts;
    };
    const Case cases[] = {
        {"busy", {"Call: idle (BUSY)", "Error Placing Call."}},
        {"line-lost",
         {"Call Connected", "Communications Failure.", "Line Disconnected.", "Line Connection has been lost."}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.fault);
        test::TempDir dir;
        ModemSim modem(dir, {"--fault", c.fault});
        ASSERT_FALSE(modem.device.empty());
        const ProgramRun read =
            runProgram(dir.path(), {"read", "back.dat", "--port", modem.device, "--dial", "2255669"});
        EXPECT_EQ(read.code, 1) << read.err;
        for (const char* text : c.texts)
            EXPECT_TRUE(has(read.err, text)) << text << "\n" << read.err;
        EXPECT_FALSE(std::filesystem::exists(dir / "back.dat"));
    }
}
