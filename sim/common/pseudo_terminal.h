#pragma once
// What every simulated peer needs: a pseudo-terminal for the programmer to
// open, and a clean stop on Ctrl-C or a kill.

#include <optional>
#include <string>

namespace rk4::sim {

// The master side of a new pseudo-terminal, non-blocking, and a held-open
// raw slave, so the master never sees a hang-up between two programmer
// sessions. `path` is the device the programmer opens.
struct PseudoTerminal {
    int master = -1;
    int slave = -1;
    std::string path;
};

std::optional<PseudoTerminal> openPseudoTerminal();
void closePseudoTerminal(PseudoTerminal& terminal);

// SIGINT and SIGTERM ask the peer to stop; a closed pipe is no reason to die.
void stopOnSignals();

// A peer's start: its pseudo-terminal opened and the signals set to stop it.
// Says why on stderr, as `program`, and gives nothing when there is no
// pseudo-terminal to be had.
std::optional<PseudoTerminal> startServing(const char* program);
bool stopRequested();

} // namespace rk4::sim
