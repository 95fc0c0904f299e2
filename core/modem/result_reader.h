#pragma once
// The modem's side of the conversation in command mode: its output cut into
// lines, and each line read as one of the result codes the link acts on.

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace rk4::modem {

enum class ModemResult {
    Other, // an echo, an information line, anything not acted on
    Ok,
    Connect,
    Ring,
    NoCarrier,
    Error,
    NoDialtone,
    Busy,
    NoAnswer,
    Dialing, // the modem has its dial tone and is dialling
    Ringing, // the far end rings
};

// Word results ("CONNECT 9600", "NO DIALTONE") and their digit forms ("1", "6").
ModemResult parseResult(std::string_view line);

// True for the results that end a call that has not connected.
bool endsCall(ModemResult result);

class ResultReader {
  public:
    static constexpr std::size_t kLongestLine = 80;
    static constexpr std::size_t kMostLines = 32;

    // Takes the modem's bytes. A CR or LF ends a line; empty lines are
    // dropped; a line is cut at kLongestLine characters and unprintable
    // bytes are left out; beyond kMostLines unread lines the oldest go.
    void feed(std::span<const std::uint8_t> bytes);
    std::optional<std::string> nextLine();
    void clear();

  private:
    std::string partial;
    bool overlong = false;
    std::deque<std::string> lines;
};

} // namespace rk4::modem
