#include "core/cellular/cell_session.h"

#include "core/link/serial_transport.h"

#include <algorithm>

namespace rk4::cellular {

namespace {

constexpr char kCommsFailure[] = "Communications failure - check cable connection.";
constexpr char kCheckingComms[] = "Checking communications.";
constexpr int kRssiMissesShown = 3;

} // namespace

const std::vector<CellStep>& writeSteps()
{
    // The network code goes out right after the MIN, while the module is still
    // unlocked and on line for programming: it is part of the same identity as
    // the MIN, a module in normal mode refuses it, and a write that failed
    // earlier never gets this far, so a module is never left with a new network
    // code but its old MIN. The reset that follows puts both into use together.
    static const std::vector<CellStep> steps{
        {CELL_CHECK, WaitFor::Any, kCheckingComms, nullptr, kCommsFailure, "Communications failure."},
        {CELL_ONLINE, WaitFor::Any, nullptr, "Module set online.", "Error putting module Online."},
        // The unlock gets one attempt more than the other steps: the module can
        // take a moment to leave its normal mode.
        {CELL_UNLOCK, WaitFor::S, nullptr, "Model unlocked.", "Error unlocking module.", nullptr, 4},
        {CELL_WRITE_MDN, WaitFor::D, nullptr, "MDN written.", "Error writing MDN."},
        {CELL_WRITE_MIN, WaitFor::M, nullptr, "MIN written.", "Error writing MIN."},
        {CELL_NETWORK_CODE, WaitFor::M, nullptr, "Network code set.", "Error setting network code."},
        {CELL_RESET, WaitFor::Any, nullptr, "Module reset.", "Error resetting module."},
        {CELL_READ_MIN, WaitFor::Any, "Checking MIN number in module.", nullptr, "Error reading MIN."},
        {CELL_READ_MDN, WaitFor::Any, "Checking MDN number in module.", nullptr, "Error reading MDN."},
    };
    return steps;
}

const std::vector<CellStep>& readSteps()
{
    static const std::vector<CellStep> steps{
        {CELL_BAUD, WaitFor::Any, "Setting Baud Rate.", nullptr, kCommsFailure},
        {CELL_CHECK, WaitFor::Any, kCheckingComms, nullptr, kCommsFailure},
        {CELL_MODEL, WaitFor::Any, nullptr, "Model read.", "Error reading Model."},
        {CELL_VERSION, WaitFor::Any, nullptr, "Version read.", "Error reading Version."},
        {CELL_READ_SID, WaitFor::Any, nullptr, "SID read.", "Error reading SID."},
        {CELL_ESN, WaitFor::Any, nullptr, "ESN read.", "Error reading ESN."},
        {CELL_PROTOCOL, WaitFor::Any, nullptr, "Protocol read.", "Error reading Protocol."},
        {CELL_READ_MDN, WaitFor::Any, nullptr, "MDN read.", "Error reading MDN."},
        {CELL_READ_MIN, WaitFor::Any, nullptr, "MIN read.", "Error reading MIN."},
        {CELL_RSSI, WaitFor::Any, nullptr, "Values read successfully", "Error reading RSSI."},
    };
    return steps;
}

CellPhoneSession::CellPhoneSession(link::Transport& port, Prompter& prompter) : port(port), prompter(prompter) {}

bool CellPhoneSession::openPort()
{
    if (link::SetUpPort(port, prompter))
        return true;
    statusText = "COM port failure.";
    return false;
}

void CellPhoneSession::startTicking(Millis now)
{
    // The first step goes out at once; later ones keep the running cadence.
    if (!nextTick)
        nextTick = now;
}

EntryCheck CellPhoneSession::CmSendMIN(CellEntries& fields, Millis now)
{
    if (running != CellActivity::Idle)
        return EntryCheck::Good;
    if (CheckMIN(fields, &prompter))
        return EntryCheck::BadMin;
    if (CheckMDN(fields, &prompter))
        return EntryCheck::BadMdn;
    if (!openPort())
        return EntryCheck::Good;
    entries = fields;
    pollOn = false;
    minMatch.reset();
    mdnMatch.reset();
    running = CellActivity::Writing;
    steps = &writeSteps();
    stepIndex = 0;
    phase = Phase::Start;
    succeeded = false;
    startTicking(now);
    return EntryCheck::Good;
}

bool CellPhoneSession::CmStartReading(Millis now)
{
    if (running != CellActivity::Idle || !openPort())
        return false;
    shown = {};
    pollOn = false;
    running = CellActivity::Reading;
    steps = &readSteps();
    stepIndex = 0;
    phase = Phase::Start;
    succeeded = false;
    startTicking(now);
    return true;
}

bool CellPhoneSession::CmStartPolling(bool on, Millis now)
{
    if (!on) {
        pollOn = false;
        return true;
    }
    if (!openPort())
        return false;
    pollOn = true;
    rssiSent = false;
    rssiCount = 0;
    rssiMissCount = 0;
    startTicking(now);
    return true;
}

void CellPhoneSession::CmComPort()
{
    running = CellActivity::Idle;
    pollOn = false;
    port.close();
}

void CellPhoneSession::CloseHandles()
{
    running = CellActivity::Idle;
    pollOn = false;
    nextTick.reset();
    port.close();
}

void CellPhoneSession::MessagePoll(std::uint8_t command, WaitFor waitFor, Millis now)
{
    const std::string text = MakeTXMessage(command, entries.min, entries.mdn);
    if (command == CELL_WRITE_MIN)
        writtenMin = entries.min;
    if (command == CELL_WRITE_MDN)
        writtenMdn = entries.mdn;
    // Whatever arrived before this command is not its reply.
    receiver.drain(port);
    receiver.clear(waitFor);
    sentCommands.push_back(text.substr(0, text.size() - 2));
    port.write(std::span(reinterpret_cast<const std::uint8_t*>(text.data()), text.size()));
    transmitDeadline = now + text.size() + kTransmitSlackMillis;
}

void CellPhoneSession::poll(Millis now)
{
    if (!port.isOpen())
        return;
    if (transmitDeadline) {
        // A command that has not left by its deadline is abandoned, as the
        // port's write would give up; the missing reply is then counted.
        if (port.allSent())
            transmitDeadline.reset();
        else if (now >= *transmitDeadline) {
            port.purge(link::Purge::Transmit);
            transmitDeadline.reset();
        }
    }
    receiver.drain(port);
    if (!nextTick || now < *nextTick)
        return;
    while (*nextTick <= now)
        *nextTick += kCellTick;
    tick(now);
    if (!active())
        nextTick.reset();
}

Millis CellPhoneSession::nextPollAt(Millis now) const
{
    Millis next = nextTick ? *nextTick : now + kCellTick;
    if (transmitDeadline)
        next = std::min(next, *transmitDeadline);
    return std::max(next, now);
}

void CellPhoneSession::tick(Millis now)
{
    if (running != CellActivity::Idle)
        runSequence(now);
    else if (pollOn)
        pollRssi(now);
}

void CellPhoneSession::runSequence(Millis now)
{
    const CellStep& step = (*steps)[stepIndex];
    switch (phase) {
    case Phase::Start:
        misses = 0;
        if (step.runningStatus)
            statusText = step.runningStatus;
        MessagePoll(step.command, step.waitFor, now);
        phase = Phase::Wait;
        return;
    case Phase::Resend:
        MessagePoll(step.command, step.waitFor, now);
        phase = Phase::Wait;
        return;
    case Phase::Wait:
        if (receiver.lineReady()) {
            if (InterpretResponse(step.command, receiver.line(), shown)) {
                stepSucceeded(step);
                return;
            }
            // Not this command's reply ("ERROR", say). Keep waiting, but let
            // the next line in, so a module that answered wrongly and then
            // falls silent is counted as missing instead of holding the step
            // for ever.
            receiver.clear(step.waitFor);
            return;
        }
        if (++misses >= step.allowedMisses)
            stepFailed(step);
        else
            phase = Phase::Resend;
        return;
    }
}

void CellPhoneSession::stepSucceeded(const CellStep& step)
{
    if (step.successStatus)
        statusText = step.successStatus;
    if (running == CellActivity::Writing && step.command == CELL_READ_MIN) {
        minMatch = shown.min == writtenMin;
        statusText = *minMatch ? "MIN check passed."
                               : "MIN check failed!  Written MIN = " + writtenMin + ", Read MIN = " + shown.min;
    }
    if (running == CellActivity::Writing && step.command == CELL_READ_MDN) {
        mdnMatch = shown.mdn == writtenMdn;
        statusText = *mdnMatch ? "MDN check passed."
                               : "MDN check failed!  Written MDN = " + writtenMdn + ", Read MDN = " + shown.mdn;
    }
    phase = Phase::Start;
    if (++stepIndex == steps->size()) {
        running = CellActivity::Idle;
        succeeded = true;
    }
}

void CellPhoneSession::stepFailed(const CellStep& step)
{
    running = CellActivity::Idle;
    succeeded = false;
    statusText = step.failureStatus ? step.failureStatus : step.failureMessage;
    prompter.tell("ERROR", step.failureMessage, Icon::Error);
}

void CellPhoneSession::pollRssi(Millis now)
{
    // One command a tick: the reply to the last one is looked at, then the
    // next goes out, so a reading shows every second.
    if (rssiSent) {
        if (receiver.lineReady() && InterpretResponse(CELL_RSSI, receiver.line(), shown)) {
            ++rssiCount;
            rssiMissCount = 0;
            // The mark alternates so that each new reading is seen to arrive.
            statusText = rssiMark ? "RSSI read *" : "RSSI read";
            rssiMark = !rssiMark;
        } else if (++rssiMissCount >= kRssiMissesShown) {
            statusText = "Error reading RSSI.";
        }
    }
    MessagePoll(CELL_RSSI, WaitFor::Any, now);
    rssiSent = true;
}

} // namespace rk4::cellular
