#include "core/link/link_session.h"
#include "core/link/memory_transport.h"
#include "tests/core/link/link_test_support.h"

#include <gtest/gtest.h>

using namespace rk4;
using namespace rk4::link;
using rk4::test::finish;
using rk4::test::unitReply;

namespace {

struct Exchange : ::testing::Test {
    ManualClock clock{1000};
    MemoryLink memory;
    LinkSession session{memory.tool()};
    std::vector<std::string> shown;

    void SetUp() override
    {
        memory.tool().open();
        session.showProgress = [this](const std::string& text) { shown.push_back(text); };
    }
    void fromUnit(const std::vector<std::uint8_t>& bytes) { memory.unit().write(bytes); }
    std::vector<std::uint8_t> sentToUnit()
    {
        std::vector<std::uint8_t> bytes(memory.pendingToUnit());
        memory.unit().read(bytes);
        return bytes;
    }
    std::vector<std::uint8_t> dataReply(std::uint8_t fill, std::uint16_t number = 0)
    {
        return unitReply(REPLY_DATA, std::vector<std::uint8_t>(kPacketSize, fill), kFromUnit, number);
    }
};

} // namespace

TEST_F(Exchange, AReplyLeftFromAnEarlierRequestIsNotTakenForThisOne)
{
    fromUnit(unitReply(REPLY_ACK)); // came after its own request had given up
    session.start(CMD_LINK, 10000, false, clock.now());
    EXPECT_EQ(sentToUnit(), (std::vector<std::uint8_t>{0x16, 0x00, 0x89, 0x00, 0x00, 0x29, 0xBC}));
    EXPECT_EQ(finish(session, clock), ExchangeStatus::Failed);
}

// Replies to a link request, as the unit's line delivers them.
TEST_F(Exchange, ReplyBytesDecideTheOutcome)
{
    auto with = [](std::vector<std::uint8_t> prefix, std::vector<std::uint8_t> reply) {
        prefix.insert(prefix.end(), reply.begin(), reply.end());
        return prefix;
    };
    auto damaged = unitReply(REPLY_ACK);
    damaged[6] ^= 0x01;
    const std::pair<std::vector<std::uint8_t>, ExchangeStatus> cases[] = {
        {unitReply(REPLY_ACK), ExchangeStatus::Good},
        {with({0x00, 0xFF, 0x55}, unitReply(REPLY_ACK)), ExchangeStatus::Good},   // line noise is dropped
        {with({0x00, 0x16, 0x55}, unitReply(REPLY_ACK)), ExchangeStatus::Failed}, // a start byte in it is not
        {unitReply(REPLY_ACK, {}, kFromTool), ExchangeStatus::Failed},            // our own request echoed
        {unitReply(REPLY_VERSION), ExchangeStatus::Failed},                       // not the reply asked for
        {damaged, ExchangeStatus::Failed},
        {{0x15}, ExchangeStatus::Busy},
        {with({0x15}, unitReply(REPLY_ACK)), ExchangeStatus::Busy},
    };
    for (const auto& [bytes, status] : cases) {
        session.start(CMD_LINK, 0, false, clock.now());
        fromUnit(bytes);
        EXPECT_EQ(finish(session, clock), status) << ::testing::PrintToString(bytes);
    }
}

TEST_F(Exchange, SilenceFailsAfterOneSecond)
{
    const Millis started = clock.now();
    session.start(CMD_VERSION, 0, false, started);
    clock.set(started + 999);
    EXPECT_EQ(session.poll(clock.now()), ExchangeStatus::Pending);
    EXPECT_LE(session.nextPollAt(clock.now()), started + 1000);
    clock.set(started + 1000);
    EXPECT_EQ(session.poll(clock.now()), ExchangeStatus::Failed);
}

TEST_F(Exchange, EveryByteGivesTheNextAnotherSecond)
{
    const auto reply = unitReply(REPLY_ACK);
    session.start(CMD_LINK, 0, false, clock.now());
    for (std::uint8_t byte : reply) {
        clock.advance(900);
        EXPECT_EQ(session.poll(clock.now()), ExchangeStatus::Pending);
        fromUnit({byte});
    }
    EXPECT_EQ(session.poll(clock.now()), ExchangeStatus::Good);
}

TEST_F(Exchange, DataReplyIsStoredByPacketIndexAndShowsProgressOnce)
{
    session.packetIndex = 1;
    session.start(CMD_PACKET, 1, false, clock.now());
    EXPECT_TRUE(session.progress);
    fromUnit(dataReply(0xAB, 1));
    ASSERT_EQ(finish(session, clock), ExchangeStatus::Good);
    EXPECT_EQ(session.packetIndex, 2);
    EXPECT_EQ(session.staging[kPacketSize], 0xAB);
    EXPECT_EQ(session.staging[2 * kPacketSize - 1], 0xAB);
    EXPECT_EQ(session.staging[0], 0x00);
    EXPECT_EQ(shown, std::vector<std::string>{"Receiving packet 2"});
}

TEST_F(Exchange, StreamedDataRepliesWrapTheBlockSlot)
{
    session.kind = TransferKind::Voices;
    session.blockSlot = 9;
    session.packetIndex = 19;
    session.start(CMD_PACKET, 19, false, clock.now());
    fromUnit(dataReply(0x5A, 19));
    ASSERT_EQ(finish(session, clock), ExchangeStatus::Good);
    EXPECT_EQ(session.staging[9 * kPacketSize], 0x5A);
    EXPECT_EQ(session.blockSlot, 0);
    EXPECT_EQ(session.packetIndex, 20);
}

TEST_F(Exchange, AnAcknowledgeInPlaceOfDataFailsButMarksTheEndOfData)
{
    session.start(CMD_PACKET, 3, false, clock.now());
    const Millis started = clock.now();
    fromUnit(unitReply(REPLY_ACK));
    EXPECT_EQ(finish(session, clock), ExchangeStatus::Failed);
    EXPECT_GE(clock.now(), started + 1000);
    EXPECT_TRUE(session.IsEndOfData());
    EXPECT_EQ(session.packetIndex, 0);

    // Plain silence is not the end of the data.
    session.start(CMD_PACKET, 3, false, clock.now());
    EXPECT_EQ(finish(session, clock), ExchangeStatus::Failed);
    EXPECT_FALSE(session.IsEndOfData());
}

TEST_F(Exchange, AWriteThatCannotFinishIsAbandonedAfterItsLengthAndHalfASecond)
{
    // Ten baud: seven bytes would take seven seconds.
    PacedTransport slow(memory.tool(), clock, 10);
    LinkSession slowSession(slow);
    const Millis started = clock.now();
    slowSession.start(CMD_LINK, 0, false, started);
    clock.set(started + 506);
    EXPECT_EQ(slowSession.poll(clock.now()), ExchangeStatus::Pending);
    // At 507 ms the reply wait begins and its second starts then.
    clock.set(started + 507);
    slowSession.poll(clock.now());
    clock.set(started + 1506);
    EXPECT_EQ(slowSession.poll(clock.now()), ExchangeStatus::Pending);
    clock.set(started + 1507);
    EXPECT_EQ(slowSession.poll(clock.now()), ExchangeStatus::Failed);
}
