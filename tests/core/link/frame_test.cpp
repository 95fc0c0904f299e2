#include "core/link/frame.h"
#include "core/link/link_session.h"
#include "core/link/memory_transport.h"

#include <gtest/gtest.h>

#include <sstream>

using namespace rk4::link;

namespace {

struct Frames : ::testing::Test {
    MemoryLink memory;
    LinkSession session{memory.tool()};
};

} // namespace

TEST_F(Frames, RequestsCarryTheirCrcHighByteFirstAndPacketNumbersBigEndian)
{
    // CRC-16 from 0xFFFF, reflected polynomial 0xA001.
    ASSERT_EQ(session.MakeTXMessage(CMD_VERSION, 10000, false), 7);
    EXPECT_EQ(std::vector(session.txBuffer.begin(), session.txBuffer.begin() + 7),
              (std::vector<std::uint8_t>{0x16, 0x00, 0x8A, 0x00, 0x00, 0x29, 0x4C}));
    session.MakeTXMessage(CMD_PACKET, 256, false);
    EXPECT_EQ(std::vector(session.txBuffer.begin(), session.txBuffer.begin() + 7),
              (std::vector<std::uint8_t>{0x16, 0x00, 0x20, 0x01, 0x00, 0x99, 0x6D}));
    // The dummy number the session passes with other commands is not sent.
    session.MakeTXMessage(CMD_LINK, 10000, false);
    EXPECT_EQ(session.txBuffer[3], 0x00);
    EXPECT_EQ(session.txBuffer[4], 0x00);
}

TEST_F(Frames, BuildingARequestForgetsTheLastReply)
{
    session.rxBuffer.fill(0x16);
    session.progress = true;
    session.MakeTXMessage(CMD_LINK, 0, false);
    EXPECT_TRUE(std::all_of(session.rxBuffer.begin(), session.rxBuffer.begin() + 10, [](auto b) { return b == 0; }));
    EXPECT_EQ(session.rxBuffer[10], 0x16);
    EXPECT_FALSE(session.progress);
}

TEST_F(Frames, StreamedPacketsRefillTheStagingBufferWhenTheBlockSlotReachesTen)
{
    // Eleven packets' worth of numbered bytes: packet p is filled with p + 1.
    std::string file;
    for (int packet = 0; packet < 11; ++packet)
        file.append(kPacketSize, static_cast<char>(packet + 1));
    std::istringstream source(file);
    session.kind = TransferKind::Vocabulary;
    session.source = &source;
    session.blockSlot = 10;

    session.MakeTXMessage(CMD_PACKET, 0, true);
    EXPECT_EQ(session.blockSlot, 0);
    EXPECT_EQ(session.txBuffer[5], 1);
    // A repeat of the same slot does not read the file again.
    session.MakeTXMessage(CMD_PACKET, 0, true);
    EXPECT_EQ(session.txBuffer[5], 1);
    session.blockSlot = 9;
    session.MakeTXMessage(CMD_PACKET, 9, true);
    EXPECT_EQ(session.txBuffer[5], 10);

    // The second block is one packet long; the rest of the buffer stays as it was.
    session.blockSlot = 10;
    session.MakeTXMessage(CMD_PACKET, 10, true);
    EXPECT_EQ(session.txBuffer[5], 11);
    session.blockSlot = 1;
    session.MakeTXMessage(CMD_PACKET, 11, true);
    EXPECT_EQ(session.txBuffer[5], 2);
}
