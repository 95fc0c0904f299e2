#include "core/link/frame.h"
#include "core/link/link_session.h"
#include "core/link/memory_transport.h"

#include <gtest/gtest.h>

#include <numeric>
#include <sstream>

using namespace rk4::link;

namespace {

struct Frames : ::testing::Test {
    MemoryLink memory;
    LinkSession session{memory.tool()};
};

} // namespace

TEST(Crc, IsTheReflected0xA001CrcStartingAt0xFFFF)
{
    const std::string check = "123456789";
    EXPECT_EQ(crc16(std::span(reinterpret_cast<const std::uint8_t*>(check.data()), check.size())), 0x4B37);
}

TEST_F(Frames, RequestHeaderCarriesItsCrcHighByteFirst)
{
    ASSERT_EQ(session.MakeTXMessage(CMD_VERSION, 10000, false), 7);
    const std::array<std::uint8_t, 5> header{0x16, 0x00, 0x8A, 0x00, 0x00};
    const std::uint16_t crc = crc16(header);
    EXPECT_TRUE(std::equal(header.begin(), header.end(), session.txBuffer.begin()));
    EXPECT_EQ(session.txBuffer[5], crc >> 8);
    EXPECT_EQ(session.txBuffer[6], crc & 0xFF);
    EXPECT_NE(crc >> 8, crc & 0xFF); // the order is visible
}

TEST_F(Frames, PacketNumberGoesOutBigEndianOnlyWithPacketCommands)
{
    session.MakeTXMessage(CMD_PACKET, 256, false);
    EXPECT_EQ(session.txBuffer[3], 0x01);
    EXPECT_EQ(session.txBuffer[4], 0x00);
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

TEST_F(Frames, DatabasePacketsComeFromTheSlotOfTheirNumber)
{
    for (std::size_t i = 0; i < session.staging.size(); ++i)
        session.staging[i] = static_cast<std::uint8_t>(i / kPacketSize + 1);
    ASSERT_EQ(session.MakeTXMessage(CMD_PACKET, 1, true), 4103);
    EXPECT_EQ(session.txBuffer[5], 2);
    EXPECT_EQ(session.txBuffer[5 + 4095], 2);
    const std::span<const std::uint8_t> frame(session.txBuffer.data(), 4103);
    EXPECT_EQ(crc16(frame.first(4101)), (frame[4101] << 8) | frame[4102]);
    // No slot for such a number: nothing is built.
    EXPECT_EQ(session.MakeTXMessage(CMD_PACKET, 10, true), 0);
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
