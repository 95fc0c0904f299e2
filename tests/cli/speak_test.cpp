#include "core/common/safe_file.h"
#include "core/voice/message_file.h"
#include "tests/support/cli_runner.h"
#include "tests/support/temp_dir.h"

#include <gtest/gtest.h>

namespace rk4::cli {
namespace {

using test::runRk4;

std::size_t decodedSamples(const std::filesystem::path& vox)
{
    return decodeVox(phraseData(readFileBytes(vox).bytes)).size();
}

TEST(SpeakVerb, WritesAWholeBlockPhraseAtTheSpeedAsked)
{
    test::TempDir dir;
    const auto slow = runRk4({"speak", "PUMP HOUSE HIGH LEVEL", (dir / "slow.vox").string(), "--speed", "100"});
    ASSERT_EQ(slow.code, 0) << slow.err;
    EXPECT_TRUE(slow.out.starts_with("Spoken: \"PUMP HOUSE HIGH LEVEL\" -> " + (dir / "slow.vox").string() + ", "))
        << slow.out;
    EXPECT_EQ(slow.err, "");
    const auto fast =
        runRk4({"speak", "PUMP HOUSE HIGH LEVEL", (dir / "fast.vox").string(), "--speed", "300", "--voice", "en+f2"});
    ASSERT_EQ(fast.code, 0) << fast.err;

    EXPECT_EQ(readFileBytes(dir / "slow.vox").bytes.size() % kPhraseBlock, 0u);
    EXPECT_GT(decodedSamples(dir / "slow.vox"), kPhraseRate); // over a second at 100 words a minute
    EXPECT_LT(decodedSamples(dir / "fast.vox") * 5, decodedSamples(dir / "slow.vox") * 3);
}

TEST(SpeakVerb, RefusesWhatCannotBeSpokenOrWritten)
{
    test::TempDir dir;
    const std::string out = (dir / "out.vox").string();
    struct Case {
        std::vector<std::string> args;
        int code;
        std::string err; // the start of it
    };
    const Case cases[] = {
        {{"speak", "", out}, 2, " CANNOT SPEAK THE PHRASE \n  there is no text to speak\n"},
        {{"speak", "PUMP", out, "--voice", "xx-nowhere"}, 2, " CANNOT SPEAK THE PHRASE \n  there is no voice"},
        {{"speak", "PUMP", out, "--speed", "20"}, 2, "--speed: Value 20 not in range"},
        {{"speak", "PUMP", (dir / "no/such/folder/x.vox").string()}, 1, " CANNOT OPEN OUTPUT FILE \n"},
    };
    for (const Case& c : cases) {
        const auto run = runRk4(c.args);
        EXPECT_EQ(run.code, c.code) << c.args[1];
        EXPECT_TRUE(run.err.starts_with(c.err)) << run.err;
    }
    EXPECT_FALSE(std::filesystem::exists(out));
}

TEST(SpeakVerb, MsgBuildSpeaksTextSlotsBesidePhraseFiles)
{
    test::TempDir dir;
    ASSERT_TRUE(writeFileAtomically(dir / "door.vox", std::vector<std::uint8_t>(kMessageBlock, 0x11)));
    const auto built = runRk4({"msg", "build", (dir / "site.msg").string(), "point1=" + (dir / "door.vox").string(),
                               "point2=text:PUMP HOUSE HIGH LEVEL", "site=text:NORTH RESERVOIR"});
    ASSERT_EQ(built.code, 0) << built.err;
    const auto file = readFileBytes(dir / "site.msg").bytes;
    std::string cause;
    const MessageHeader header = checkMessageHeader(file, file.size());
    ASSERT_TRUE(header.ok()) << header.problem;
    EXPECT_EQ(header.lengths[1], 1);
    EXPECT_GE(header.lengths[2], 1);
    EXPECT_GE(header.lengths[kSiteSlot], 1);
    const auto spoken = messagePhrase(file, header.lengths, 2);
    EXPECT_GT(decodeVox(phraseData(spoken)).size(), kPhraseRate / 2);

    const auto empty = runRk4({"msg", "build", (dir / "bad.msg").string(), "point2=text:"});
    EXPECT_EQ(empty.code, 2);
    EXPECT_NE(empty.err.find("there is no text to speak"), std::string::npos) << empty.err;
    EXPECT_FALSE(std::filesystem::exists(dir / "bad.msg"));
}

} // namespace
} // namespace rk4::cli
