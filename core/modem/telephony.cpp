#include "core/modem/telephony.h"

#include "core/modem/line_errors.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <sys/ioctl.h>
#include <termios.h>

namespace rk4::modem {

using link::Purge;

namespace {

constexpr std::string_view kNoCarrierInData = "\r\nNO CARRIER\r\n";

std::span<const std::uint8_t> bytesOf(const std::string& text)
{
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

} // namespace

const char* callStateName(CallState state)
{
    switch (state) {
    case CallState::Idle: return "idle";
    case CallState::DialTone: return "dial tone";
    case CallState::Ringback: return "ringback";
    case CallState::Offering: return "offering";
    case CallState::Connected: return "connected";
    case CallState::Disconnected: return "disconnected";
    }
    return "";
}

std::optional<bool> carrierDetect(int descriptor)
{
    int lines = 0;
    if (descriptor < 0 || ::ioctl(descriptor, TIOCMGET, &lines) != 0)
        return std::nullopt;
    return (lines & TIOCM_CAR) != 0;
}

bool dropDtr(int descriptor, std::string& saved)
{
    int lines = 0;
    termios settings{};
    // A device without modem lines (a pseudo-terminal) has no DTR to drop.
    if (descriptor < 0 || ::ioctl(descriptor, TIOCMGET, &lines) != 0 || ::tcgetattr(descriptor, &settings) != 0)
        return false;
    saved.assign(reinterpret_cast<const char*>(&settings), sizeof settings);
    termios hungUp = settings;
    ::cfsetospeed(&hungUp, B0);
    ::cfsetispeed(&hungUp, B0);
    return ::tcsetattr(descriptor, TCSANOW, &hungUp) == 0;
}

void restoreLine(int descriptor, const std::string& saved)
{
    if (descriptor < 0 || saved.size() != sizeof(termios))
        return;
    termios settings{};
    std::memcpy(&settings, saved.data(), sizeof settings);
    ::tcsetattr(descriptor, TCSANOW, &settings);
}

link::OpenResult ModemTransport::open()
{
    if (!connected)
        return {false, "no call is connected"};
    claimed = true;
    return {true, {}};
}

void ModemTransport::begin()
{
    connected = true;
    claimed = false;
    carrierLost = false;
    matched = 0;
    carrierLineSeen = carrierDetect(port.readableDescriptor()).value_or(false);
}

bool ModemTransport::write(std::span<const std::uint8_t> bytes)
{
    if (!connected || carrierLost)
        return false;
    return port.write(bytes);
}

std::size_t ModemTransport::read(std::span<std::uint8_t> buffer)
{
    if (!connected)
        return 0;
    const std::size_t count = port.read(buffer);
    watch(buffer.first(count));
    if (carrierLineSeen && carrierDetect(port.readableDescriptor()) == false)
        carrierLost = true;
    return count;
}

void ModemTransport::watch(std::span<const std::uint8_t> bytes)
{
    for (const std::uint8_t byte : bytes) {
        if (byte == static_cast<std::uint8_t>(kNoCarrierInData[matched]))
            ++matched;
        else
            matched = byte == '\r' ? 1 : 0;
        if (matched == kNoCarrierInData.size()) {
            carrierLost = true;
            matched = 0;
        }
    }
}

void ModemTransport::purge(Purge side) { port.purge(side); }

void ModemTransport::drain()
{
    std::array<std::uint8_t, 256> scratch{};
    while (read(scratch) > 0) {
    }
}

Telephony::Telephony(link::Transport& port, std::string initString)
    : port(port), data(port), initString(std::move(initString))
{}

void Telephony::send(const std::string& command, Millis now, Millis timeout)
{
    if (onModemLine)
        onModemLine("> " + command);
    port.write(bytesOf(command + "\r"));
    deadline = now + timeout;
}

void Telephony::finish(std::uint32_t error, std::string detail)
{
    operation = Operation::None;
    lastError = error;
    lastDetail = std::move(detail);
}

void Telephony::setState(CallState next, const std::string& detail)
{
    state = next;
    if (onCallState)
        onCallState(next, detail);
}

void Telephony::telephonyInitialize(Millis now)
{
    if (busy())
        return;
    if (phase != Phase::Closed) {
        finish(0);
        return;
    }
    operation = Operation::Initialize;
    const link::OpenResult opening = port.isOpen() ? link::OpenResult{true, {}} : port.open();
    if (!opening.ok) {
        finish(LINEERR_RESOURCEUNAVAIL, opening.detail);
        return;
    }
    port.purge(Purge::Both);
    reader.clear();
    attempts = 1;
    phase = Phase::Probe;
    send("AT", now, kCommandTimeout);
}

void Telephony::telephonyOpen(Millis now)
{
    if (busy())
        return;
    if (phase == Phase::Closed) {
        finish(LINEERR_UNINITIALIZED, "the modem has not been found");
        return;
    }
    if (opened || phase != Phase::Ready) {
        finish(opened ? 0 : LINEERR_INUSE);
        return;
    }
    operation = Operation::Open;
    phase = Phase::Configure;
    send(initString, now, kCommandTimeout);
}

std::uint32_t Telephony::lineMakeCall(const std::string& dialable, Millis now)
{
    if (!opened)
        return LINEERR_INVALLINEHANDLE;
    if (phase != Phase::Ready || busy())
        return LINEERR_INUSE;
    if (dialable.empty())
        return LINEERR_INVALADDRESS;
    reader.clear();
    port.purge(Purge::Receive);
    phase = Phase::Dialling;
    state = CallState::Idle;
    send("ATD" + dialable, now, kDialTimeout);
    return 0;
}

void Telephony::lineDrop(Millis now)
{
    if (busy())
        return;
    operation = Operation::Drop;
    switch (phase) {
    case Phase::Connected:
        phase = Phase::EscapeBefore;
        deadline = now + kEscapeGuard; // silence before the escape
        return;
    case Phase::Dialling:
    case Phase::Answering:
        // Any character stops the modem dialling; it then says NO CARRIER.
        port.write(bytesOf("\r"));
        phase = Phase::AbortDial;
        deadline = now + kCommandTimeout;
        return;
    default: finish(0); return;
    }
}

void Telephony::telephonyShutdown(Millis now)
{
    if (busy())
        return;
    answerCalls = false;
    if (phase == Phase::Closed) {
        closePort();
        finish(0);
        return;
    }
    if (callActive()) {
        lineDrop(now);
        operation = Operation::Shutdown;
        return;
    }
    operation = Operation::Shutdown;
    restoreProfile(now);
}

void Telephony::restoreProfile(Millis now)
{
    phase = Phase::Restore;
    reader.clear();
    port.purge(Purge::Receive);
    send("ATZ", now, kCommandTimeout);
}

void Telephony::closePort()
{
    data.end();
    if (port.isOpen())
        port.close();
    phase = Phase::Closed;
    opened = false;
}

void Telephony::hangUp(Millis now)
{
    reader.clear();
    phase = Phase::HangUp;
    send("ATH", now, kHangUpTimeout);
}

void Telephony::afterHangUp(Millis now)
{
    if (dropDtr(port.readableDescriptor(), savedLine)) {
        phase = Phase::DtrLow;
        deadline = now + kDtrDropTime;
        return;
    }
    phase = Phase::Ready;
    if (state != CallState::Idle)
        setState(CallState::Idle);
    if (operation == Operation::Shutdown)
        restoreProfile(now);
    else
        finish(0);
}

void Telephony::readLines()
{
    std::array<std::uint8_t, 256> chunk{};
    for (std::size_t count; (count = port.read(chunk)) > 0;)
        reader.feed(std::span(chunk).first(count));
}

void Telephony::poll(Millis now)
{
    switch (phase) {
    case Phase::Closed: return;
    case Phase::Connected:
        if (data.lost()) {
            data.end();
            reader.clear();
            phase = Phase::Ready;
            setState(CallState::Disconnected, "NO CARRIER");
            setState(CallState::Idle);
        }
        return;
    case Phase::EscapeBefore:
        if (now >= deadline) {
            data.end();
            if (onModemLine)
                onModemLine("> +++");
            port.write(bytesOf("+++"));
            reader.clear();
            phase = Phase::EscapeAfter;
            deadline = now + kEscapeGuard + kEscapeReplyWait;
        }
        return;
    case Phase::DtrLow:
        if (now >= deadline) {
            restoreLine(port.readableDescriptor(), savedLine);
            savedLine.clear();
            port.purge(Purge::Both);
            phase = Phase::Ready;
            setState(CallState::Idle);
            if (operation == Operation::Shutdown)
                restoreProfile(now);
            else
                finish(0);
        }
        return;
    default: break;
    }

    readLines();
    while (auto line = reader.nextLine()) {
        if (onModemLine)
            onModemLine(*line);
        handle(parseResult(*line), *line, now);
        if (phase == Phase::Connected || phase == Phase::Closed)
            return; // what follows CONNECT is the call's data
    }
    if (now >= deadline)
        timeout(now);
}

void Telephony::handle(ModemResult result, const std::string& line, Millis now)
{
    switch (phase) {
    case Phase::Probe:
        if (result == ModemResult::Ok) {
            phase = Phase::Ready;
            finish(0);
        }
        return;
    case Phase::Configure:
        if (result == ModemResult::Ok) {
            opened = true;
            phase = Phase::Ready;
            finish(0);
        } else if (result == ModemResult::Error) {
            phase = Phase::Ready;
            finish(LINEERR_OPERATIONFAILED, "the modem refused its set-up string " + initString);
        }
        return;
    case Phase::Ready:
        if (result == ModemResult::Ring && answerCalls) {
            setState(CallState::Offering);
            phase = Phase::Answering;
            send("ATA", now, kDialTimeout);
        }
        return;
    case Phase::Dialling:
    case Phase::Answering:
        if (result == ModemResult::Dialing) {
            setState(CallState::DialTone);
        } else if (result == ModemResult::Ringing) {
            setState(CallState::Ringback);
        } else if (result == ModemResult::Connect) {
            phase = Phase::Connected;
            data.begin();
            setState(CallState::Connected, line);
        } else if (endsCall(result)) {
            phase = Phase::Ready;
            setState(CallState::Idle, line);
        }
        return;
    case Phase::AbortDial:
        if (endsCall(result) || result == ModemResult::Ok)
            hangUp(now);
        else if (result == ModemResult::Connect) {
            // Connected as the dialling was stopped: leave data mode first.
            phase = Phase::EscapeBefore;
            deadline = now + kEscapeGuard;
        }
        return;
    case Phase::EscapeAfter:
        if (result == ModemResult::Ok)
            hangUp(now);
        return;
    case Phase::HangUp:
        if (result == ModemResult::Ok || result == ModemResult::Error || result == ModemResult::NoCarrier)
            afterHangUp(now);
        return;
    case Phase::Restore:
        if (result == ModemResult::Ok || result == ModemResult::Error) {
            closePort();
            finish(0);
        }
        return;
    default: return;
    }
}

void Telephony::timeout(Millis now)
{
    switch (phase) {
    case Phase::Probe:
        if (++attempts <= kProbeAttempts) {
            send("AT", now, kCommandTimeout);
            return;
        }
        closePort();
        finish(LINEERR_NODEVICE, "no modem answered AT");
        return;
    case Phase::Configure:
        phase = Phase::Ready;
        finish(LINEERR_OPERATIONFAILED, "the modem did not answer its set-up string");
        return;
    case Phase::Dialling:
    case Phase::Answering:
        // No result at all: stop the dialling as a hang-up would.
        port.write(bytesOf("\r"));
        phase = Phase::Ready;
        setState(CallState::Idle, "NO ANSWER");
        return;
    case Phase::AbortDial:
    case Phase::EscapeAfter: hangUp(now); return;
    case Phase::HangUp: afterHangUp(now); return;
    case Phase::Restore:
        closePort();
        finish(0);
        return;
    default: return;
    }
}

Millis Telephony::nextPollAt(Millis now) const
{
    switch (phase) {
    case Phase::Closed:
    case Phase::Ready:
    case Phase::Connected: return now + 100;
    default: return std::min(deadline, now + 10);
    }
}

} // namespace rk4::modem
