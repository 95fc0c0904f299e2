#include "cli/transfer.h"

#include "core/database/file.h"
#include "core/link/port_slots.h"
#include "core/link/serial_transport.h"
#include "core/link/session_driver.h"
#include "core/modem/modem_link.h"
#include "core/modem/simulated_modem.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <array>
#include <cctype>
#include <csignal>
#include <cstring>
#include <ostream>

namespace rk4::cli {

using namespace rk4::link;

namespace {

constexpr const char* kSimulatedPort = "sim";
constexpr unsigned kSimulatedBaud = 9600;

volatile std::sig_atomic_t stopSignal = 0;

extern "C" void noteStopSignal(int signal) { stopSignal = signal; }

// While a transfer runs, Ctrl-C, a closed terminal or a terminate request
// stops it between two steps, so the session ends as after a failure and
// removes what it staged, instead of the process dying with a half-read store
// beside its target.
class StopOnSignals {
  public:
    StopOnSignals()
    {
        stopSignal = 0;
        struct sigaction action {};
        action.sa_handler = noteStopSignal;
        sigemptyset(&action.sa_mask);
        for (std::size_t i = 0; i < kSignals.size(); ++i)
            ::sigaction(kSignals[i], &action, &previous[i]);
    }
    ~StopOnSignals()
    {
        for (std::size_t i = 0; i < kSignals.size(); ++i)
            ::sigaction(kSignals[i], &previous[i], nullptr);
    }
    StopOnSignals(const StopOnSignals&) = delete;
    StopOnSignals& operator=(const StopOnSignals&) = delete;

    static int caught() { return stopSignal; }

  private:
    static constexpr std::array<int, 3> kSignals{SIGINT, SIGTERM, SIGHUP};
    std::array<struct sigaction, 3> previous{};
};

// A serial port or any terminal device, on the real clock.
class SerialLine final : public UnitLine {
  public:
    SerialLine(std::string path, std::string name) : port(std::move(path)), name(std::move(name)) {}

    Transport& transport() override { return port; }
    const Clock& clock() const override { return steady; }
    std::string description() const override { return name; }

    void waitUntil(Millis target) override { sleepUntil(port, steady, target); }

  private:
    SteadyClock steady;
    SerialTransport port;
    std::string name;
};

// The built-in unit, in memory. Nothing real waits on it, so its time runs
// straight to the next moment the session wants: a transfer with all its
// pauses finishes at once. Its bytes are paced as on a 9600-baud line, so
// its progress moves as a real unit's does.
class SimulatedLine final : public UnitLine {
  public:
    SimulatedLine(UnitOptions options, std::array<std::string, 3> files, Context& context)
        : port(time, std::move(options), kSimulatedBaud), files(std::move(files)), context(context)
    {
        SimulatedUnit& unit = port.unit();
        load(unit.store.database, TransferKind::Database, dbasesize);
        load(unit.store.vocabulary, TransferKind::Vocabulary, 0);
        load(unit.store.voices, TransferKind::Voices, 0);
        unit.onStored = [this](TransferKind kind) { keep(kind); };
    }

    Transport& transport() override { return port; }
    const Clock& clock() const override { return time; }
    std::string description() const override { return "the simulated unit"; }
    void waitUntil(Millis target) override { time.set(std::max(target, time.now() + 1)); }

  private:
    std::vector<std::uint8_t>& held(TransferKind kind)
    {
        UnitStore& store = port.unit().store;
        return kind == TransferKind::Database     ? store.database
               : kind == TransferKind::Vocabulary ? store.vocabulary
                                                  : store.voices;
    }

    void load(std::vector<std::uint8_t>& target, TransferKind kind, std::size_t requiredSize)
    {
        const std::string& file = files[static_cast<std::size_t>(kind)];
        if (file.empty())
            return;
        const auto bytes = readWholeFile(file);
        if (!bytes)
            return; // the unit holds nothing yet
        if (requiredSize && bytes->size() != requiredSize) {
            printMessage(context.err, "The simulated unit ignores " + file,
                         "it holds " + std::to_string(bytes->size()) + " bytes, a configuration " +
                             std::to_string(requiredSize));
            return;
        }
        target = *bytes;
    }

    void keep(TransferKind kind)
    {
        const std::string& file = files[static_cast<std::size_t>(kind)];
        if (file.empty())
            return;
        if (const SaveResult kept = writeFileAtomically(file, held(kind)); !kept)
            printMessage(context.err, "The simulated unit cannot keep its memory", fileAndCause(file, kept.cause()));
    }

    ManualClock time{1};
    SimulatedUnitPort port;
    std::array<std::string, 3> files; // by TransferKind
    Context& context;
};

// Prints messages as StreamPrompter does and says how each question was
// answered, so a log shows why the run went on.
class AnsweringPrompter final : public Prompter {
  public:
    explicit AnsweringPrompter(std::ostream& stream) : stream(stream), printer(stream, Answer::No) {}
    Answer ask(const Message& message) override
    {
        const Answer answer = printer.ask(message);
        if (message.buttons != Buttons::Ok)
            stream << "  (answered " << (answer == Answer::Yes ? "Yes" : "No") << ")\n";
        return answer;
    }
    std::optional<std::string> chooseFile(const FileRequest&) override { return std::nullopt; }

  private:
    std::ostream& stream;
    StreamPrompter printer;
};

// Shows the session's texts once each as they change, and keeps a bar of the
// bytes on the wire on the last line of a terminal.
class ProgressPrinter {
  public:
    ProgressPrinter(Context& context, ProgrammingSession& session) : context(context), session(session) {}

    void text(SessionLine line, const std::string& text)
    {
        std::string& current = shown[static_cast<std::size_t>(line)];
        const bool repeated = text == current;
        current = text;
        // Status and line 2 often carry the same words: print them once.
        if (text.empty() || repeated || text == lastPrinted)
            return;
        clearBar();
        context.err << text << "\n";
        lastPrinted = text;
        drawBar();
    }

    void progress()
    {
        if (session.view().progressOpen)
            drawBar();
        else
            clearBar();
    }

    void finish() { clearBar(); }

    // Called as bytes move: redraws only when what the bar shows changes.
    void follow()
    {
        if (!context.interactiveTerminal || !session.view().progressOpen)
            return;
        if (barText() != drawn || !barShown)
            drawBar();
    }

  private:
    std::string barText()
    {
        const SessionView& view = session.view();
        const WireProgress wire = session.wireProgress();
        if (view.packetsTotal <= 0 || wire.total <= 0)
            return {};
        constexpr std::int64_t width = 30;
        const std::int64_t filled = wire.done * width / wire.total;
        const int done = std::clamp(view.packetsDone, 0, view.packetsTotal);
        return "[" + std::string(static_cast<std::size_t>(filled), '#') +
               std::string(static_cast<std::size_t>(width - filled), '.') + "] " +
               std::to_string(wire.done * 100 / wire.total) + "% " + std::to_string(done) + "/" +
               std::to_string(view.packetsTotal) + " packets";
    }

    void drawBar()
    {
        if (!context.interactiveTerminal || !session.view().progressOpen)
            return;
        drawn = barText();
        if (drawn.empty())
            return;
        context.err << "\r" << drawn << std::flush;
        barShown = true;
    }

    void clearBar()
    {
        if (barShown)
            context.err << "\r\033[K" << std::flush;
        barShown = false;
    }

    Context& context;
    ProgrammingSession& session;
    std::array<std::string, 4> shown;
    std::string lastPrinted;
    std::string drawn;
    bool barShown = false;
};

// A distant unit through a modem on a port, or through the built-in
// simulated modem (whose calls reach the built-in unit) in memory: dial,
// transfer, hang up, and say each call state as it changes.
class DialLine final : public UnitLine {
  public:
    DialLine(std::shared_ptr<Transport> port, std::string name, std::string number)
        : port(std::move(port)), name(std::move(name)), number(std::move(number))
    {}
    // The simulated modem in memory, on a clock that runs straight to the next tick.
    DialLine(std::string number, UnitOptions unit)
        : port(std::shared_ptr<Transport>(&memory.tool(), [](Transport*) {})), name("the simulated modem"),
          number(std::move(number)), simulated(std::in_place, memory.unit(), modem::ModemOptions{}, std::move(unit))
    {}

    Transport& transport() override { return *port; }
    const Clock& clock() const override { return simulated ? static_cast<const Clock&>(manual) : steady; }
    std::string description() const override { return name + ", dialling " + number; }
    void waitUntil(Millis target) override
    {
        if (!simulated) {
            sleepUntil(*port, steady, target);
            return;
        }
        while (manual.now() < target) {
            simulated->poll(manual.now());
            manual.advance(10);
        }
    }

    bool run(Workspace& workspace, Context& context,
             const std::function<bool(ProgrammingSession&, Millis)>& start) override
    {
        using namespace rk4::modem;
        AnsweringPrompter prompter(context.err);
        const ModemSettings settings = ModemSettings::load(modemSettingsPath(workspace.workingDirectory()));
        std::vector<ModemCandidate> ports;
        ports.push_back({name, port});
        ModemLink modem(workspace, prompter, std::move(ports), settings);
        // Each write asks its own questions, and only a write asks them.
        modem.askWarningsBeforeDial = false;
        const DialledNumber wanted = parseDialledNumber(number, settings.location);
        modem.askNumber = [wanted](const DialledNumber&) { return wanted; };

        ProgressPrinter printer(context, modem.session());
        modem.onStatus = [&](const std::string& text) { printer.text(SessionLine::Status, text); };
        modem.onSessionText = [&](SessionLine which, const std::string& text) {
            if (which != SessionLine::Status)
                printer.text(which, text);
        };
        modem.session().onProgress = [&] { printer.progress(); };
        modem.onCallState = [&](CallState state, const std::string& detail) {
            printer.finish();
            context.err << "Call: " << callStateName(state) << (detail.empty() ? "" : " (" + detail + ")") << "\n";
        };

        context.err << "Port: " << description() << "\n";
        const Clock& time = clock();
        // The dialog's 100 ms timer.
        const auto runWhile = [&](const std::function<bool()>& condition) {
            while (condition()) {
                modem.tick(time.now());
                printer.follow();
                waitUntil(time.now() + kTickInterval);
            }
        };
        // A Ctrl-C stops the dialling or the transfer, and the call is still hung up.
        const StopOnSignals stop;
        modem.CmDial(time.now());
        runWhile([&] {
            return !modem.connected() && !modem.view().dialEnabled && !modem.view().closeRequested &&
                   !StopOnSignals::caught();
        });
        bool succeeded = false;
        if (modem.connected() &&
            modem.startTransfer(time.now(), [&](ProgrammingSession& session) { return start(session, time.now()); })) {
            runWhile([&] { return modem.transferRunning() && !modem.view().lineLost && !StopOnSignals::caught(); });
            succeeded = !modem.transferRunning() && !modem.view().lineLost &&
                        modem.session().outcome() == SessionOutcome::Succeeded;
        }
        if (const int signal = StopOnSignals::caught())
            context.err << "Stopped (" << ::strsignal(signal) << ")\n";
        if (modem.connected() && !modem.transferRunning()) {
            modem.CmDisconnect(time.now());
            runWhile([&] { return !modem.view().dialEnabled; });
        }
        modem.telephonyShutdown(time.now());
        runWhile([&] { return !modem.finished(); });
        printer.finish();
        return succeeded;
    }

  private:
    link::MemoryLink memory;
    std::shared_ptr<Transport> port;
    std::string name;
    std::string number;
    SteadyClock steady;
    ManualClock manual{1};
    std::optional<modem::SimulatedDialUp> simulated;
};

} // namespace

void addTransferOptions(CLI::App& verb, TransferOptions& options)
{
    verb.add_option("--port", options.port, "COM1 .. COM8, a device path, or sim (default: the port in rk4.cfg)");
    verb.add_option("--dial", options.dial,
                    "Reach a distant unit: dial this number through the modem on --port (+country(area)number, "
                    "or a number in the country and area of rk4modem.txt)");
    const char* group = "The built-in simulated unit (with --port sim)";
    verb.add_option("--sim-database", options.simDatabase, "The file that keeps its configuration")->group(group);
    verb.add_option("--sim-vocabulary", options.simVocabulary, "The file that keeps its vocabulary")->group(group);
    verb.add_option("--sim-voices", options.simVoices, "The file that keeps its voice messages")->group(group);
    verb.add_flag("--sim-older", options.simOlder, "Answer as an older unit (the alternate link)")->group(group);
    verb.add_option("--sim-fault", options.simFaults, "Inject a fault (repeatable; see below)")
        ->group(group)
        ->check([](const std::string& value) { return parseFault(value) ? std::string() : "not a fault: " + value; });
    verb.footer("A fault is KIND[:COMMAND[:SKIP[:TIMES]]]: KIND nak, noise, crc or silence; COMMAND version, link,\n"
                "link-alt, write-database, write-voices, write-vocabulary, read-database, read-voices, packet, end,\n"
                "any or a code such as 0x8a; the fault lets SKIP matching requests pass, then hits TIMES of them\n"
                "(0: all).");
}

std::shared_ptr<FileTransfer> addFileTransferOptions(CLI::App& verb, const char* fileName, const char* description)
{
    auto options = std::make_shared<FileTransfer>();
    verb.add_option(fileName, options->file, description)->required();
    addTransferOptions(verb, options->line);
    return options;
}

std::unique_ptr<UnitLine> UnitLine::choose(const TransferOptions& chosen, const std::filesystem::path& workingDirectory,
                                           Context& context)
{
    const bool simulated = chosen.port == kSimulatedPort;
    const bool simulatorOptions = chosen.simOlder || !chosen.simFaults.empty() || !chosen.simDatabase.empty() ||
                                  !chosen.simVocabulary.empty() || !chosen.simVoices.empty();
    if (simulatorOptions && !simulated) {
        printMessage(context.err, "The --sim- options need --port sim.");
        return nullptr;
    }
    if (simulated && chosen.dial) {
        UnitOptions options;
        options.olderUnit = chosen.simOlder;
        for (const std::string& fault : chosen.simFaults)
            options.faults.push_back(*parseFault(fault));
        return std::make_unique<DialLine>(*chosen.dial, std::move(options));
    }
    if (simulated) {
        UnitOptions options;
        options.olderUnit = chosen.simOlder;
        for (const std::string& fault : chosen.simFaults)
            options.faults.push_back(*parseFault(fault)); // checked by the parser
        std::array<std::string, 3> files;
        files[static_cast<std::size_t>(TransferKind::Database)] = chosen.simDatabase;
        files[static_cast<std::size_t>(TransferKind::Vocabulary)] = chosen.simVocabulary;
        files[static_cast<std::size_t>(TransferKind::Voices)] = chosen.simVoices;
        return std::make_unique<SimulatedLine>(std::move(options), std::move(files), context);
    }

    const auto port = choosePort(chosen.port, workingDirectory, context);
    if (!port)
        return nullptr;
    if (chosen.dial)
        return std::make_unique<DialLine>(std::make_shared<SerialTransport>(port->path), port->description,
                                          *chosen.dial);
    return std::make_unique<SerialLine>(port->path, port->description);
}

std::optional<ChosenPort> choosePort(const std::optional<std::string>& port,
                                     const std::filesystem::path& workingDirectory, Context& context)
{
    int slot = 0;
    if (port) {
        if (port->find('/') != std::string::npos)
            return ChosenPort{*port, *port};
        const auto number = portSlotNumber(*port);
        if (!number) {
            printMessage(context.err, "Not a port: " + *port, "COM 1 .. COM 8, 1 .. 8, a device path, or sim");
            return std::nullopt;
        }
        slot = *number;
    } else if (const auto config = readConfigFile(workingDirectory / kConfigFile)) {
        slot = config->portIndex();
    }
    const PortBindings bindings = PortBindings::load(portBindingsPath(workingDirectory));
    const std::string path = bindings.path(slot);
    return ChosenPort{path, portSlotName(slot) + " (" + path + ")"};
}

bool UnitLine::run(Workspace& workspace, Context& context,
                   const std::function<bool(ProgrammingSession&, Millis)>& start)
{
    // Questions (the warnings before a write) get No, which goes on.
    AnsweringPrompter prompter(context.err);
    ProgrammingSession session(workspace, transport(), prompter);
    ProgressPrinter printer(context, session);
    session.onText = [&](SessionLine which, const std::string& text) { printer.text(which, text); };
    session.onProgress = [&] { printer.progress(); };

    context.err << "Port: " << description() << "\n";
    const Clock& time = clock();
    const StopOnSignals stop;
    if (!start(session, time.now())) {
        printer.finish();
        return false;
    }
    while (session.running() && !StopOnSignals::caught()) {
        session.poll(time.now());
        if (!session.running())
            break;
        printer.follow();
        waitUntil(session.nextPollAt(time.now()));
    }
    printer.finish();
    if (const int signal = StopOnSignals::caught(); signal != 0 && session.running()) {
        context.err << "Stopped (" << ::strsignal(signal) << ")\n";
        return false; // the session, going, takes its staging file with it
    }
    // The window would beep until clicked; a terminal gets one bell.
    if (session.attention() && context.interactiveTerminal)
        context.err << '\a' << std::flush;
    return session.outcome() == SessionOutcome::Succeeded;
}

bool runTransfer(UnitLine& line, Workspace& workspace, Context& context,
                 const std::function<bool(ProgrammingSession&, Millis)>& start)
{
    return line.run(workspace, context, start);
}

std::optional<bool> receiveDatabase(const TransferOptions& options, Workspace& workspace, Context& context)
{
    const auto line = UnitLine::choose(options, workspace.workingDirectory(), context);
    if (!line)
        return std::nullopt;
    return runTransfer(*line, workspace, context, [](link::ProgrammingSession& session, Millis now) {
        return session.Receive(link::TransferKind::Database, now);
    });
}

int sendFile(const std::string& file, const TransferOptions& options, Context& context, link::TransferKind kind)
{
    Workspace workspace;
    const auto line = UnitLine::choose(options, workspace.workingDirectory(), context);
    if (!line)
        return 2;
    const bool written = runTransfer(*line, workspace, context, [&](link::ProgrammingSession& session, Millis now) {
        return session.Send(kind, now, std::filesystem::path(file));
    });
    return written ? 0 : 1;
}

} // namespace rk4::cli
