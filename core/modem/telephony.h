#pragma once
// The telephone line through a Hayes-compatible modem on a serial port. It
// keeps the operations of a line device (initialise, open, make a call,
// answer, drop, shut down), reports the call's states as the modem's result
// codes arrive, and names its failures with LINEERR_ codes. Like every step
// machine here it never blocks: an operation is started, poll(now) moves it
// on, and busy() says when it has finished with error() telling how.
//
//     line.telephonyInitialize(now);  ... poll until !busy(), error() == 0
//     line.telephonyOpen(now);        ... the same
//     line.lineMakeCall("2255669", now);
//     // onCallState reports DialTone, Ringback, Connected or Idle (with the
//     // modem's word: "BUSY"); once connected, callPort() carries the frames.
//     line.lineDrop(now);             ... escape, hang up, DTR off
//     line.telephonyShutdown(now);    ... restores the modem's own profile

#include "core/common/clock.h"
#include "core/link/transport.h"
#include "core/modem/result_reader.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace rk4::modem {

enum class CallState { Idle, DialTone, Ringback, Offering, Connected, Disconnected };
const char* callStateName(CallState state);

// How long the modem is given, in milliseconds.
inline constexpr Millis kCommandTimeout = 2000;
inline constexpr int kProbeAttempts = 3;
inline constexpr Millis kDialTimeout = 60000;
inline constexpr Millis kEscapeGuard = 1000;
inline constexpr Millis kEscapeReplyWait = 1500;
inline constexpr Millis kHangUpTimeout = 3000;
inline constexpr Millis kDtrDropTime = 500;

// The modem link's deadlines: a slow, buffered path.
inline constexpr link::LinkTiming kModemTiming{50, 4000, 4000, 8000, link::Purge::Both};

// The port while a call is connected: the frames' bytes pass through, and a
// lost carrier is noticed (the modem's "NO CARRIER" in the data, or the
// carrier-detect line falling where the port reports it).
class ModemTransport final : public link::Transport {
  public:
    explicit ModemTransport(link::Transport& port) : port(port) {}

    // The session's open() succeeds only on a connected call; close() leaves
    // the call up, and the next open() is a fresh port to the session again.
    link::OpenResult open() override;
    bool isOpen() const override { return claimed && connected; }
    void close() override { claimed = false; }
    bool write(std::span<const std::uint8_t> bytes) override;
    bool allSent() override { return port.allSent(); }
    std::size_t unsent() override { return port.unsent(); }
    std::size_t read(std::span<std::uint8_t> buffer) override;
    void purge(link::Purge side) override;
    link::LinkTiming timing() const override { return kModemTiming; }
    int readableDescriptor() const override { return port.readableDescriptor(); }

    bool lost() const { return carrierLost; }
    // Reads and drops what arrives while no transfer runs, so a lost carrier
    // is still noticed.
    void drain();

  private:
    friend class Telephony;
    void begin();
    void end()
    {
        connected = false;
        claimed = false;
    }
    void watch(std::span<const std::uint8_t> bytes);

    link::Transport& port;
    bool connected = false;
    bool claimed = false;
    bool carrierLost = false;
    bool carrierLineSeen = false;
    std::size_t matched = 0; // characters of "\r\nNO CARRIER\r\n" seen in a row
};

// The carrier-detect line of a terminal device; nothing where the device has
// no modem lines (a pseudo-terminal).
std::optional<bool> carrierDetect(int descriptor);
// Drops DTR by setting the line speed to 0 and gives back the settings to
// restore; false where the device has no modem lines.
bool dropDtr(int descriptor, std::string& saved);
void restoreLine(int descriptor, const std::string& saved);

class Telephony {
  public:
    explicit Telephony(link::Transport& port, std::string initString);
    Telephony(const Telephony&) = delete;
    Telephony& operator=(const Telephony&) = delete;

    // Opens the port and finds a modem on it: "AT" answered by "OK".
    void telephonyInitialize(Millis now);
    // Sends the device configuration (the set-up string) and opens the line.
    void telephonyOpen(Millis now);
    // Dials; a non-zero LINEERR_ code when the call cannot be placed. The
    // call's progress follows through onCallState.
    std::uint32_t lineMakeCall(const std::string& dialable, Millis now);
    // Ends the call: the escape with its guard times, ATH, then DTR off
    // where the port allows.
    void lineDrop(Millis now);
    // Drops any call, gives the modem its own profile back and closes the port.
    void telephonyShutdown(Millis now);

    void poll(Millis now);
    Millis nextPollAt(Millis now) const;
    // An operation is under way.
    bool busy() const { return operation != Operation::None; }
    // How the last operation ended: 0, or a LINEERR_ code with the cause in words.
    std::uint32_t error() const { return lastError; }
    const std::string& errorDetail() const { return lastDetail; }

    bool initialized() const { return phase != Phase::Closed; }
    bool lineOpen() const { return opened; }
    bool callActive() const { return phase == Phase::Dialling || phase == Phase::Answering || connected(); }
    bool connected() const { return phase == Phase::Connected; }
    CallState callState() const { return state; }

    // The device configuration, read and set as the set-up string.
    const std::string& deviceConfig() const { return initString; }
    void setDeviceConfig(std::string config) { initString = std::move(config); }

    // Answer a ringing line (off unless a caller turns it on; shut-down clears it).
    bool answerCalls = false;

    ModemTransport& callPort() { return data; }

    std::function<void(CallState, const std::string& detail)> onCallState;
    // Every line the modem says and every command sent, for a log.
    std::function<void(const std::string&)> onModemLine;

  private:
    enum class Operation { None, Initialize, Open, Drop, Shutdown };
    enum class Phase {
        Closed,
        Probe,
        Ready,
        Configure,
        Dialling,
        Answering,
        Connected,
        AbortDial,
        EscapeBefore,
        EscapeAfter,
        HangUp,
        DtrLow,
        Restore,
    };

    void send(const std::string& command, Millis now, Millis timeout);
    void finish(std::uint32_t error, std::string detail = {});
    void setState(CallState next, const std::string& detail = {});
    void readLines();
    void handle(ModemResult result, const std::string& line, Millis now);
    void timeout(Millis now);
    void hangUp(Millis now);
    void afterHangUp(Millis now);
    void restoreProfile(Millis now);
    void closePort();

    link::Transport& port;
    ModemTransport data;
    std::string initString;
    ResultReader reader;
    Phase phase = Phase::Closed;
    Operation operation = Operation::None;
    CallState state = CallState::Idle;
    bool opened = false;
    Millis deadline = 0;
    int attempts = 0;
    std::uint32_t lastError = 0;
    std::string lastDetail;
    std::string savedLine; // the port's settings while DTR is down
};

} // namespace rk4::modem
