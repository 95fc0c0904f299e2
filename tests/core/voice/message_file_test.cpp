#include "core/voice/message_file.h"
#include "core/voice/voice_configuration.h"
#include "tests/support/phrase_blocks.h"

#include <gtest/gtest.h>

#include <random>

namespace rk4 {
namespace {

using test::blocks;

TEST(MessageFile, SlotsAreNamedByNumberOrByWhatTheyBelongTo)
{
    const std::vector<std::pair<std::string, std::optional<int>>> cases = {
        {"0", 0},
        {"site", 0},
        {"SITE", 0},
        {"3", 3},
        {"point3", 3},
        {"Point30", 30},
        {"group1", 31},
        {"group8", 38},
        {"38", 38},
        {"39", std::nullopt},
        {"point0", std::nullopt},
        {"point31", std::nullopt},
        {"group9", std::nullopt},
        {"", std::nullopt},
        {"-1", std::nullopt},
        {"point", std::nullopt},
        {"3a", std::nullopt},
    };
    for (const auto& [text, slot] : cases)
        EXPECT_EQ(parseSlot(text), slot) << text;
    for (int slot = 0; slot < kSlotCount; ++slot)
        EXPECT_EQ(parseSlot(slotKey(slot)), slot);
    EXPECT_EQ(slotTitle(0), "Site ID");
    EXPECT_EQ(slotTitle(32), "Group 2");

    std::string problem;
    const auto assignment = parseSlotAssignment("group2=a=b.vox", problem);
    ASSERT_TRUE(assignment);
    EXPECT_EQ(assignment->slot, 32);
    EXPECT_EQ(assignment->source, "a=b.vox");
    EXPECT_FALSE(parseSlotAssignment("zone.vox", problem));
    EXPECT_FALSE(parseSlotAssignment("point3=", problem));
    EXPECT_FALSE(parseSlotAssignment("door=zone.vox", problem));
    EXPECT_NE(problem.find("door"), std::string::npos);
}

TEST(MessageFile, PhrasesLieInTheOrderPointsGroupsSiteAfterTheFirstBlock)
{
    PhraseLengths lengths{};
    lengths[slotNumber(SlotKind::Point, 1)] = 2;
    lengths[slotNumber(SlotKind::Point, 30)] = 3;
    lengths[slotNumber(SlotKind::Group, 1)] = 5;
    lengths[kSiteSlot] = 7;
    EXPECT_EQ(FindInputFileLocation(lengths, SlotKind::Point, 1), 4096u);
    EXPECT_EQ(FindInputFileLocation(lengths, SlotKind::Point, 2), 4096u + 2 * 4096);
    EXPECT_EQ(FindInputFileLocation(lengths, SlotKind::Group, 1), 4096u + 5 * 4096);
    EXPECT_EQ(FindInputFileLocation(lengths, SlotKind::Group, 2), 4096u + 10 * 4096);
    EXPECT_EQ(FindInputFileLocation(lengths, SlotKind::Site, 0), 4096u + 10 * 4096);

    // The header is big-endian: points at 0, groups at 60, the Site ID at 76.
    const auto header = messageHeaderBytes(lengths);
    EXPECT_EQ(header[1], 2);
    EXPECT_EQ(header[58 + 1], 3);
    EXPECT_EQ(header[60 + 1], 5);
    EXPECT_EQ(header[76], 0);
    EXPECT_EQ(header[77], 7);
    EXPECT_EQ(parseMessageHeader(header), lengths);
}

TEST(MessageFile, GroupsSevenAndEightReadAsEmptyWhateverTheHeaderSays)
{
    std::array<std::uint8_t, kMessageHeaderBytes> header{};
    header[72] = 0x01; // group 7: 256 blocks
    header[75] = 9;    // group 8
    header[77] = 1;    // Site ID
    std::vector<std::uint8_t> file(header.begin(), header.end());
    file.resize(2 * kMessageBlock, 0x55);
    const MessageHeader read = checkMessageHeader(file, file.size());
    ASSERT_TRUE(read.ok()) << read.problem;
    EXPECT_EQ(read.lengths[slotNumber(SlotKind::Group, 7)], 0);
    EXPECT_EQ(read.lengths[slotNumber(SlotKind::Group, 8)], 0);
    EXPECT_EQ(phraseOffset(read.lengths, kSiteSlot), 4096u);
}

TEST(MessageFile, AHeaderThatPromisesMoreThanTheFileHoldsIsDamaged)
{
    std::vector<std::uint8_t> file(kMessageBlock + 2 * kMessageBlock);
    file[1] = 2;
    file[3] = 1; // three blocks of phrases, two in the file
    const MessageHeader damaged = checkMessageHeader(file, file.size());
    EXPECT_EQ(damaged.problem, "damaged: its header gives phrases of 3 blocks, the file holds 2");
    EXPECT_EQ(checkMessageHeader(std::span(file).first(40), 40).problem, "shorter than its 78-byte header (40 bytes)");
    // A header with no phrases is a whole file.
    EXPECT_TRUE(checkMessageHeader(std::vector<std::uint8_t>(kMessageHeaderBytes), kMessageHeaderBytes).ok());
}

TEST(MessageFile, BuildingKeepsWholeBlocksOnlyAndReadsBackTheSamePhrases)
{
    std::array<std::optional<std::vector<std::uint8_t>>, kSlotCount> phrases;
    phrases[kSiteSlot] = blocks(4096, 0x10);
    phrases[slotNumber(SlotKind::Point, 4)] = blocks(10000, 0x20); // 2 blocks, 1808 bytes dropped
    phrases[slotNumber(SlotKind::Group, 6)] = blocks(100, 0x30);   // less than a block: nothing

    const std::vector<std::uint8_t> file = buildMessageFile(phrases);
    ASSERT_EQ(file.size(), 4096u + 3 * 4096);
    const MessageHeader header = checkMessageHeader(file, file.size());
    ASSERT_TRUE(header.ok());
    EXPECT_EQ(header.lengths[4], 2);
    EXPECT_EQ(header.lengths[slotNumber(SlotKind::Group, 6)], 0);
    const auto point4 = messagePhrase(file, header.lengths, 4);
    EXPECT_TRUE(std::equal(point4.begin(), point4.end(), phrases[4]->begin()));
    EXPECT_EQ(point4.size(), 8192u);
    const auto site = messagePhrase(file, header.lengths, kSiteSlot);
    EXPECT_EQ(std::vector<std::uint8_t>(site.begin(), site.end()), *phrases[kSiteSlot]);
    EXPECT_EQ(file[4096 + 8192], 0x10); // the Site ID comes last
}

TEST(VoiceConfigurationFile, EntriesFlagsAndPathSitAtTheirOffsets)
{
    VoiceConfiguration configuration;
    configuration.entries[0] = "+site.vox";
    configuration.entries[1] = "-";
    configuration.entries[38] = "+";
    configuration.namesInUse = true;
    configuration.messageLoaded = true;
    configuration.messagePath = "/voices/Rk4.msg";
    const std::vector<std::uint8_t> bytes = voiceConfigurationBytes(configuration);
    ASSERT_EQ(bytes.size(), 10402u);
    EXPECT_EQ(bytes[0], '+');
    EXPECT_EQ(bytes[260], '-');
    EXPECT_EQ(bytes[8060 + 7 * 260], '+');
    EXPECT_EQ(bytes[10140], 1);
    EXPECT_EQ(bytes[10141], 1);
    EXPECT_EQ(bytes[10142], '/');

    std::string problem;
    const auto back = parseVoiceConfiguration(bytes, problem);
    ASSERT_TRUE(back) << problem;
    EXPECT_EQ(back->entries, configuration.entries);
    EXPECT_EQ(back->messagePath, configuration.messagePath);
    EXPECT_TRUE(back->namesInUse && back->messageLoaded);
}

TEST(VoiceConfigurationFile, DamagedFilesAreRefusedWithWhatIsWrong)
{
    const std::vector<std::uint8_t> good = voiceConfigurationBytes({});
    const auto damage = [&](auto change) {
        std::vector<std::uint8_t> bytes = good;
        change(bytes);
        std::string problem;
        EXPECT_FALSE(parseVoiceConfiguration(bytes, problem));
        return problem;
    };
    EXPECT_EQ(damage([](auto& b) { b.pop_back(); }), "not a voice editor configuration: 10401 bytes, not 10402");
    EXPECT_EQ(damage([](auto& b) { std::fill_n(b.begin() + 260, 260, '+'); }),
              "damaged: the entry of Point 1 is not a slot entry");
    EXPECT_EQ(damage([](auto& b) { b[520] = 'x'; }), "damaged: the entry of Point 2 is not a slot entry");
    EXPECT_EQ(damage([](auto& b) { b[10141] = 2; }), "damaged: its flags are 0 and 2");
    EXPECT_EQ(damage([](auto& b) { std::fill(b.begin() + 10142, b.end(), 'a'); }),
              "damaged: the message file's path has no end");
}

// Random damage to good files: every reader either refuses with a reason or
// gives lengths that stay inside the file.
TEST(VoiceFilesRandomised, DamagedMessageAndConfigurationFilesAreRefusedOrReadSafely)
{
    std::mt19937 random(18);
    std::array<std::optional<std::vector<std::uint8_t>>, kSlotCount> phrases;
    for (int slot : {0, 1, 7, 30, 31, 36})
        phrases[slot] = blocks(kMessageBlock * (1 + slot % 3), static_cast<std::uint8_t>(slot));
    const std::vector<std::uint8_t> message = buildMessageFile(phrases);
    VoiceConfiguration configuration;
    for (int slot = 0; slot < kSlotCount; ++slot)
        configuration.entries[slot] = slot % 2 ? "-" : "+/phrases/" + std::to_string(slot) + ".vox";
    configuration.messagePath = "/voices/Rk4.msg";
    const std::vector<std::uint8_t> vcf = voiceConfigurationBytes(configuration);

    for (int round = 0; round < 2000; ++round) {
        std::vector<std::uint8_t> bytes = round % 2 ? message : vcf;
        const int changes = 1 + static_cast<int>(random() % 8);
        for (int i = 0; i < changes; ++i)
            bytes[random() % std::min<std::size_t>(bytes.size(), round % 4 < 2 ? 128 : bytes.size())] =
                static_cast<std::uint8_t>(random());
        if (round % 5 == 0)
            bytes.resize(random() % (bytes.size() + 1));

        const MessageHeader header = checkMessageHeader(bytes, bytes.size());
        if (header.ok()) {
            for (int slot = 0; slot < kSlotCount; ++slot)
                EXPECT_EQ(messagePhrase(bytes, header.lengths, slot).size(), header.lengths[slot] * kMessageBlock);
        } else {
            EXPECT_EQ(header.lengths, PhraseLengths{});
        }
        std::string problem;
        if (!parseVoiceConfiguration(bytes, problem)) {
            EXPECT_FALSE(problem.empty());
        }
    }
}

} // namespace
} // namespace rk4
