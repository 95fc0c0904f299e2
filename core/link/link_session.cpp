#include "core/link/link_session.h"

#include "core/common/bytes.h"

#include <algorithm>

namespace rk4::link {

LinkSession::LinkSession(Transport& transport)
    : staging(static_cast<std::size_t>(kBlockPackets) * kPacketSize), timing(transport.timing()), line(transport)
{}

int LinkSession::CalcTXCRC(int length)
{
    const std::span<std::uint8_t> buffer(txBuffer);
    writeBE16(buffer, static_cast<std::size_t>(length), crc16(buffer.first(static_cast<std::size_t>(length))));
    return length + 2;
}

bool LinkSession::CheckRXCRC(int length) const
{
    if (length < 2 || length > kFrameBufferSize)
        return false;
    const std::span<const std::uint8_t> buffer(rxBuffer);
    const auto body = static_cast<std::size_t>(length - 2);
    return crc16(buffer.first(body)) == readBE16(buffer, body);
}

int LinkSession::MakeTXMessage(std::uint8_t command, int packetNumber, bool withData)
{
    // A stale reply must never pass for the answer to this request.
    std::fill_n(rxBuffer.begin(), 10, 0);
    progress = false;

    txBuffer[0] = kStartByte;
    txBuffer[1] = kFromTool;
    txBuffer[2] = command;
    txBuffer[3] = 0;
    txBuffer[4] = 0;
    if (command == CMD_PACKET)
        writeBE16(txBuffer, 3, static_cast<std::uint16_t>(packetNumber));

    if (command == CMD_PACKET && withData) {
        int slot = packetNumber;
        if (kind != TransferKind::Database) {
            if (blockSlot >= kBlockPackets) {
                blockSlot = 0;
                // A short read at the end of the file leaves the rest of the buffer as it was.
                if (source) {
                    source->read(reinterpret_cast<char*>(staging.data()), static_cast<std::streamsize>(staging.size()));
                    source->clear(source->rdstate() & ~(std::ios::failbit | std::ios::eofbit));
                }
            }
            slot = blockSlot;
        }
        if (slot < 0 || slot >= kBlockPackets) {
            txLength = 0;
            return 0;
        }
        const auto from = staging.begin() + static_cast<std::ptrdiff_t>(slot) * kPacketSize;
        std::copy(from, from + kPacketSize, txBuffer.begin() + kHeaderLength);
        txLength = CalcTXCRC(kHeaderLength + kPacketSize);
    } else {
        txLength = CalcTXCRC(kHeaderLength);
    }
    return txLength;
}

void LinkSession::start(std::uint8_t command, int packetNumber, bool withData, Millis now)
{
    const ExpectedReply reply = expectedReplyFor(command, withData);
    replyAwaited = reply.awaited;
    expectedCode = reply.code;
    expectedLength = link::expectedLength(expectedCode);
    collected = 0;

    if (MakeTXMessage(command, packetNumber, withData) == 0) {
        phase = Phase::Done;
        state = ExchangeStatus::Failed;
        return;
    }
    progress = command == CMD_PACKET && !withData;
    dwell = command == CMD_PACKET;
    line.purge(timing.beforeRequest);
    line.write(std::span<const std::uint8_t>(txBuffer).first(static_cast<std::size_t>(txLength)));
    // A write that has not finished by then is abandoned; the reply wait fails.
    writeDeadline = now + static_cast<Millis>(txLength) + timing.writeSlack;
    phase = Phase::Sending;
    state = ExchangeStatus::Pending;
    poll(now);
}

ExchangeStatus LinkSession::poll(Millis now)
{
    if (phase == Phase::Sending) {
        if (!line.allSent() && now < writeDeadline)
            return state;
        if (!replyAwaited) {
            phase = Phase::Done;
            return state = ExchangeStatus::Sent;
        }
        beginReceiving(now);
    }
    if (phase == Phase::Receiving)
        receive(now);
    return state;
}

void LinkSession::beginReceiving(Millis now)
{
    phase = Phase::Receiving;
    byteDeadline = now + (dwell ? timing.dwellFirstByteTimeout : timing.firstByteTimeout);
}

void LinkSession::receive(Millis now)
{
    // Never read past the expected length: the rest belongs to nobody and is
    // purged before the next request.
    std::array<std::uint8_t, 512> chunk{};
    while (collected < expectedLength) {
        const auto wanted = std::min<std::size_t>(chunk.size(), static_cast<std::size_t>(expectedLength - collected));
        const std::size_t count = line.read(std::span(chunk).first(wanted));
        if (count == 0)
            break;
        byteDeadline = now + timing.byteTimeout;
        for (std::size_t i = 0; i < count && collected < expectedLength; ++i) {
            const std::uint8_t byte = chunk[i];
            if (collected == 0 && byte == kBusyByte) {
                rxBuffer[0] = byte;
                phase = Phase::Done;
                state = ExchangeStatus::Busy;
                return;
            }
            if (collected == 0 && byte != kStartByte)
                continue; // line noise before the frame
            rxBuffer[static_cast<std::size_t>(collected++)] = byte;
            if (progress && collected > 300) {
                progress = false;
                if (showProgress)
                    showProgress(kReceivingPacket + std::to_string(packetIndex + 1));
            }
        }
    }
    if (collected >= expectedLength || now >= byteDeadline) {
        phase = Phase::Done;
        state = finishReply();
    }
}

ExchangeStatus LinkSession::finishReply()
{
    if (collected < expectedLength)
        return ExchangeStatus::Failed;
    if (rxBuffer[0] != kStartByte || rxBuffer[1] != kFromUnit || !CheckRXCRC(expectedLength))
        return ExchangeStatus::Failed;
    if (rxBuffer[2] != expectedCode)
        return ExchangeStatus::Failed;
    if (expectedCode == REPLY_DATA && expectedLength == kDataFrameLength)
        return storeDataReply() ? ExchangeStatus::Good : ExchangeStatus::Failed;
    return ExchangeStatus::Good;
}

bool LinkSession::storeDataReply()
{
    const int slot = kind == TransferKind::Database ? packetIndex : blockSlot;
    if (slot < 0 || slot >= kBlockPackets)
        return false;
    std::copy_n(rxBuffer.begin() + kHeaderLength, kPacketSize,
                staging.begin() + static_cast<std::ptrdiff_t>(slot) * kPacketSize);
    if (kind != TransferKind::Database)
        blockSlot = (blockSlot + 1) % kBlockPackets;
    ++packetIndex;
    return true;
}

Millis LinkSession::nextPollAt(Millis now) const
{
    switch (phase) {
    case Phase::Sending: return std::min(writeDeadline, now + kPollInterval);
    case Phase::Receiving: return std::min(byteDeadline, now + kPollInterval);
    default: return now;
    }
}

int LinkSession::dataBytesMoved()
{
    if (txLength > kShortFrameLength) {
        if (phase != Phase::Sending)
            return txLength;
        return txLength - static_cast<int>(std::min<std::size_t>(line.unsent(), static_cast<std::size_t>(txLength)));
    }
    return expectedLength > kShortFrameLength ? collected : 0;
}

bool LinkSession::IsEndOfData() const
{
    return rxBuffer[0] == kStartByte && rxBuffer[1] == kFromUnit && rxBuffer[2] == REPLY_ACK &&
           CheckRXCRC(kShortFrameLength);
}

std::string LinkSession::product() const
{
    return std::string(rxBuffer.begin() + kProductOffset, rxBuffer.begin() + kProductOffset + kProductLength);
}

std::string LinkSession::firmware() const
{
    return std::string(rxBuffer.begin() + kFirmwareOffset, rxBuffer.begin() + kFirmwareOffset + kFirmwareLength);
}

} // namespace rk4::link
