// Arbitrary bytes on the line, cut into arbitrary pieces at arbitrary times:
// the receivers must never read out of bounds and never call a bad frame good.

#include "core/link/link_session.h"
#include "core/link/memory_transport.h"
#include "core/link/simulated_unit.h"
#include "tests/core/link/link_test_support.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

using namespace rk4;
using namespace rk4::link;

namespace {

// Each request with the unit's good reply to it: start, from-unit, the reply
// code, number 0, a body of 0x42 bytes and the CRC worked out apart from the
// product (CRC-16 from 0xFFFF, reflected polynomial 0xA001, high byte first).
struct GoodReply {
    std::uint8_t command, code;
    std::size_t body;
    std::uint8_t crcHigh, crcLow;

    std::vector<std::uint8_t> frame() const
    {
        std::vector<std::uint8_t> bytes{0x16, 0x01, code, 0x00, 0x00};
        bytes.resize(5 + body, 0x42);
        bytes.insert(bytes.end(), {crcHigh, crcLow});
        return bytes;
    }
};
constexpr GoodReply kExpectations[] = {
    {0x8A, 0x8A, 16, 0x5B, 0x90},   // version
    {0x89, 0x90, 0, 0x12, 0x6C},    // link: acknowledge
    {0x20, 0x20, 4096, 0x7B, 0x57}, // packet: data
};

std::vector<std::uint8_t> randomBytes(std::mt19937& random, std::size_t count)
{
    std::vector<std::uint8_t> bytes(count);
    for (auto& byte : bytes) {
        byte = static_cast<std::uint8_t>(random());
        // Lean towards the bytes that steer the receiver.
        if (random() % 4 == 0)
            byte = std::array<std::uint8_t, 5>{0x16, 0x01, 0x15, 0x90, 0x20}[random() % 5];
    }
    return bytes;
}

// Runs one exchange while `line` trickles in, in random pieces and at random times.
ExchangeStatus receive(LinkSession& session, MemoryLink& memory, ManualClock& clock, std::mt19937& random,
                       std::vector<std::uint8_t> line)
{
    std::size_t at = 0;
    ExchangeStatus status = ExchangeStatus::Pending;
    while (status == ExchangeStatus::Pending) {
        if (at < line.size()) {
            const std::size_t piece = std::min<std::size_t>(line.size() - at, 1 + random() % 700);
            memory.unit().write(std::span(line).subspan(at, piece));
            at += piece;
        }
        clock.advance(random() % 3 == 0 ? random() % 1200 : random() % 20);
        status = session.poll(clock.now());
    }
    return status;
}

} // namespace

TEST(RandomReplies, NeverPassAsGoodUnlessTheyAreGood)
{
    std::mt19937 random(20240611);
    ManualClock clock;
    MemoryLink memory;
    memory.tool().open();
    LinkSession session(memory.tool());
    int good = 0;
    for (int round = 0; round < 3000; ++round) {
        const GoodReply& expected = kExpectations[random() % std::size(kExpectations)];
        const std::uint8_t command = expected.command;
        session.kind = random() % 2 ? TransferKind::Database : TransferKind::Voices;
        session.packetIndex = static_cast<int>(random() % 12);
        session.blockSlot = static_cast<int>(random() % 11);
        const int indexBefore = session.packetIndex;
        session.start(command, session.packetIndex, false, clock.now());

        auto line = randomBytes(random, random() % 4400);
        // Now and then a real reply in the noise, so the good path is walked too.
        const std::vector<std::uint8_t> reply = random() % 3 == 0 ? expected.frame() : std::vector<std::uint8_t>{};
        const std::size_t at = random() % 2 ? 0 : random() % (line.size() + 1);
        line.insert(line.begin() + static_cast<std::ptrdiff_t>(at), reply.begin(), reply.end());
        const ExchangeStatus status = receive(session, memory, clock, random, line);
        ASSERT_NE(status, ExchangeStatus::Sent);
        if (status == ExchangeStatus::Good) {
            ++good;
            // Only the good reply itself passes, byte for byte.
            ASSERT_FALSE(reply.empty()) << "round " << round;
            ASSERT_TRUE(std::equal(reply.begin(), reply.end(), session.rxBuffer.begin())) << "round " << round;
        }
        const bool stored = status == ExchangeStatus::Good && command == CMD_PACKET;
        ASSERT_EQ(session.packetIndex, indexBefore + (stored ? 1 : 0));
        ASSERT_GE(session.blockSlot, 0);
        ASSERT_LE(session.blockSlot, 10);
    }
    EXPECT_GT(good, 100); // the good path was really taken
}

TEST(RandomRequests, DoNotUpsetTheSimulatedUnit)
{
    std::mt19937 random(99);
    ManualClock clock;
    MemoryLink memory;
    SimulatedUnit unit(memory.unit());
    memory.tool().open();
    std::vector<std::uint8_t> sent;
    for (int round = 0; round < 2000; ++round) {
        auto bytes = randomBytes(random, random() % 5000);
        // Valid requests now and then, so the unit moves between its modes.
        if (random() % 2 == 0) {
            std::vector<std::uint8_t> request(7);
            const std::array<std::uint8_t, 8> commands{CMD_LINK,           CMD_WRITE_VOICES, CMD_READ_DATABASE,
                                                       CMD_READ_VOICES,    CMD_PACKET,       CMD_END,
                                                       CMD_WRITE_DATABASE, CMD_VERSION};
            buildFrame(request, kFromTool, commands[random() % commands.size()], static_cast<std::uint16_t>(random()),
                       {});
            bytes.insert(bytes.begin(), request.begin(), request.end());
            sent.push_back(request[2]);
        }
        memory.tool().write(bytes);
        clock.advance(random() % 700);
        unit.poll(clock.now());
        memory.tool().purge(Purge::Receive);
    }
    // Noise never passes for a request: what the unit heard is some of the
    // requests sent, in order (a request landing in a half-collected frame is lost).
    const auto& heard = unit.requests();
    auto next = sent.begin();
    for (std::uint8_t command : heard) {
        next = std::find(next, sent.end(), command);
        ASSERT_NE(next, sent.end());
        ++next;
    }
    EXPECT_GT(heard.size(), sent.size() / 3);
}
