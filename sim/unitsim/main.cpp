// rk4-unitsim: a simulated Rk4 on a pseudo-terminal. It prints the device to
// open (as the first line on standard output) and answers the programmer's
// requests until it is interrupted.

#include "core/common/clock.h"
#include "core/database/database.h"
#include "core/database/file.h"
#include "core/link/memory_transport.h"
#include "core/link/serial_transport.h"
#include "core/link/simulated_unit.h"
#include "sim/common/pseudo_terminal.h"

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <iostream>
#include <optional>
#include <poll.h>
#include <string>
#include <termios.h>
#include <unistd.h>

namespace {

using namespace rk4;
using namespace rk4::link;

const char kUsage[] = "usage: rk4-unitsim [options]\n"
                      "  --product NAME      product name in the version reply (7 characters, default RK4-CEL)\n"
                      "  --firmware VERSION  firmware version in the version reply (4 characters, default 2.14)\n"
                      "  --older             an older unit: no version reply, only the alternate link\n"
                      "  --database FILE     keep a received database here (.dat form) and serve it for reads\n"
                      "  --vocabulary FILE   keep a received vocabulary here\n"
                      "  --voices FILE       keep received voices here and serve them for reads\n"
                      "  --pace              send replies at the pace of a 9600-baud line (a pseudo-terminal\n"
                      "                      takes the programmer's requests at once, whatever the pace)\n"
                      "  --erase-ms N        how long the unit is busy erasing its voice store (default 8000)\n"
                      "  --fault FAULT       misbehave: KIND[:COMMAND[:SKIP[:TIMES]]], KIND one of nak, noise,\n"
                      "                      crc, silence; COMMAND a name (version, link, link-alt, write-database,\n"
                      "                      write-voices, write-vocabulary, read-database, read-voices, packet,\n"
                      "                      end, any) or a code like 0x8a; let SKIP matching requests through,\n"
                      "                      then hit TIMES of them (default 1, 0 for all). Repeatable.\n"
                      "  --quiet             do not log requests\n";

struct Arguments {
    UnitOptions unit;
    std::string databaseFile, vocabularyFile, voicesFile;
    bool pace = false;
    bool quiet = false;
};

std::optional<Arguments> parse(int argc, char** argv)
{
    Arguments arguments;
    for (int i = 1; i < argc; ++i) {
        const std::string option = argv[i];
        auto value = [&]() -> std::optional<std::string> {
            if (i + 1 >= argc)
                return std::nullopt;
            return std::string(argv[++i]);
        };
        std::optional<std::string> text;
        if (option == "--older") {
            arguments.unit.olderUnit = true;
        } else if (option == "--pace") {
            arguments.pace = true;
        } else if (option == "--quiet") {
            arguments.quiet = true;
        } else if (option == "--help" || option == "-h") {
            std::cout << kUsage;
            std::exit(0);
        } else if (!(text = value())) {
            std::cerr << "rk4-unitsim: " << option << " needs a value\n" << kUsage;
            return std::nullopt;
        } else if (option == "--product") {
            arguments.unit.product = *text;
        } else if (option == "--firmware") {
            arguments.unit.firmware = *text;
        } else if (option == "--database") {
            arguments.databaseFile = *text;
        } else if (option == "--vocabulary") {
            arguments.vocabularyFile = *text;
        } else if (option == "--voices") {
            arguments.voicesFile = *text;
        } else if (option == "--erase-ms") {
            arguments.unit.voiceEraseMillis = std::strtoull(text->c_str(), nullptr, 10);
        } else if (option == "--fault") {
            const auto fault = parseFault(*text);
            if (!fault) {
                std::cerr << "rk4-unitsim: not a fault: " << *text << "\n";
                return std::nullopt;
            }
            arguments.unit.faults.push_back(*fault);
        } else {
            std::cerr << "rk4-unitsim: unknown option " << option << "\n" << kUsage;
            return std::nullopt;
        }
    }
    return arguments;
}

void loadInto(std::vector<std::uint8_t>& target, const std::string& file, std::size_t requiredSize = 0)
{
    if (file.empty())
        return;
    const auto bytes = readWholeFile(file);
    if (!bytes)
        return; // nothing kept yet
    if (requiredSize && bytes->size() != requiredSize) {
        std::cerr << "rk4-unitsim: " << file << " is not " << requiredSize << " bytes; not served\n";
        return;
    }
    target = *bytes;
}

std::string commandName(std::uint8_t code)
{
    switch (code) {
    case CMD_VERSION: return "version";
    case CMD_LINK: return "link";
    case CMD_LINK_ALT: return "alternate link";
    case CMD_WRITE_DATABASE: return "write database";
    case CMD_WRITE_VOICES: return "write voices";
    case CMD_WRITE_VOCABULARY: return "write vocabulary";
    case CMD_READ_DATABASE: return "read database";
    case CMD_READ_VOICES: return "read voices";
    case CMD_PACKET: return "packet";
    case CMD_END: return "end";
    case CMD_HANGUP: return "hang up";
    default: return "unknown";
    }
}

} // namespace

int main(int argc, char** argv)
{
    const auto arguments = parse(argc, argv);
    if (!arguments)
        return 2;

    auto terminal = sim::startServing("rk4-unitsim");
    if (!terminal)
        return 1;

    SteadyClock clock;
    FdTransport master(terminal->master);
    std::optional<PacedTransport> paced;
    if (arguments->pace)
        paced.emplace(master, clock, 9600);
    Transport& line = paced ? static_cast<Transport&>(*paced) : master;

    SimulatedUnit unit(line, arguments->unit);
    loadInto(unit.store.database, arguments->databaseFile, dbasesize);
    loadInto(unit.store.vocabulary, arguments->vocabularyFile);
    loadInto(unit.store.voices, arguments->voicesFile);
    unit.onStored = [&](TransferKind kind) {
        const std::string& file = kind == TransferKind::Database     ? arguments->databaseFile
                                  : kind == TransferKind::Vocabulary ? arguments->vocabularyFile
                                                                     : arguments->voicesFile;
        const auto& bytes = kind == TransferKind::Database     ? unit.store.database
                            : kind == TransferKind::Vocabulary ? unit.store.vocabulary
                                                               : unit.store.voices;
        if (file.empty())
            return;
        if (const SaveResult saved = writeFileAtomically(file, bytes))
            std::cerr << "rk4-unitsim: stored " << bytes.size() << " bytes in " << file << "\n";
        else
            std::cerr << "rk4-unitsim: cannot write " << file << ": " << saved.cause() << "\n";
    };

    std::cout << terminal->path << std::endl;
    std::cerr << "rk4-unitsim: unit " << arguments->unit.product << " " << arguments->unit.firmware << " on "
              << terminal->path << (arguments->pace ? " at 9600 baud" : "") << "\n";

    std::size_t logged = 0;
    while (!sim::stopRequested()) {
        unit.poll(clock.now());
        const bool sending = !line.allSent();
        for (; logged < unit.requests().size(); ++logged)
            if (!arguments->quiet)
                std::cerr << "rk4-unitsim: " << commandName(unit.requests()[logged]) << "\n";
        pollfd watch{terminal->master, POLLIN, 0};
        ::poll(&watch, 1, sending || paced ? 1 : 50);
    }
    std::cerr << "rk4-unitsim: stopped\n";
    sim::closePseudoTerminal(*terminal);
    return 0;
}
