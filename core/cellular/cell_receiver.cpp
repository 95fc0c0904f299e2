#include "core/cellular/cell_receiver.h"

#include <array>

namespace rk4::cellular {

void CellReceiver::clear(WaitFor waitFor)
{
    text.clear();
    ready = false;
    selector = waitFor;
}

void CellReceiver::accept(std::uint8_t byte)
{
    if (byte == '\r' || byte == '\n') {
        endOfLine();
        return;
    }
    // Once a line is held, nothing more is taken until the next command.
    if (ready)
        return;
    // The line buffer holds 100 characters with its terminator.
    if (text.size() < kReplyLineSize - 1)
        text.push_back(static_cast<char>(byte));
}

void CellReceiver::accept(std::span<const std::uint8_t> bytes)
{
    for (const std::uint8_t byte : bytes)
        accept(byte);
}

void CellReceiver::drain(link::Transport& port)
{
    std::array<std::uint8_t, 256> buffer{};
    while (const std::size_t count = port.read(buffer))
        accept(std::span<const std::uint8_t>(buffer.data(), count));
}

void CellReceiver::endOfLine()
{
    if (ready)
        return;
    if (!text.empty()) {
        // The echo of a command begins "AT". Lines beginning with "A", or with
        // "T" second, are taken for echo; no reply of the module looks so.
        const bool echo = text[0] == 'A' || (text.size() > 1 && text[1] == 'T');
        bool wanted = false;
        switch (selector) {
        case WaitFor::Any: wanted = true; break;
        case WaitFor::S: wanted = text[0] == 'S'; break;
        case WaitFor::D: wanted = text[0] == 'D'; break;
        case WaitFor::M: wanted = text[0] == 'M'; break;
        }
        if (!echo && wanted) {
            ready = true;
            return;
        }
    }
    text.clear();
}

} // namespace rk4::cellular
