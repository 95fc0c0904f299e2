#pragma once
// The radio module's side of the AT link, for tests, the dialog's demo and
// rk4-cellsim: it echoes what it is sent, answers the commands this tool uses,
// keeps the MIN and MDN it is given, and can be told to misbehave.

#include "core/common/clock.h"
#include "core/link/transport.h"

#include <optional>
#include <string>
#include <vector>

namespace rk4::cellular {

enum class ModuleFaultKind {
    Error,   // answer "ERROR" instead of acting
    Silence, // say nothing at all, not even the echo
};

// A misbehaviour for the commands that begin with `command` ("AT$KWSPC",
// "AT+CSQ?", or "" for every command): let `skip` of them through, then hit
// `times` of them (0: every one after that).
struct ModuleFault {
    ModuleFaultKind kind = ModuleFaultKind::Error;
    std::string command;
    int skip = 0;
    int times = 0;
    int seen = 0;
};

// "KIND:COMMAND[:SKIP[:TIMES]]", KIND error or silence and COMMAND the start
// of a command or "any"; nothing for other text.
std::optional<ModuleFault> parseModuleFault(const std::string& text);

struct ModuleOptions {
    std::string model = "KX-414";
    std::string version = "M6.2B";
    std::string versionTail = "PRL 52001";
    std::string bandLine = "1,B,4152"; // band class, band, SID as "+CSS: " gives them
    std::string esn = "9F12ABCD";
    char protocolRevision = '6';
    std::vector<int> rssiValues{31}; // "+CSQ: " values, taken in turn
    std::string min = "0000000000";
    std::string mdn = "0000000000";
    bool echo = true;
    bool locked = false;          // refuses the service programming code
    bool ignoreMinWrites = false; // says the MIN changed but keeps the old one
    std::vector<ModuleFault> faults;
};

class SimulatedModule {
  public:
    SimulatedModule(link::Transport& line, ModuleOptions options = {});

    // Reads what the tool sent and answers each complete command.
    void poll();

    const std::string& min() const { return options.min; }
    const std::string& mdn() const { return options.mdn; }
    bool networkCodeSet() const { return networkCode; }
    // Every command heard, without its line end.
    const std::vector<std::string>& heard() const { return commands; }

  private:
    void answer(const std::string& command);
    void send(const std::string& text);
    std::string reply(const std::string& command);

    link::Transport& line;
    ModuleOptions options;
    std::string pending;
    std::vector<std::string> commands;
    bool programming = false;
    bool unlocked = false;
    bool networkCode = false;
    std::size_t rssiIndex = 0;
};

} // namespace rk4::cellular
