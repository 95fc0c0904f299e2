#pragma once
// One link session: the frame buffers and transfer state of a dialog that
// talks to the unit, and the step machine of a single request/reply exchange.
//
// Driving an exchange:
//
//     session.start(CMD_VERSION, 0, false, clock.now());
//     // later, from a timer or loop, until the status is no longer Pending:
//     ExchangeStatus status = session.poll(clock.now());
//     Millis again = session.nextPollAt(clock.now()); // call poll() by then
//
// start() builds the frame (MakeTXMessage), purges the receive side and
// writes it. poll() waits, without blocking, for the write to finish (at most
// its length in ms + the transport's slack), then collects the reply byte by
// byte under the per-byte deadline and checks it (WaitResponse). The outcome:
//   Good   the reply is right; a data reply has been stored in the staging
//          buffer and packetIndex advanced; a version reply is in rxBuffer
//          (product(), firmware()).
//   Busy   the unit answered NAK (0x15): purge, wait and ask again uncounted.
//   Failed no reply, short, wrong start/direction/code or bad CRC. During an
//          upload, IsEndOfData() then tells whether it was the acknowledge
//          that ends the data.
//   Sent   a request that gets no reply (CMD_END, CMD_HANGUP) has been sent.
// This layer never retries; that is the caller's business.

#include "core/common/clock.h"
#include "core/link/frame.h"
#include "core/link/transport.h"

#include <array>
#include <cstdint>
#include <functional>
#include <istream>
#include <string>
#include <vector>

namespace rk4::link {

// What a transfer moves. Every kind other than Database is streamed through
// the ten-packet block slot.
enum class TransferKind { Database = 0, Vocabulary = 1, Voices = 2 };

enum class ExchangeStatus { Idle, Pending, Good, Busy, Failed, Sent };

// How often an exchange waiting for bytes wants to be polled when its
// transport offers no descriptor to wait on.
inline constexpr Millis kPollInterval = 10;

// The text shown once while a data reply is coming in.
inline constexpr char kReceivingPacket[] = "Receiving packet ";

class LinkSession {
  public:
    explicit LinkSession(Transport& transport);

    Transport& transport() { return line; }

    // Frame buffers and transfer state, plain members as the session needs them.
    std::array<std::uint8_t, kFrameBufferSize> txBuffer{};
    std::array<std::uint8_t, kFrameBufferSize> rxBuffer{};
    int txLength = 0;
    int expectedLength = kShortFrameLength;
    int packetSize = kPacketSize;
    int packetIndex = 0; // packets received so far, or the packet being sent
    int blockSlot = 0;   // 0..10: next slot of the staging buffer for a streamed kind
    std::vector<std::uint8_t> staging;
    TransferKind kind = TransferKind::Database;
    // Where MakeTXMessage reads a streamed download from, ten packets at a time.
    std::istream* source = nullptr;
    // Set by start() for a packet request; cleared when "Receiving packet " is shown.
    bool progress = false;
    LinkTiming timing;
    // Called with "Receiving packet " + (packetIndex + 1) once per data reply.
    std::function<void(const std::string&)> showProgress;

    // Appends the CRC of the first `length` bytes of txBuffer high byte first
    // and returns length + 2.
    int CalcTXCRC(int length);
    // True when the last two of the first `length` bytes of rxBuffer are the
    // CRC of the ones before them.
    bool CheckRXCRC(int length) const;
    // Builds a request in txBuffer and returns its length (7 or 4103), or 0
    // when the payload slot it names does not exist. The packet number goes
    // out only with CMD_PACKET; withData takes the payload from the staging
    // buffer (the database by packet number, a streamed kind by block slot,
    // refilling the buffer from `source` when the slot has reached 10).
    int MakeTXMessage(std::uint8_t command, int packetNumber, bool withData);

    // Begins one exchange (see above). The expected reply follows from the
    // command: a version reply for CMD_VERSION, a data reply for a packet
    // request, nothing for CMD_END and CMD_HANGUP, the acknowledge otherwise.
    void start(std::uint8_t command, int packetNumber, bool withData, Millis now);
    ExchangeStatus poll(Millis now);
    ExchangeStatus status() const { return state; }
    // The latest time poll() must be called again while the exchange is Pending.
    Millis nextPollAt(Millis now) const;

    // Bytes of this exchange's data frame (a packet sent, or a data reply)
    // that have crossed the line so far; 0 for an exchange without one.
    int dataBytesMoved();

    // The 7-byte re-check: the bytes received form a valid acknowledge. After
    // a failed data reply this means the unit has no more data.
    bool IsEndOfData() const;
    // Product name and firmware version of a good version reply.
    std::string product() const;
    std::string firmware() const;

  private:
    enum class Phase { Idle, Sending, Receiving, Done };

    void beginReceiving(Millis now);
    void receive(Millis now);
    ExchangeStatus finishReply();
    bool storeDataReply();

    Transport& line;
    Phase phase = Phase::Idle;
    ExchangeStatus state = ExchangeStatus::Idle;
    std::uint8_t expectedCode = REPLY_ACK;
    bool replyAwaited = true;
    bool dwell = false; // a packet exchange: the reply may be slow to start
    Millis writeDeadline = 0;
    Millis byteDeadline = 0;
    int collected = 0;
};

} // namespace rk4::link
