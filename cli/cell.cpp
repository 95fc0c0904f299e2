// rk4 cell: the unit's radio module over its own serial cable. "info" reads
// everything the module shows, "write" programs its MIN and MDN and checks
// them back, "rssi" follows the signal once a second.

#include "cli/support.h"
#include "cli/transfer.h"
#include "core/cellular/cell_session.h"
#include "core/cellular/simulated_module.h"
#include "core/link/memory_transport.h"
#include "core/link/serial_transport.h"

#include <CLI/CLI.hpp>

#include <memory>
#include <ostream>

namespace rk4::cli {

namespace {

using namespace rk4::cellular;

constexpr const char* kSimulatedPort = "sim";

struct CellOptions {
    std::optional<std::string> port;
    std::string min;
    std::string mdn;
    int count = 0;
};

// The module's line: a serial port on the real clock, or the built-in module
// in memory, whose time runs straight to the next tick.
class ModuleLine {
  public:
    virtual ~ModuleLine() = default;
    virtual link::Transport& transport() = 0;
    virtual Millis now() const = 0;
    virtual void waitUntil(Millis target) = 0;
};

class SerialModuleLine final : public ModuleLine {
  public:
    explicit SerialModuleLine(std::string path) : port(std::move(path), kCellSerialLine) {}
    link::Transport& transport() override { return port; }
    Millis now() const override { return clock.now(); }
    void waitUntil(Millis target) override
    {
        const Millis current = clock.now();
        if (target > current)
            link::waitForBytes(port, target - current);
    }

  private:
    SteadyClock clock;
    link::SerialTransport port;
};

class SimulatedModuleLine final : public ModuleLine {
  public:
    SimulatedModuleLine() : module(memory.unit()) { memory.unit().open(); }
    link::Transport& transport() override { return memory.tool(); }
    Millis now() const override { return clock.now(); }
    void waitUntil(Millis target) override
    {
        module.poll();
        clock.set(std::max(target, clock.now() + 1));
    }

  private:
    ManualClock clock{1};
    link::MemoryLink memory;
    SimulatedModule module;
};

std::unique_ptr<ModuleLine> chooseLine(const CellOptions& options, Context& context)
{
    if (options.port == kSimulatedPort)
        return std::make_unique<SimulatedModuleLine>();
    const auto port = choosePort(options.port, std::filesystem::current_path(), context);
    if (!port)
        return nullptr;
    context.err << "Port: " << port->description << "\n";
    return std::make_unique<SerialModuleLine>(port->path);
}

// Prints each status once as it changes, and each message box; a failure's
// status that repeats its message is not printed again.
class Progress final : public Prompter {
  public:
    explicit Progress(Context& context) : context(context), printer(context.err) {}
    Answer ask(const Message& message) override
    {
        lastPrinted = message.text;
        return printer.ask(message);
    }
    std::optional<std::string> chooseFile(const FileRequest&) override { return std::nullopt; }
    void status(const std::string& text)
    {
        if (text.empty() || text == lastStatus)
            return;
        lastStatus = text;
        if (text != lastPrinted)
            context.err << text << "\n";
        lastPrinted = text;
    }

  private:
    Context& context;
    StreamPrompter printer;
    std::string lastStatus;
    std::string lastPrinted;
};

// One command's work: the line, its printer and the session on it.
class CellRun {
  public:
    CellRun(std::unique_ptr<ModuleLine> chosen, Context& context)
        : line(std::move(chosen)), progress(context), session(line->transport(), progress)
    {}

    // Starts the work with `start` and runs it until `done` says so or nothing
    // needs the tick any more.
    template <typename Start, typename Done>
    void run(Start start, Done done)
    {
        start(session, line->now());
        while (session.active() && !done()) {
            session.poll(line->now());
            progress.status(session.status());
            if (!session.active() || done())
                break;
            line->waitUntil(session.nextPollAt(line->now()));
        }
        progress.status(session.status());
    }

    std::unique_ptr<ModuleLine> line;
    Progress progress;
    CellPhoneSession session;
};

constexpr auto kNever = [] { return false; };

int info(const CellOptions& options, Context& context)
{
    auto line = chooseLine(options, context);
    if (!line)
        return 2;
    CellRun cell(std::move(line), context);
    cell.run([](CellPhoneSession& session, Millis now) { session.CmStartReading(now); }, kNever);
    if (!cell.session.lastSequenceSucceeded())
        return 1;
    const CellReadings& shown = cell.session.readings();
    context.out << "Model: " << shown.model << "\n"
                << "Software version: " << shown.version << "\n"
                << "Band class: " << shown.bandClass << "\n"
                << "Band: " << shown.band << "\n"
                << "SID: " << shown.sid << "\n"
                << "Protocol: " << shown.protocol << "\n"
                << "ESN: " << shown.esn << "\n"
                << "MIN: " << shown.min << "\n"
                << "MDN: " << shown.mdn << "\n"
                << "RSSI: " << shown.rssi << "\n";
    return 0;
}

int write(const CellOptions& options, Context& context)
{
    CellEntries entries{options.min, options.mdn, false};
    // Refused entries are bad usage: nothing is sent.
    StreamPrompter refusals(context.err);
    if (CheckMIN(entries, &refusals) || CheckMDN(entries, &refusals))
        return 2;
    auto line = chooseLine(options, context);
    if (!line)
        return 2;
    CellRun cell(std::move(line), context);
    cell.run([&](CellPhoneSession& session, Millis now) { session.CmSendMIN(entries, now); }, kNever);
    return cell.session.minCheckPassed() == true && cell.session.mdnCheckPassed() == true ? 0 : 1;
}

int rssi(const CellOptions& options, Context& context)
{
    auto line = chooseLine(options, context);
    if (!line)
        return 2;
    CellRun cell(std::move(line), context);
    int printed = 0;
    bool failed = false;
    cell.run([](CellPhoneSession& session, Millis now) { session.CmStartPolling(true, now); },
             [&] {
                 for (; printed < cell.session.rssiReadingsTaken(); ++printed)
                     context.out << "RSSI: " << cell.session.readings().rssi << "\n" << std::flush;
                 failed = cell.session.rssiMisses() >= 3;
                 return failed || (options.count > 0 && printed >= options.count);
             });
    // A port that would not open never started polling.
    return failed || printed == 0 ? 1 : 0;
}

void addPortOption(CLI::App& verb, CellOptions& options)
{
    verb.add_option("--port", options.port,
                    "The module's port: COM1 .. COM8, a device path, or sim for the built-in module "
                    "(default: the port saved in rk4.cfg)");
}

} // namespace

VerbBody addCellVerb(CLI::App& rk4, Context& context)
{
    CLI::App* verb = rk4.add_subcommand("cell", "Read, program and follow the unit's cellular module")
                         ->footer("The module is reached over its own cable at 19200 baud.");
    verb->require_subcommand(1);
    auto options = std::make_shared<CellOptions>();

    CLI::App* infoVerb = verb->add_subcommand("info", "Read the module's model, identity, numbers and signal");
    addPortOption(*infoVerb, *options);

    CLI::App* writeVerb =
        verb->add_subcommand("write", "Write the MIN and MDN, then read both back (exit 0 only when both match)");
    writeVerb->add_option("--min", options->min, "The mobile identification number, 10 characters")->required();
    writeVerb->add_option("--mdn", options->mdn, "The mobile directory number, 10 characters")->required();
    addPortOption(*writeVerb, *options);

    CLI::App* rssiVerb = verb->add_subcommand("rssi", "Print the signal reading once a second");
    rssiVerb->add_option("--count", options->count, "Stop after this many readings (default: until interrupted)")
        ->check(CLI::NonNegativeNumber);
    addPortOption(*rssiVerb, *options);

    return [=, &context] {
        if (infoVerb->parsed())
            return info(*options, context);
        if (writeVerb->parsed())
            return write(*options, context);
        return rssi(*options, context);
    };
}

} // namespace rk4::cli
