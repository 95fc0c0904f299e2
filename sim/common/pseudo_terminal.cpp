#include "sim/common/pseudo_terminal.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <iostream>
#include <termios.h>
#include <unistd.h>

namespace rk4::sim {

namespace {

volatile std::sig_atomic_t stopping = 0;

void requestStop(int) { stopping = 1; }

} // namespace

std::optional<PseudoTerminal> openPseudoTerminal()
{
    PseudoTerminal terminal;
    terminal.master = ::posix_openpt(O_RDWR | O_NOCTTY);
    if (terminal.master < 0 || ::grantpt(terminal.master) < 0 || ::unlockpt(terminal.master) < 0)
        return std::nullopt;
    const char* name = ::ptsname(terminal.master);
    if (!name)
        return std::nullopt;
    terminal.path = name;
    terminal.slave = ::open(name, O_RDWR | O_NOCTTY);
    if (terminal.slave < 0)
        return std::nullopt;
    // Raw from the start: no echo of the programmer's bytes, no line editing.
    termios settings{};
    ::tcgetattr(terminal.slave, &settings);
    ::cfmakeraw(&settings);
    ::tcsetattr(terminal.slave, TCSANOW, &settings);
    ::fcntl(terminal.master, F_SETFL, ::fcntl(terminal.master, F_GETFL) | O_NONBLOCK);
    return terminal;
}

void closePseudoTerminal(PseudoTerminal& terminal)
{
    if (terminal.slave >= 0)
        ::close(terminal.slave);
    terminal.slave = -1;
}

void stopOnSignals()
{
    struct sigaction action {};
    action.sa_handler = requestStop;
    ::sigaction(SIGINT, &action, nullptr);
    ::sigaction(SIGTERM, &action, nullptr);
    std::signal(SIGPIPE, SIG_IGN);
}

bool stopRequested() { return stopping != 0; }

std::optional<PseudoTerminal> startServing(const char* program)
{
    auto terminal = openPseudoTerminal();
    if (!terminal) {
        std::cerr << program << ": cannot create a pseudo-terminal: " << std::strerror(errno) << "\n";
        return std::nullopt;
    }
    stopOnSignals();
    return terminal;
}

} // namespace rk4::sim
