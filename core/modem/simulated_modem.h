#pragma once
// A Hayes-compatible modem for tests and the rk4-modemsim program: it takes AT
// commands from the tool, "dials" by connecting the call to a far end (the
// simulated unit), passes the call's bytes both ways, leaves data mode on the
// escape with its guard times, hangs up on ATH, and can be told to fail the
// call in the ways a telephone line does.

#include "core/common/clock.h"
#include "core/link/memory_transport.h"
#include "core/link/simulated_unit.h"
#include "core/link/transport.h"

#include <optional>
#include <string>
#include <vector>

namespace rk4::modem {

enum class LineFault {
    None,
    Busy,       // the number is busy
    NoCarrier,  // the far end answers but no carrier comes
    NoDialtone, // the line is dead
    NoAnswer,   // it rings and rings
    LineLost,   // the call drops after lineLostAfter bytes from the far end
};

// "busy", "no-carrier", "no-dialtone", "no-answer", "line-lost"; nothing otherwise.
std::optional<LineFault> parseLineFault(const std::string& text);

struct ModemOptions {
    LineFault fault = LineFault::None;
    std::size_t lineLostAfter = 3000;
    Millis ringTime = 1000;    // from dialling to CONNECT
    Millis escapeGuard = 1000; // silence around "+++"
    std::string connectText = "CONNECT 9600";
};

class SimulatedModem {
  public:
    // `tool` is the side the programmer talks to, `farEnd` the called unit's line.
    SimulatedModem(link::Transport& tool, link::Transport& farEnd, ModemOptions options = {});

    void poll(Millis now);

    bool onCall() const { return mode == Mode::Data || mode == Mode::OnlineCommand; }
    // The failures of the next calls can be changed between calls.
    ModemOptions& settings() { return options; }
    // Every command line received ("ATD2255669", "ATH"), and "+++" for each escape.
    const std::vector<std::string>& commands() const { return heard; }
    // Numbers dialled.
    const std::vector<std::string>& dialled() const { return numbers; }

  private:
    enum class Mode { Command, Dialling, Data, OnlineCommand };

    void say(const std::string& text);
    void command(const std::string& line, Millis now);
    void hangUp();
    void dataFromTool(Millis now);

    link::Transport& tool;
    link::Transport& farEnd;
    ModemOptions options;
    Mode mode = Mode::Command;
    bool echo = true;
    bool words = true;
    std::string line;
    std::vector<std::string> heard;
    std::vector<std::string> numbers;
    Millis dialStart = 0;
    bool ringingSaid = false;
    std::size_t fromFarEnd = 0;
    // Escape detection: when the tool last sent data, and the pluses since.
    Millis lastToolByte = 0;
    int pluses = 0;
    Millis plusesEnded = 0;
};

// A modem whose calls reach a simulated unit: the far end of every number.
class SimulatedDialUp {
  public:
    SimulatedDialUp(link::Transport& tool, ModemOptions modemOptions = {}, link::UnitOptions unitOptions = {});

    void poll(Millis now);
    SimulatedModem& modem() { return dialUp; }
    link::SimulatedUnit& unit() { return called; }

  private:
    link::MemoryLink telephoneLine;
    link::SimulatedUnit called;
    SimulatedModem dialUp;
};

} // namespace rk4::modem
