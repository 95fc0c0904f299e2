// rk4-cellsim: a simulated cellular radio module on a pseudo-terminal. It
// prints the device to open (as the first line on standard output) and
// answers the programmer's AT commands until it is interrupted.

#include "core/cellular/cell_commands.h"
#include "core/cellular/simulated_module.h"
#include "core/common/clock.h"
#include "core/link/memory_transport.h"
#include "core/link/serial_transport.h"
#include "sim/common/pseudo_terminal.h"

#include <cstdlib>
#include <cstring>
#include <iostream>
#include <optional>
#include <poll.h>
#include <sstream>
#include <string>
#include <unistd.h>

namespace {

using namespace rk4;
using namespace rk4::cellular;

const char kUsage[] = "usage: rk4-cellsim [options]\n"
                      "  --model TEXT        model in the +GMM reply (default KX-414)\n"
                      "  --version TEXT      software version in the +GMR reply (default M6.2B)\n"
                      "  --band TEXT         band class, band and SID as +CSS gives them (default 1,B,4152)\n"
                      "  --esn HEX           eight hexadecimal ESN digits (default 9F12ABCD)\n"
                      "  --protocol DIGIT    protocol revision: 1, 3, 6 or another digit (default 6)\n"
                      "  --rssi LIST         +CSQ values given in turn, e.g. 31,20,99 (default 31)\n"
                      "  --min DIGITS        the MIN the module starts with (default 0000000000)\n"
                      "  --mdn DIGITS        the MDN the module starts with (default 0000000000)\n"
                      "  --pace              send at the pace of a 19200-baud line\n"
                      "  --quiet             do not log commands\n"
                      "faults:\n"
                      "  --locked            a locked module: the service programming code is refused with ERROR\n"
                      "  --keep-min          say the MIN changed but keep the old one (the read-back then differs)\n"
                      "  --no-echo           do not echo commands\n"
                      "  --fault FAULT       KIND:COMMAND[:SKIP[:TIMES]], KIND error (answer ERROR) or silence (say\n"
                      "                      nothing); COMMAND the start of a command (AT$KWSPC, AT+CSQ?, AT) or any;\n"
                      "                      let SKIP matching commands through, then hit TIMES of them (default 0:\n"
                      "                      every one). Repeatable.\n";

struct Arguments {
    ModuleOptions module;
    bool pace = false;
    bool quiet = false;
};

std::optional<std::vector<int>> parseList(const std::string& text)
{
    std::vector<int> values;
    std::stringstream stream(text);
    std::string item;
    while (std::getline(stream, item, ',')) {
        if (item.empty() || item.size() > 3 || item.find_first_not_of("0123456789") != std::string::npos)
            return std::nullopt;
        values.push_back(std::atoi(item.c_str()));
    }
    if (values.empty())
        return std::nullopt;
    return values;
}

std::optional<Arguments> parse(int argc, char** argv)
{
    Arguments arguments;
    for (int i = 1; i < argc; ++i) {
        const std::string option = argv[i];
        std::optional<std::string> text;
        if (option == "--help" || option == "-h") {
            std::cout << kUsage;
            std::exit(0);
        } else if (option == "--locked") {
            arguments.module.locked = true;
        } else if (option == "--keep-min") {
            arguments.module.ignoreMinWrites = true;
        } else if (option == "--no-echo") {
            arguments.module.echo = false;
        } else if (option == "--pace") {
            arguments.pace = true;
        } else if (option == "--quiet") {
            arguments.quiet = true;
        } else if (i + 1 >= argc) {
            std::cerr << "rk4-cellsim: " << option << " needs a value\n" << kUsage;
            return std::nullopt;
        } else if (text = argv[++i]; option == "--model") {
            arguments.module.model = *text;
        } else if (option == "--version") {
            arguments.module.version = *text;
        } else if (option == "--band") {
            arguments.module.bandLine = *text;
        } else if (option == "--esn") {
            arguments.module.esn = *text;
        } else if (option == "--protocol" && text->size() == 1) {
            arguments.module.protocolRevision = text->front();
        } else if (option == "--min") {
            arguments.module.min = *text;
        } else if (option == "--mdn") {
            arguments.module.mdn = *text;
        } else if (option == "--rssi") {
            const auto values = parseList(*text);
            if (!values) {
                std::cerr << "rk4-cellsim: not a list of values: " << *text << "\n";
                return std::nullopt;
            }
            arguments.module.rssiValues = *values;
        } else if (option == "--fault") {
            const auto fault = parseModuleFault(*text);
            if (!fault) {
                std::cerr << "rk4-cellsim: not a fault: " << *text << "\n";
                return std::nullopt;
            }
            arguments.module.faults.push_back(*fault);
        } else {
            std::cerr << "rk4-cellsim: unknown option " << option << "\n" << kUsage;
            return std::nullopt;
        }
    }
    return arguments;
}

} // namespace

int main(int argc, char** argv)
{
    const auto arguments = parse(argc, argv);
    if (!arguments)
        return 2;

    auto terminal = sim::startServing("rk4-cellsim");
    if (!terminal)
        return 1;

    SteadyClock clock;
    link::FdTransport master(terminal->master);
    std::optional<link::PacedTransport> paced;
    if (arguments->pace)
        paced.emplace(master, clock, kCellBaud);
    link::Transport& line = paced ? static_cast<link::Transport&>(*paced) : master;
    SimulatedModule module(line, arguments->module);

    std::cout << terminal->path << std::endl;
    std::cerr << "rk4-cellsim: module " << arguments->module.model << " on " << terminal->path << " at " << kCellBaud
              << " baud" << (arguments->module.locked ? ", locked" : "") << "\n";

    std::size_t logged = 0;
    while (!sim::stopRequested()) {
        module.poll();
        const bool sending = !line.allSent();
        for (; logged < module.heard().size(); ++logged)
            if (!arguments->quiet)
                std::cerr << "rk4-cellsim: " << module.heard()[logged] << "\n";
        pollfd watch{terminal->master, POLLIN, 0};
        ::poll(&watch, 1, sending ? 1 : 50);
    }
    std::cerr << "rk4-cellsim: stopped with MIN " << module.min() << " and MDN " << module.mdn() << "\n";
    sim::closePseudoTerminal(*terminal);
    return 0;
}
