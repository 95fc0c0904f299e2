#pragma once
// The unit's side of the link, for tests, the built-in demo unit and the
// rk4-unitsim program: it answers the version query, the two link handshakes,
// the announces, data packets both ways and the end of a session, keeps what
// it is sent and serves it back, and can be told to misbehave.

#include "core/common/clock.h"
#include "core/link/frame.h"
#include "core/link/link_session.h"
#include "core/link/memory_transport.h"
#include "core/link/transport.h"

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace rk4::link {

enum class FaultKind {
    Nak,        // answer busy (0x15) instead of acting
    Noise,      // act, but send line noise before the reply
    CorruptCrc, // act, but spoil the reply's CRC
    Silence,    // the request is lost: no action, no reply
};

// One misbehaviour, applied to the requests it matches: skip the first
// `skip` of them, then hit the next `times` (0: every one after that).
struct Fault {
    FaultKind kind = FaultKind::Silence;
    int command = -1; // request code, -1 for any request
    int skip = 0;
    int times = 1;
    int seen = 0; // matching requests so far
};

// "kind[:command[:skip[:times]]]", kind one of nak, noise, crc, silence and
// command a name (version, link, link-alt, write-database, write-voices,
// write-vocabulary, read-database, read-voices, packet, end, any) or a code
// such as 0x8a. Nothing for text that is not such a fault.
std::optional<Fault> parseFault(const std::string& text);

struct UnitOptions {
    std::string product = "RK4-CEL"; // 7 characters in the version reply
    std::string firmware = "2.14";   // 4 characters
    // An older unit: no version reply, and only the alternate link is acknowledged.
    bool olderUnit = false;
    // After the first voice packet the unit erases its voice store and answers
    // busy for this long.
    Millis voiceEraseMillis = 8000;
    std::vector<Fault> faults;
};

// What the unit holds. The database is in the image's own byte order (as in
// a .dat file); empty means nothing stored, and a read then serves the
// default image (database) or no data (voices).
struct UnitStore {
    std::vector<std::uint8_t> database;
    std::vector<std::uint8_t> vocabulary;
    std::vector<std::uint8_t> voices;
};

class SimulatedUnit {
  public:
    SimulatedUnit(Transport& line, UnitOptions options = {});

    // Reads what the tool sent and answers it; never blocks.
    void poll(Millis now);

    UnitStore store;
    // Called when a session that sent data has ended, with what was replaced.
    std::function<void(TransferKind)> onStored;

    // Every valid request heard, by command code, faults included.
    const std::vector<std::uint8_t>& requests() const { return heard; }
    bool linked() const { return link != Link::None; }
    bool alternateLink() const { return link == Link::Alternate; }

  private:
    enum class Link { None, Normal, Alternate };
    enum class Mode { None, Download, Upload };

    void take(std::uint8_t byte, Millis now);
    void handle(Millis now);
    void act(std::uint8_t command, std::uint16_t number, Millis now, std::vector<std::uint8_t>& reply);
    void commitDownload();
    const Fault* faultFor(std::uint8_t command);
    void send(std::vector<std::uint8_t> reply, const Fault* fault);

    Transport& line;
    UnitOptions options;
    std::vector<std::uint8_t> heard;
    std::array<std::uint8_t, kFrameBufferSize> frame{};
    int collected = 0;
    Millis lastByte = 0;
    Link link = Link::None;
    Mode mode = Mode::None;
    TransferKind kind = TransferKind::Database;
    std::vector<std::uint8_t> received; // download: packets by number
    std::vector<bool> receivedPackets;
    std::vector<std::uint8_t> uploading; // upload: the bytes served
    Millis busyUntil = 0;
    unsigned noiseSeed = 1;
};

// A transport for the tool with a simulated unit on its far end, all in
// memory: the programmer's demo unit and the tests. The unit runs whenever the
// tool touches the transport. With a baud rate both directions keep the pace
// of a serial line, by the given clock.
class SimulatedUnitPort final : public Transport {
  public:
    explicit SimulatedUnitPort(const Clock& clock, UnitOptions options = {}, unsigned baud = 0);

    SimulatedUnit& unit() { return simulated; }
    MemoryLink& memory() { return link; }

    OpenResult open() override { return toolSide().open(); }
    bool isOpen() const override { return link.tool().isOpen(); }
    void close() override { toolSide().close(); }
    bool write(std::span<const std::uint8_t> bytes) override;
    bool allSent() override;
    std::size_t unsent() override { return toolSide().unsent(); }
    std::size_t read(std::span<std::uint8_t> buffer) override;
    void purge(Purge side) override;

  private:
    Transport& toolSide() { return toolPaced ? static_cast<Transport&>(*toolPaced) : link.tool(); }
    void runUnit() { simulated.poll(clock.now()); }

    const Clock& clock;
    MemoryLink link;
    std::optional<PacedTransport> toolPaced;
    std::optional<PacedTransport> unitPaced;
    SimulatedUnit simulated;
};

} // namespace rk4::link
