#include "cli/transfer.h"

#include "core/database/file.h"
#include "core/link/port_slots.h"
#include "core/link/serial_transport.h"
#include "core/link/session_driver.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <ostream>

namespace rk4::cli {

using namespace rk4::link;

namespace {

constexpr const char* kSimulatedPort = "sim";

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
// pauses finishes at once.
class SimulatedLine final : public UnitLine {
  public:
    SimulatedLine(UnitOptions options, std::array<std::string, 3> files, Context& context)
        : port(time, std::move(options)), files(std::move(files)), context(context)
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
            context.err << "rk4: " << file << " is not " << requiredSize << " bytes; the simulated unit ignores it\n";
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
            context.err << "rk4: the simulated unit cannot keep its memory in " << file << ": " << kept.cause() << "\n";
    }

    ManualClock time{1};
    SimulatedUnitPort port;
    std::array<std::string, 3> files; // by TransferKind
    Context& context;
};

std::optional<int> slotNumber(const std::string& text)
{
    std::string digits = text;
    for (const char* prefix : {"COM ", "COM", "com ", "com"})
        if (text.rfind(prefix, 0) == 0) {
            digits = text.substr(std::string(prefix).size());
            break;
        }
    if (digits.size() != 1 || digits[0] < '1' || digits[0] > '0' + kPortSlotCount)
        return std::nullopt;
    return digits[0] - '1';
}

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
// packets on the last line of a terminal.
class ProgressPrinter {
  public:
    ProgressPrinter(Context& context, const ProgrammingSession& session) : context(context), session(session) {}

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

  private:
    void drawBar()
    {
        const SessionView& view = session.view();
        if (!context.interactiveTerminal || !view.progressOpen || view.packetsTotal <= 0)
            return;
        constexpr int width = 30;
        const int done = std::clamp(view.packetsDone, 0, view.packetsTotal);
        const int filled = done * width / view.packetsTotal;
        context.err << "\r[" << std::string(static_cast<std::size_t>(filled), '#')
                    << std::string(static_cast<std::size_t>(width - filled), '.') << "] " << done << "/"
                    << view.packetsTotal << " packets" << std::flush;
        barShown = true;
    }

    void clearBar()
    {
        if (barShown)
            context.err << "\r\033[K" << std::flush;
        barShown = false;
    }

    Context& context;
    const ProgrammingSession& session;
    std::array<std::string, 4> shown;
    std::string lastPrinted;
    bool barShown = false;
};

} // namespace

Parsed parseTransferArguments(const Arguments& args)
{
    return parseArguments(args, {"--port", "--sim-fault", "--sim-database", "--sim-voices", "--sim-vocabulary"});
}

std::optional<int> checkTransferArguments(const Parsed& parsed, Context& context, const char* verb,
                                          const char* fileKind)
{
    for (const std::string& flag : parsed.flags)
        if (flag != "--sim-older")
            return usageError(context, verb, "unknown option " + flag);
    if (parsed.positional.size() != 1)
        return usageError(context, verb, std::string("expected one ") + fileKind);
    return std::nullopt;
}

std::unique_ptr<UnitLine> UnitLine::choose(const Parsed& parsed, const std::filesystem::path& workingDirectory,
                                           Context& context)
{
    const std::optional<std::string> chosen = parsed.option("--port");
    const bool simulated = chosen == kSimulatedPort;

    UnitOptions options;
    std::array<std::string, 3> files;
    bool simulatorOptions = parsed.has("--sim-older");
    options.olderUnit = parsed.has("--sim-older");
    for (const auto& [name, value] : parsed.options) {
        if (name == "--port")
            continue;
        simulatorOptions = true;
        if (name == "--sim-fault") {
            const auto fault = parseFault(value);
            if (!fault) {
                context.err << "rk4: not a fault: " << value
                            << " (KIND[:COMMAND[:SKIP[:TIMES]]], KIND one of nak, noise, crc, silence)\n";
                return nullptr;
            }
            options.faults.push_back(*fault);
        } else if (name == "--sim-database") {
            files[static_cast<std::size_t>(TransferKind::Database)] = value;
        } else if (name == "--sim-vocabulary") {
            files[static_cast<std::size_t>(TransferKind::Vocabulary)] = value;
        } else if (name == "--sim-voices") {
            files[static_cast<std::size_t>(TransferKind::Voices)] = value;
        } else {
            context.err << "rk4: unknown option " << name << "\n";
            return nullptr;
        }
    }
    if (simulatorOptions && !simulated) {
        context.err << "rk4: the --sim- options need --port sim\n";
        return nullptr;
    }
    if (simulated)
        return std::make_unique<SimulatedLine>(std::move(options), std::move(files), context);

    int slot = 0;
    if (chosen) {
        if (chosen->find('/') != std::string::npos)
            return std::make_unique<SerialLine>(*chosen, *chosen);
        const auto number = slotNumber(*chosen);
        if (!number) {
            context.err << "rk4: not a port: " << *chosen << " (COM 1 .. COM 8, 1 .. 8, a device path, or sim)\n";
            return nullptr;
        }
        slot = *number;
    } else if (const auto config = readConfigFile(workingDirectory / kConfigFile)) {
        slot = config->portIndex();
    }
    const PortBindings bindings = PortBindings::load(portBindingsPath(workingDirectory));
    const std::string path = bindings.path(slot);
    return std::make_unique<SerialLine>(path, portSlotName(slot) + " (" + path + ")");
}

bool runTransfer(UnitLine& line, Workspace& workspace, Context& context,
                 const std::function<bool(ProgrammingSession&, Millis)>& start)
{
    // Questions (the warnings before a write) get No, which goes on.
    AnsweringPrompter prompter(context.err);
    ProgrammingSession session(workspace, line.transport(), prompter);
    ProgressPrinter printer(context, session);
    session.onText = [&](SessionLine which, const std::string& text) { printer.text(which, text); };
    session.onProgress = [&] { printer.progress(); };

    context.err << "Port: " << line.description() << "\n";
    const Clock& clock = line.clock();
    if (!start(session, clock.now())) {
        printer.finish();
        return false;
    }
    while (session.running()) {
        session.poll(clock.now());
        if (!session.running())
            break;
        line.waitUntil(session.nextPollAt(clock.now()));
    }
    printer.finish();
    // The window would beep until clicked; a terminal gets one bell.
    if (session.attention() && context.interactiveTerminal)
        context.err << '\a' << std::flush;
    return session.outcome() == SessionOutcome::Succeeded;
}

std::optional<bool> receiveDatabase(const Parsed& parsed, Workspace& workspace, Context& context)
{
    const auto line = UnitLine::choose(parsed, workspace.workingDirectory(), context);
    if (!line)
        return std::nullopt;
    return runTransfer(*line, workspace, context, [](link::ProgrammingSession& session, Millis now) {
        return session.Receive(link::TransferKind::Database, now);
    });
}

int sendFile(const Arguments& args, Context& context, link::TransferKind kind, const char* verb, const char* usage)
{
    const Parsed parsed = parseTransferArguments(args);
    if (const auto refused = checkTransferArguments(parsed, context, verb, usage))
        return *refused;
    const std::filesystem::path file = parsed.positional[0];
    Workspace workspace;
    const auto line = UnitLine::choose(parsed, workspace.workingDirectory(), context);
    if (!line)
        return 2;
    const bool written = runTransfer(*line, workspace, context, [&](link::ProgrammingSession& session, Millis now) {
        return session.Send(kind, now, file);
    });
    return written ? 0 : 1;
}

} // namespace rk4::cli
