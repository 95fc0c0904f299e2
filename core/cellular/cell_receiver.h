#pragma once
// Assembles the module's reply lines from the bytes it sends. The module
// echoes every command, then answers; the step waiting for the answer clears
// the line before it sends and says which first letter it is waiting for, and
// the first line that passes is held, with the line-ready flag set, until the
// next command clears it.

#include "core/cellular/cell_commands.h"
#include "core/link/transport.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace rk4::cellular {

// Which reply lines complete: any, or only those beginning with a letter.
enum class WaitFor : std::uint8_t { Any = 0, S = 1, D = 2, M = 3 };

class CellReceiver {
  public:
    // Before each command: forget the line and wait for `selector`.
    void clear(WaitFor selector);

    void accept(std::uint8_t byte);
    void accept(std::span<const std::uint8_t> bytes);
    // Takes every byte that has arrived on `port`.
    void drain(link::Transport& port);

    bool lineReady() const { return ready; }
    // The completed line (without CR or LF) once lineReady().
    std::string_view line() const { return ready ? std::string_view(text) : std::string_view(); }
    WaitFor waitingFor() const { return selector; }

  private:
    void endOfLine();

    std::string text;
    bool ready = false;
    WaitFor selector = WaitFor::Any;
};

} // namespace rk4::cellular
