#include "core/common/safe_file.h"
#include "core/voice/message_file.h"
#include "tests/support/cli_runner.h"
#include "tests/support/phrase_blocks.h"
#include "tests/support/temp_dir.h"

#include <gtest/gtest.h>

namespace rk4::cli {
namespace {

using test::blocks;
using test::runRk4;

class MsgVerb : public ::testing::Test {
  protected:
    void SetUp() override
    {
        ASSERT_TRUE(writeFileAtomically(dir / "door.vox", blocks(10000, 0x10)));
        ASSERT_TRUE(writeFileAtomically(dir / "pump.vox", blocks(4096, 0x20)));
        ASSERT_TRUE(writeFileAtomically(dir / "site.vox", blocks(4096, 0x30)));
    }
    std::string at(const std::string& name) const { return (dir / name).string(); }

    test::TempDir dir;
};

TEST_F(MsgVerb, BuildsListsAndExtractsByNumberOrByName)
{
    const auto built = runRk4(
        {"msg", "build", at("site.msg"), "3=" + at("door.vox"), "GROUP2=" + at("pump.vox"), "site=" + at("site.vox")});
    ASSERT_EQ(built.code, 0) << built.err;
    EXPECT_EQ(built.out, "Saved " + at("site.msg") + ": 3 phrases, 4 blocks (20480 bytes)\n");

    std::array<std::optional<std::vector<std::uint8_t>>, kSlotCount> phrases;
    phrases[3] = blocks(10000, 0x10);
    phrases[32] = blocks(4096, 0x20);
    phrases[kSiteSlot] = blocks(4096, 0x30);
    EXPECT_EQ(readFileBytes(dir / "site.msg").bytes, buildMessageFile(phrases));

    const auto listed = runRk4({"msg", "list", at("site.msg")});
    ASSERT_EQ(listed.code, 0) << listed.err;
    EXPECT_NE(listed.out.find("   3  point3   Point 3          2  4096\n"), std::string::npos) << listed.out;
    EXPECT_NE(listed.out.find("  32  group2   Group 2          1  12288\n"), std::string::npos) << listed.out;
    EXPECT_NE(listed.out.find("   0  site     Site ID          1  16384\nTotal 4 blocks"), std::string::npos);

    const auto extracted = runRk4({"msg", "extract", at("site.msg"), "point3", at("back.vox")});
    ASSERT_EQ(extracted.code, 0) << extracted.err;
    EXPECT_EQ(readFileBytes(dir / "back.vox").bytes, blocks(8192, 0x10));
}

TEST_F(MsgVerb, RefusesBadSlotsMissingPhrasesAndDamagedFilesWithTheSystemsText)
{
    std::vector<std::uint8_t> damaged = blocks(4096 * 2, 0);
    damaged[1] = 5; // five blocks promised, one there
    ASSERT_TRUE(writeFileAtomically(dir / "damaged.msg", damaged));
    ASSERT_EQ(runRk4({"msg", "build", at("one.msg"), "1=" + at("pump.vox")}).code, 0);

    struct Case {
        std::vector<std::string> args;
        int code;
        std::string errStart;
    };
    const std::vector<Case> cases = {
        {{"msg", "build", at("o.msg"), "door=" + at("door.vox")}, 2, "\"door\" is not a slot"},
        {{"msg", "build", at("o.msg"), "group9=" + at("door.vox")}, 2, "\"group9\" is not a slot"},
        {{"msg", "build", at("o.msg"), at("door.vox")}, 2, "\"" + at("door.vox") + "\" is not SLOT=PHRASE"},
        {{"msg", "build", at("o.msg"), "1=" + at("door.vox"), "point1=" + at("pump.vox")}, 2, "Point 1 is given twice"},
        {{"msg", "build", at("o.msg"), "1=" + at("gone.vox")}, 2, " CANNOT OPEN " + at("gone.vox") + "\n"},
        {{"msg", "build", at("door.vox"), "1=" + at("door.vox")}, 2, " CANNOT OPEN MESSAGE FILE \n"},
        {{"msg", "list", at("damaged.msg")}, 2, " CANNOT OPEN MESSAGE FILE \n  " + at("damaged.msg") + ": damaged"},
        {{"msg", "extract", at("one.msg"), "2", at("x.vox")}, 1, " CANNOT OPEN MESSAGE FILE FOR READING\n"},
        {{"msg", "extract", at("one.msg"), "1", at("one.msg")}, 2, " CANNOT OPEN INDIVIDUAL PHRASE FILE FOR WRITING"},
        {{"msg", "extract", at("one.msg"), "39", at("x.vox")}, 2, "\"39\" is not a slot"},
        {{"msg"}, 2, "A subcommand is required"},
    };
    for (const Case& c : cases) {
        const auto run = runRk4(c.args);
        EXPECT_EQ(run.code, c.code) << c.args.back() << "\n" << run.err;
        EXPECT_EQ(run.err.rfind(c.errStart, 0), 0u) << run.err;
    }
    EXPECT_FALSE(std::filesystem::exists(dir / "o.msg"));
    EXPECT_FALSE(std::filesystem::exists(dir / "x.vox"));
    EXPECT_EQ(readFileBytes(dir / "door.vox").bytes, blocks(10000, 0x10));
}

} // namespace
} // namespace rk4::cli
