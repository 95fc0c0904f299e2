#include "core/modem/result_reader.h"

#include <array>
#include <utility>

namespace rk4::modem {

namespace {

struct Word {
    std::string_view text;
    ModemResult result;
};

// The digit forms are the classic numeric results 0..8 (5 is a speed-less
// CONNECT on some modems, so it counts as one).
constexpr std::array<Word, 14> kWords{{
    {"OK", ModemResult::Ok},
    {"CONNECT", ModemResult::Connect},
    {"RING", ModemResult::Ring},
    {"NO CARRIER", ModemResult::NoCarrier},
    {"ERROR", ModemResult::Error},
    {"NO DIALTONE", ModemResult::NoDialtone},
    {"NO DIAL TONE", ModemResult::NoDialtone},
    {"BUSY", ModemResult::Busy},
    {"NO ANSWER", ModemResult::NoAnswer},
    {"DIALING", ModemResult::Dialing},
    {"DIALLING", ModemResult::Dialing},
    {"RINGING", ModemResult::Ringing},
    {"RINGBACK", ModemResult::Ringing},
    {"DELAYED", ModemResult::Busy},
}};

constexpr std::array<ModemResult, 9> kDigits{ModemResult::Ok,         ModemResult::Connect, ModemResult::Ring,
                                             ModemResult::NoCarrier,  ModemResult::Error,   ModemResult::Connect,
                                             ModemResult::NoDialtone, ModemResult::Busy,    ModemResult::NoAnswer};

} // namespace

ModemResult parseResult(std::string_view line)
{
    if (line.size() == 1 && line[0] >= '0' && line[0] <= '8')
        return kDigits[static_cast<std::size_t>(line[0] - '0')];
    for (const Word& word : kWords) {
        if (line == word.text)
            return word.result;
        // "CONNECT 9600/ARQ": only CONNECT carries more words.
        if (word.result == ModemResult::Connect && line.starts_with(word.text) && line[word.text.size()] == ' ')
            return word.result;
    }
    return ModemResult::Other;
}

bool endsCall(ModemResult result)
{
    switch (result) {
    case ModemResult::NoCarrier:
    case ModemResult::Error:
    case ModemResult::NoDialtone:
    case ModemResult::Busy:
    case ModemResult::NoAnswer: return true;
    default: return false;
    }
}

void ResultReader::feed(std::span<const std::uint8_t> bytes)
{
    for (const std::uint8_t byte : bytes) {
        if (byte == '\r' || byte == '\n') {
            if (!partial.empty()) {
                if (lines.size() >= kMostLines)
                    lines.pop_front();
                lines.push_back(std::exchange(partial, {}));
            }
            overlong = false;
            continue;
        }
        if (byte < 0x20 || byte >= 0x7F || overlong)
            continue;
        partial += static_cast<char>(byte);
        overlong = partial.size() >= kLongestLine;
    }
}

std::optional<std::string> ResultReader::nextLine()
{
    if (lines.empty())
        return std::nullopt;
    std::string line = std::move(lines.front());
    lines.pop_front();
    return line;
}

void ResultReader::clear()
{
    partial.clear();
    overlong = false;
    lines.clear();
}

} // namespace rk4::modem
