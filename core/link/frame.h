#pragma once
// The unit link's frames: codes, lengths and the CRC-16 that guards them.
//
// Request (tool to unit):  16 00 command packet(hi lo) [4096 payload] crc(hi lo)
// Reply   (unit to tool):  16 01 code    spare(2)      [body]         crc(hi lo)
// Every multi-byte number on the wire is big-endian, the CRC included.

#include <cstddef>
#include <cstdint>
#include <span>

namespace rk4::link {

// Command codes sent by the tool.
inline constexpr std::uint8_t CMD_VERSION = 0x8A;
inline constexpr std::uint8_t CMD_LINK = 0x89;
inline constexpr std::uint8_t CMD_LINK_ALT = 0x88;
inline constexpr std::uint8_t CMD_WRITE_DATABASE = 0x00;
inline constexpr std::uint8_t CMD_WRITE_VOICES = 0x01;
inline constexpr std::uint8_t CMD_WRITE_VOCABULARY = 0x02;
inline constexpr std::uint8_t CMD_READ_DATABASE = 0x40;
inline constexpr std::uint8_t CMD_READ_VOICES = 0x41;
inline constexpr std::uint8_t CMD_PACKET = 0x20;
inline constexpr std::uint8_t CMD_END = 0x83;
inline constexpr std::uint8_t CMD_HANGUP = 0x85;

// Reply codes sent by the unit.
inline constexpr std::uint8_t REPLY_ACK = 0x90;
inline constexpr std::uint8_t REPLY_VERSION = 0x8A;
inline constexpr std::uint8_t REPLY_DATA = 0x20;

inline constexpr std::uint8_t kStartByte = 0x16; // SYN
inline constexpr std::uint8_t kBusyByte = 0x15;  // NAK: the unit is busy, ask again
inline constexpr std::uint8_t kFromTool = 0x00;
inline constexpr std::uint8_t kFromUnit = 0x01;

inline constexpr int kHeaderLength = 5;
inline constexpr int kPacketSize = 4096;
inline constexpr int kBlockPackets = 10; // packets held by the staging buffer
inline constexpr int kShortFrameLength = 7;
inline constexpr int kVersionFrameLength = 23;
inline constexpr int kDataFrameLength = kHeaderLength + kPacketSize + 2; // 4103
inline constexpr int kFrameBufferSize = 4106;

// Version reply body: product name and firmware version, ASCII, not terminated.
inline constexpr int kProductOffset = 5;
inline constexpr int kProductLength = 7;
inline constexpr int kFirmwareOffset = 12;
inline constexpr int kFirmwareLength = 4;

// CRC-16, register 0xFFFF, reflected polynomial 0xA001, no final XOR
// (the Modbus CRC; the link sends it high byte first all the same).
std::uint16_t crc16(std::span<const std::uint8_t> bytes);

// Length of the reply awaited for a reply code: 23 for a version reply, 4103
// for a data reply, 7 for anything else.
int expectedLength(std::uint8_t expectedCode);

// The reply code a request waits for, or nothing for the commands that get
// no reply (CMD_END, CMD_HANGUP).
struct ExpectedReply {
    bool awaited = true;
    std::uint8_t code = REPLY_ACK;
};
ExpectedReply expectedReplyFor(std::uint8_t command, bool withData);

// Writes a complete frame into `out` (header, optional body, CRC) and returns
// its length. `out` must hold kHeaderLength + body.size() + 2 bytes.
int buildFrame(std::span<std::uint8_t> out, std::uint8_t direction, std::uint8_t code, std::uint16_t number,
               std::span<const std::uint8_t> body);

} // namespace rk4::link
