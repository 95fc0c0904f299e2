#pragma once
// The byte mover under the frame layer. A transport never blocks: write()
// queues, read() returns what has arrived, and allSent() says when the queued
// bytes have left, so the step machine above can keep its own deadlines.

#include "core/common/clock.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace rk4::link {

enum class Purge { Receive, Transmit, Both };

// The deadlines of one exchange. The serial port's values are the defaults; a
// transport over a slower path (the modem) supplies its own.
struct LinkTiming {
    Millis writeSlack = 500;        // a write may take its length in ms plus this
    Millis byteTimeout = 1000;      // silence after a byte that ends a reply
    Millis firstByteTimeout = 1000; // silence before the first byte of a reply
    // Before the first byte of a reply to a packet (sent or asked for), which
    // may take the far end longer to start.
    Millis dwellFirstByteTimeout = 1000;
    // What is purged before each request.
    Purge beforeRequest = Purge::Receive;
};

struct OpenResult {
    bool ok = false;
    std::string detail; // why it failed, in words for the technician
};

class Transport {
  public:
    virtual ~Transport() = default;

    virtual OpenResult open() = 0;
    virtual bool isOpen() const = 0;
    virtual void close() = 0;

    // Queues every byte for sending; false when the line is gone.
    virtual bool write(std::span<const std::uint8_t> bytes) = 0;
    // True once everything written has left the machine. Also moves queued
    // bytes on, so a caller waiting for the write calls it repeatedly.
    virtual bool allSent() = 0;
    // How many of the bytes written have not yet left the machine, so a
    // progress display can follow the wire; 0 when the transport cannot tell.
    virtual std::size_t unsent() { return 0; }
    // Copies up to buffer.size() bytes that have arrived; 0 when none. Read
    // errors are cleared here and count as no bytes, so reading goes on.
    virtual std::size_t read(std::span<std::uint8_t> buffer) = 0;
    virtual void purge(Purge side) = 0;

    virtual LinkTiming timing() const { return {}; }
    // A descriptor that becomes readable when bytes arrive, for a driver that
    // wants to sleep in poll() or a QSocketNotifier; -1 when there is none and
    // the driver must simply poll again soon.
    virtual int readableDescriptor() const { return -1; }
};

} // namespace rk4::link
