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

// Runs the session until `done` says so or nothing needs the tick any more.
template <typename Done>
void drive(CellPhoneSession& session, ModuleLine& line, Progress& progress, Done done)
{
    while (session.active() && !done()) {
        session.poll(line.now());
        progress.status(session.status());
        if (!session.active() || done())
            break;
        line.waitUntil(session.nextPollAt(line.now()));
    }
    progress.status(session.status());
}

int info(const CellOptions& options, Context& context)
{
    const auto line = chooseLine(options, context);
    if (!line)
        return 2;
    Progress progress(context);
    CellPhoneSession session(line->transport(), progress);
    if (!session.CmStartReading(line->now())) {
        progress.status(session.status());
        return 1;
    }
    drive(session, *line, progress, [] { return false; });
    if (!session.lastSequenceSucceeded())
        return 1;
    const CellReadings& shown = session.readings();
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
    const auto line = chooseLine(options, context);
    if (!line)
        return 2;
    Progress progress(context);
    CellPhoneSession session(line->transport(), progress);
    session.CmSendMIN(entries, line->now());
    if (!session.active()) {
        progress.status(session.status());
        return 1;
    }
    drive(session, *line, progress, [] { return false; });
    return session.minCheckPassed() == true && session.mdnCheckPassed() == true ? 0 : 1;
}

int rssi(const CellOptions& options, Context& context)
{
    const auto line = chooseLine(options, context);
    if (!line)
        return 2;
    Progress progress(context);
    CellPhoneSession session(line->transport(), progress);
    if (!session.CmStartPolling(true, line->now())) {
        progress.status(session.status());
        return 1;
    }
    int printed = 0;
    bool failed = false;
    drive(session, *line, progress, [&] {
        for (; printed < session.rssiReadingsTaken(); ++printed)
            context.out << "RSSI: " << session.readings().rssi << "\n" << std::flush;
        failed = session.rssiMisses() >= 3;
        return failed || (options.count > 0 && printed >= options.count);
    });
    return failed ? 1 : 0;
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
