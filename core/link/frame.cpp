#include "core/link/frame.h"

#include "core/common/bytes.h"

#include <algorithm>
#include <stdexcept>

namespace rk4::link {

std::uint16_t crc16(std::span<const std::uint8_t> bytes)
{
    std::uint16_t crc = 0xFFFF;
    for (std::uint8_t byte : bytes) {
        crc ^= byte;
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc & 1) ? static_cast<std::uint16_t>((crc >> 1) ^ 0xA001) : static_cast<std::uint16_t>(crc >> 1);
    }
    return crc;
}

int expectedLength(std::uint8_t expectedCode)
{
    switch (expectedCode) {
    case REPLY_VERSION: return kVersionFrameLength;
    case REPLY_DATA: return kDataFrameLength;
    default: return kShortFrameLength;
    }
}

ExpectedReply expectedReplyFor(std::uint8_t command, bool withData)
{
    switch (command) {
    case CMD_VERSION: return {true, REPLY_VERSION};
    case CMD_PACKET: return {true, withData ? REPLY_ACK : REPLY_DATA};
    case CMD_END:
    case CMD_HANGUP: return {false, 0};
    default: return {true, REPLY_ACK};
    }
}

int buildFrame(std::span<std::uint8_t> out, std::uint8_t direction, std::uint8_t code, std::uint16_t number,
               std::span<const std::uint8_t> body)
{
    const std::size_t length = kHeaderLength + body.size();
    if (out.size() < length + 2)
        throw std::length_error("frame buffer too small");
    out[0] = kStartByte;
    out[1] = direction;
    out[2] = code;
    writeBE16(out, 3, number);
    std::copy(body.begin(), body.end(), out.begin() + kHeaderLength);
    writeBE16(out, length, crc16(out.first(length)));
    return static_cast<int>(length + 2);
}

} // namespace rk4::link
