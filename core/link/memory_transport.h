#pragma once
// Two transports joined back to back in memory: what one end writes the other
// reads. Tests put a scripted or simulated unit on the far end; the built-in
// demo unit uses the same pair.

#include "core/link/transport.h"

#include <deque>
#include <optional>
#include <string>
#include <vector>

namespace rk4::link {

class MemoryLink {
  public:
    MemoryLink();
    MemoryLink(const MemoryLink&) = delete;
    MemoryLink& operator=(const MemoryLink&) = delete;

    Transport& tool() { return toolEnd; }
    Transport& unit() { return unitEnd; }
    const Transport& tool() const { return toolEnd; }

    // Makes the tool end's next open() fail with this detail, as a missing or
    // locked port would.
    void refuseOpen(std::string detail) { refusal = std::move(detail); }
    // Bytes written by the tool and not yet read by the unit, and the reverse.
    std::size_t pendingToUnit() const { return toUnit.size(); }
    std::size_t pendingToTool() const { return toTool.size(); }

  private:
    class End final : public Transport {
      public:
        End(std::deque<std::uint8_t>& inbox, std::deque<std::uint8_t>& outbox,
            const std::optional<std::string>* refusal)
            : inbox(inbox), outbox(outbox), refusal(refusal)
        {}
        OpenResult open() override;
        bool isOpen() const override { return opened; }
        void close() override { opened = false; }
        bool write(std::span<const std::uint8_t> bytes) override;
        bool allSent() override { return true; }
        std::size_t read(std::span<std::uint8_t> buffer) override;
        void purge(Purge side) override;

        bool opened = false;

      private:
        std::deque<std::uint8_t>& inbox;
        std::deque<std::uint8_t>& outbox;
        const std::optional<std::string>* refusal;
    };

    std::deque<std::uint8_t> toUnit;
    std::deque<std::uint8_t> toTool;
    std::optional<std::string> refusal;
    End toolEnd;
    End unitEnd;
};

// Holds a transport's writes to the pace of a serial line (10 bits a byte):
// bytes leave at one per character time and allSent() holds until the last
// has gone, as a UART's would. Pacing both ends of a memory link makes a
// transfer take as long as it would on the wire. Reading is not held back:
// the bytes read have already been paced by the writer.
class PacedTransport final : public Transport {
  public:
    PacedTransport(Transport& inner, const Clock& clock, unsigned baud = 9600);

    OpenResult open() override { return inner.open(); }
    bool isOpen() const override { return inner.isOpen(); }
    void close() override { inner.close(); }
    bool write(std::span<const std::uint8_t> bytes) override;
    bool allSent() override;
    std::size_t unsent() override;
    std::size_t read(std::span<std::uint8_t> buffer) override;
    void purge(Purge side) override;
    LinkTiming timing() const override { return inner.timing(); }
    int readableDescriptor() const override { return inner.readableDescriptor(); }

    // Microseconds one character takes on the line.
    std::uint64_t characterMicros() const { return characterTime; }

  private:
    void release();
    std::uint64_t nowMicros() const { return clock.now() * 1000; }

    Transport& inner;
    const Clock& clock;
    std::uint64_t characterTime;
    std::deque<std::uint8_t> outgoing;
    std::uint64_t sendLineFree = 0; // when the line is done with the last byte released
};

} // namespace rk4::link
