// rk4-modemsim: a Hayes-compatible modem on a pseudo-terminal whose every call
// reaches a simulated Rk4. It prints the device to open (as the first line on
// standard output), takes AT commands, connects a dialled call to the unit,
// and can be told to fail the call the ways a telephone line does.

#include "core/common/clock.h"
#include "core/link/serial_transport.h"
#include "core/link/simulated_unit.h"
#include "core/modem/simulated_modem.h"
#include "sim/common/pseudo_terminal.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <optional>
#include <poll.h>
#include <string>

namespace {

using namespace rk4;
using namespace rk4::modem;

const char kUsage[] = "usage: rk4-modemsim [options]\n"
                      "  --fault FAULT      fail every call: busy, no-carrier, no-dialtone, no-answer, or\n"
                      "                     line-lost (the call drops in the middle of a transfer)\n"
                      "  --lost-after N     with line-lost: drop the call after N bytes from the unit\n"
                      "                     (default 3000, inside the first packet of a read)\n"
                      "  --ring-ms N        how long a call rings before it connects (default 1000)\n"
                      "  --unit-fault FAULT make the unit misbehave, as rk4-unitsim --fault does\n"
                      "  --older            the called unit is an older one (the alternate link)\n"
                      "  --quiet            do not log the modem's commands\n";

struct Arguments {
    ModemOptions modem;
    link::UnitOptions unit;
    bool quiet = false;
};

std::optional<Arguments> parse(int argc, char** argv)
{
    Arguments arguments;
    for (int i = 1; i < argc; ++i) {
        const std::string option = argv[i];
        if (option == "--help" || option == "-h") {
            std::cout << kUsage;
            std::exit(0);
        }
        if (option == "--quiet") {
            arguments.quiet = true;
            continue;
        }
        if (option == "--older") {
            arguments.unit.olderUnit = true;
            continue;
        }
        if (i + 1 >= argc) {
            std::cerr << "rk4-modemsim: " << option << " needs a value\n" << kUsage;
            return std::nullopt;
        }
        const std::string value = argv[++i];
        if (option == "--fault") {
            const auto fault = parseLineFault(value);
            if (!fault) {
                std::cerr << "rk4-modemsim: not a fault: " << value << "\n" << kUsage;
                return std::nullopt;
            }
            arguments.modem.fault = *fault;
        } else if (option == "--lost-after") {
            arguments.modem.lineLostAfter = std::strtoull(value.c_str(), nullptr, 10);
        } else if (option == "--ring-ms") {
            arguments.modem.ringTime = std::strtoull(value.c_str(), nullptr, 10);
        } else if (option == "--unit-fault") {
            const auto fault = link::parseFault(value);
            if (!fault) {
                std::cerr << "rk4-modemsim: not a unit fault: " << value << "\n";
                return std::nullopt;
            }
            arguments.unit.faults.push_back(*fault);
        } else {
            std::cerr << "rk4-modemsim: unknown option " << option << "\n" << kUsage;
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

    auto terminal = sim::startServing("rk4-modemsim");
    if (!terminal)
        return 1;

    SteadyClock clock;
    link::FdTransport master(terminal->master);
    SimulatedDialUp dialUp(master, arguments->modem, arguments->unit);

    std::cout << terminal->path << std::endl;
    std::cerr << "rk4-modemsim: modem on " << terminal->path << "\n";

    std::size_t logged = 0;
    bool wasOnCall = false;
    while (!sim::stopRequested()) {
        dialUp.poll(clock.now());
        if (!arguments->quiet) {
            const auto& heard = dialUp.modem().commands();
            for (; logged < heard.size(); ++logged)
                std::cerr << "rk4-modemsim: " << heard[logged] << "\n";
            if (dialUp.modem().onCall() != wasOnCall)
                std::cerr << "rk4-modemsim: " << (dialUp.modem().onCall() ? "call connected" : "call ended") << "\n";
        }
        wasOnCall = dialUp.modem().onCall();
        pollfd watch{terminal->master, POLLIN, 0};
        ::poll(&watch, 1, 5);
    }
    std::cerr << "rk4-modemsim: stopped\n";
    sim::closePseudoTerminal(*terminal);
    return 0;
}
