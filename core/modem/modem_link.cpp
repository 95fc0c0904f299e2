#include "core/modem/modem_link.h"

#include "core/link/frame.h"
#include "core/modem/line_errors.h"

#include <stdexcept>

namespace rk4::modem {

using link::ProgrammingSession;
using link::SessionLine;
using link::SessionOutcome;
using link::TransferKind;

ModemLink::ModemLink(Workspace& workspace, Prompter& prompter, std::vector<ModemCandidate> ports,
                     ModemSettings settings)
    : prompter(prompter), candidates(std::move(ports)), kept(std::move(settings))
{
    if (candidates.empty())
        throw std::invalid_argument("ModemLink needs a port to look for the modem on");
    for (ModemCandidate& candidate : candidates) {
        lines.push_back(std::make_unique<Telephony>(*candidate.port, kept.initString));
        Telephony& line = *lines.back();
        line.onCallState = [this](CallState state, const std::string& detail) { callState(state, detail); };
        line.onModemLine = [this](const std::string& text) {
            if (onModemLine)
                onModemLine(text);
        };
    }
    programming = std::make_unique<ProgrammingSession>(workspace, lines.front()->callPort(), prompter);
    programming->defaultVocabularyFile = kDefaultModemVocabularyFile;
    programming->onText = [this](SessionLine line, const std::string& text) {
        // The session clears the status as a run starts; the modem's own
        // words stay until the session has its own.
        if (line == SessionLine::Status && !text.empty())
            setStatus(text);
        if (onSessionText)
            onSessionText(line, text);
    };
}

ModemLink::~ModemLink() = default;

const std::string& ModemLink::modemPort() const
{
    static const std::string none;
    return chosen >= 0 ? candidates[static_cast<std::size_t>(chosen)].name : none;
}

bool ModemLink::connected() const { return phase == Phase::Connected; }

void ModemLink::setStatus(const std::string& text)
{
    shown.status = text;
    if (onStatus)
        onStatus(text);
}

void ModemLink::changed()
{
    if (onChange)
        onChange();
}

// The short word is the box's text and the explanation its caption.
void ModemLink::box(const std::string& text, const std::string& caption, const std::string& detail)
{
    prompter.ask(Message{caption, text, Icon::Error, Buttons::Ok, detail});
}

void ModemLink::lineError(std::uint32_t code, const std::string& detail)
{
    const std::string name = ProcessTAPIError(code);
    if (!name.empty())
        box(name, "Error", detail);
}

void ModemLink::failDial()
{
    phase = Phase::Idle;
    shown.dialEnabled = true;
    changed();
}

void ModemLink::CmDial(Millis now)
{
    if (phase != Phase::Idle || !shown.dialEnabled)
        return;
    warningsAsked = askWarningsBeforeDial;
    if (warningsAsked && programming->CheckWarnings()) {
        shown.closeRequested = true;
        changed();
        return;
    }
    shown.dialEnabled = false;
    changed();
    setStatus("Getting the telephone number.");
    if (chosen < 0) {
        trying = 0;
        triedPorts.clear();
        phase = Phase::Initializing;
        tryCandidate(now);
        return;
    }
    afterInitialize(now);
}

void ModemLink::tryCandidate(Millis now) { lines[trying]->telephonyInitialize(now); }

void ModemLink::afterInitialize(Millis now)
{
    Telephony& line = *telephony();
    // The device configuration: the set-up string the line is opened with.
    line.setDeviceConfig(kept.initString);
    if (line.lineOpen()) {
        afterOpen(now);
        return;
    }
    phase = Phase::Opening;
    line.telephonyOpen(now);
}

void ModemLink::afterOpen(Millis now)
{
    Telephony& line = *telephony();
    std::optional<DialledNumber> number = kept.lastNumber;
    if (askNumber)
        number = askNumber(kept.lastNumber);
    if (!number) {
        setStatus("");
        failDial();
        return;
    }
    kept.lastNumber = *number;
    if (!settingsFile.empty())
        kept.save(settingsFile);

    setStatus("Call setup in progress, please wait.");
    const Translation translated = TranslateAddress(number->text(), kept.location);
    if (translated.error) {
        lineError(translated.error, number->text());
        box("ERROR", "Error translating address", number->text());
        setStatus("");
        failDial();
        return;
    }
    if (const std::uint32_t error = line.lineMakeCall(translated.dialable, now)) {
        lineError(error, translated.dialable);
        box("ERROR", "Error making call");
        setStatus("Error making call.");
        failDial();
        return;
    }
    everConnected = false;
    phase = Phase::Calling;
}

void ModemLink::callState(CallState state, const std::string& detail)
{
    if (onCallState)
        onCallState(state, detail);
    switch (state) {
    case CallState::DialTone: setStatus("Dial Tone Detected."); return;
    case CallState::Ringback: setStatus("Ringing Detected."); return;
    case CallState::Offering: everConnected = true; return;
    case CallState::Connected:
        everConnected = true;
        phase = Phase::Connected;
        disconnecting = false;
        shown.transfersEnabled = true;
        shown.disconnectEnabled = true;
        setStatus("Call Connected");
        changed();
        return;
    case CallState::Disconnected:
        if (programming->running())
            setStatus("Communications Failure.");
        setStatus("Line Disconnected.");
        box(kLineLostText, "Error", detail.empty() ? std::string() : "The modem said " + detail + ".");
        shown.lineLost = true;
        shown.closeRequested = true;
        shown.transfersEnabled = false;
        shown.disconnectEnabled = false;
        changed();
        return;
    case CallState::Idle:
        shown.transfersEnabled = false;
        shown.disconnectEnabled = false;
        if (!everConnected) {
            setStatus("Error Placing Call.");
            box("Error Placing Call.", "Error", detail.empty() ? std::string() : "The modem said " + detail + ".");
        }
        if (phase == Phase::Calling || phase == Phase::Connected)
            failDial();
        else
            changed();
        return;
    }
}

bool ModemLink::startTransfer(Millis now, const std::function<bool(ProgrammingSession&)>& start)
{
    if (phase != Phase::Connected || programming->running())
        return false;
    programming->changeTransport(telephony()->callPort());
    // The questions before a write were asked before dialling.
    programming->askWarnings = !warningsAsked;
    if (!start(*programming))
        return false;
    const TransferKind kind = programming->transferKind();
    setStatus(kind == TransferKind::Database     ? "Setting up data transfer."
              : kind == TransferKind::Vocabulary ? "Setting up vocab transfer."
                                                 : "Setting up voice transfer.");
    shown.transfersEnabled = false;
    shown.disconnectEnabled = false;
    changed();
    programming->poll(now);
    return true;
}

bool ModemLink::CmSendData(Millis now)
{
    return startTransfer(now, [&](ProgrammingSession& session) { return session.Send(TransferKind::Database, now); });
}

bool ModemLink::CmSendVocab(Millis now, std::optional<std::filesystem::path> file)
{
    return startTransfer(
        now, [&](ProgrammingSession& session) { return session.Send(TransferKind::Vocabulary, now, file); });
}

bool ModemLink::CmSendVoice(Millis now, std::optional<std::filesystem::path> file)
{
    return startTransfer(now,
                         [&](ProgrammingSession& session) { return session.Send(TransferKind::Voices, now, file); });
}

bool ModemLink::CmReceiveData(Millis now)
{
    return startTransfer(now,
                         [&](ProgrammingSession& session) { return session.Receive(TransferKind::Database, now); });
}

bool ModemLink::CmReceiveVoice(Millis now, std::optional<std::filesystem::path> target)
{
    return startTransfer(
        now, [&](ProgrammingSession& session) { return session.Receive(TransferKind::Voices, now, target); });
}

// A failed run that left the status line empty gets the modem's own words.
void ModemLink::transferEnded()
{
    const TransferKind kind = programming->transferKind();
    if (programming->outcome() == SessionOutcome::Failed && shown.status.empty()) {
        if (kind == TransferKind::Database)
            setStatus(programming->writingRun() ? "Data transfer FAILED." : "Data transfer failed!");
        else if (kind == TransferKind::Voices)
            setStatus("Voice transfer FAILED.");
    }
    if (phase == Phase::Connected) {
        shown.transfersEnabled = true;
        shown.disconnectEnabled = true;
    }
    changed();
}

void ModemLink::CmDisconnect(Millis now)
{
    if (disconnecting || phase != Phase::Connected || programming->running())
        return;
    disconnecting = true;
    setStatus("Disconnecting line.");
    shown.transfersEnabled = false;
    shown.disconnectEnabled = false;
    changed();
    // The unit is told to hang up too, then the call is dropped.
    setStatus("Terminating modem link.");
    ModemTransport& port = telephony()->callPort();
    hangUpLink = std::make_unique<link::LinkSession>(port);
    hangUpLink->start(link::CMD_HANGUP, 0, false, now);
    phase = Phase::SendHangUp;
}

void ModemLink::telephonyShutdown(Millis now)
{
    if (phase == Phase::Closed || phase == Phase::ShuttingDown)
        return;
    shutdownAfterDrop = true;
    if (phase == Phase::Connected && !programming->running() && !disconnecting) {
        CmDisconnect(now);
        return;
    }
    if (phase == Phase::SendHangUp || phase == Phase::HangUpWait || phase == Phase::Dropping)
        return; // the shut-down follows the drop
    beginShutdown(now);
}

void ModemLink::beginShutdown(Millis now)
{
    programming->closePort();
    phase = Phase::ShuttingDown;
    for (auto& line : lines)
        line->telephonyShutdown(now);
}

void ModemLink::tick(Millis now)
{
    for (auto& line : lines)
        line->poll(now);

    switch (phase) {
    case Phase::Initializing: {
        Telephony& line = *lines[trying];
        if (line.busy())
            break;
        if (line.error() == 0) {
            chosen = static_cast<int>(trying);
            afterInitialize(now);
            break;
        }
        triedPorts += (triedPorts.empty() ? "" : "; ") + candidates[trying].name + ": " + line.errorDetail();
        if (++trying < candidates.size()) {
            tryCandidate(now);
            break;
        }
        lineError(line.error(), triedPorts);
        box("Error", "Error initializing", triedPorts);
        setStatus("");
        failDial();
        break;
    }
    case Phase::Opening: {
        Telephony& line = *telephony();
        if (line.busy())
            break;
        if (line.error() != 0) {
            setStatus("Error opening line.");
            lineError(line.error(), line.errorDetail());
            box("Error", "Error opening line", line.errorDetail());
            failDial();
            break;
        }
        afterOpen(now);
        break;
    }
    case Phase::SendHangUp:
        if (hangUpLink->poll(now) == link::ExchangeStatus::Pending)
            break;
        phase = Phase::HangUpWait;
        deadline = now + kHangUpWait;
        break;
    case Phase::HangUpWait:
        if (now < deadline)
            break;
        hangUpLink.reset();
        phase = Phase::Dropping;
        telephony()->lineDrop(now);
        break;
    case Phase::Dropping:
        if (telephony()->busy())
            break;
        disconnecting = false;
        phase = Phase::Idle;
        shown.dialEnabled = true;
        changed();
        if (shutdownAfterDrop)
            beginShutdown(now);
        break;
    case Phase::ShuttingDown: {
        bool done = true;
        for (auto& line : lines)
            done = done && !line->busy();
        if (done)
            phase = Phase::Closed;
        break;
    }
    default: break;
    }

    // After a lost line the run is abandoned with the dialog.
    if (programming->running() && !shown.lineLost) {
        programming->poll(now);
        if (!programming->running())
            transferEnded();
    } else if (phase == Phase::Connected && telephony()) {
        telephony()->callPort().drain();
    }
}

} // namespace rk4::modem
