#pragma once
// Byte transports over POSIX descriptors: a serial port set up for the unit,
// and any other descriptor (the simulated unit's pseudo-terminal master).

#include "core/common/prompter.h"
#include "core/link/transport.h"

#include <string>
#include <vector>

namespace rk4::link {

inline constexpr char kErrorOpeningPort[] = "Error opening COM port";

// A non-blocking descriptor. Writes the descriptor cannot take at once wait
// in a queue that allSent() and read() keep moving.
class FdTransport : public Transport {
  public:
    // Takes ownership of `descriptor` (or none, with -1).
    explicit FdTransport(int descriptor = -1);
    ~FdTransport() override;
    FdTransport(const FdTransport&) = delete;
    FdTransport& operator=(const FdTransport&) = delete;

    OpenResult open() override;
    bool isOpen() const override { return fd >= 0; }
    void close() override;
    bool write(std::span<const std::uint8_t> bytes) override;
    bool allSent() override;
    std::size_t unsent() override;
    std::size_t read(std::span<std::uint8_t> buffer) override;
    void purge(Purge side) override;
    int readableDescriptor() const override { return fd; }

  protected:
    void adopt(int descriptor);

  private:
    bool push();

    int fd = -1;
    std::vector<std::uint8_t> queued;
    bool broken = false;
};

// The line settings that differ between the peers on a serial port.
struct SerialSettings {
    unsigned baud = 9600; // 9600 or 19200
    bool dtr = true;      // DTR held on, or held off
};

// A serial port: exclusive, 8 data bits, no parity, one stop bit, no flow
// control, raw bytes, RTS off; 9600 baud and DTR on for the unit unless told
// otherwise.
class SerialTransport final : public FdTransport {
  public:
    explicit SerialTransport(std::string devicePath = {}, SerialSettings line = {})
        : device(std::move(devicePath)), wire(line)
    {}

    const std::string& path() const { return device; }
    // Takes effect at the next open().
    void setPath(std::string devicePath) { device = std::move(devicePath); }

    OpenResult open() override;

  private:
    std::string device;
    SerialSettings wire;
};

// Why opening `path` failed with `error` (an errno value), in words a
// technician can act on.
std::string openFailureDetail(const std::string& path, int error);

// Opens the port unless it is open already. A port that will not open gives
// "Error opening COM port" (no caption) with the cause as detail, and false.
bool SetUpPort(Transport& port, Prompter& prompter);

// Sleeps until `transport` has bytes to read or `timeout` ms have passed, for
// a command-line driver between two polls. Returns at once for a transport
// without a descriptor.
void waitForBytes(const Transport& transport, Millis timeout);

} // namespace rk4::link
