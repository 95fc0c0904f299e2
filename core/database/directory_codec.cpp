#include "core/database/directory_codec.h"

#include "core/database/dtmf.h"

#include <algorithm>

namespace rk4 {

namespace {

struct CommandLabel {
    std::uint8_t letter;
    const char* label;
};

// 'U' is a command without a label.
constexpr CommandLabel kLabels[] = {
    {'P', " [DIAL]"},   {'Q', " [DTMF]"},   {'Z', " [PATCH]"},  {'W', " [WAIT]"},
    {'V', " [VOICE]"},  {'N', " [ALERT]"},  {'M', " [ANSWER]"}, {'X', " [AUTO ACK]"},
    {'S', " [SIGNAL]"}, {'H', " [TAP]"},    {'R', " [RADIO]"},  {'F', " [5 TONE]"},
    {'T', " [2 TONE]"}, {'G', " [VOICE+]"}, {'L', " [VOICE-]"}, {kEmptySlot, " "},
};

// Writes bytes into a bounded text and remembers whether any did not fit.
class TextWriter {
  public:
    explicit TextWriter(std::span<std::uint8_t> text) : text(text) {}
    void put(std::uint8_t byte)
    {
        if (position < text.size())
            text[position++] = byte;
        else
            fits = false;
    }
    void terminate()
    {
        // A text that fills the area exactly needs no NUL: reading stops at its end.
        if (position < text.size())
            text[position] = 0;
    }
    bool allFitted() const { return fits; }

  private:
    std::span<std::uint8_t> text;
    std::size_t position = 0;
    bool fits = true;
};

void putCommand(TextWriter& writer, std::uint8_t letter, const std::string& parameter)
{
    writer.put(letter);
    const bool dtmf = hasDtmfParameter(letter);
    for (char c : parameter)
        writer.put(static_cast<std::uint8_t>(dtmf ? ASCII2DTMF(c) : c));
}

// A byte that reads as a parameter byte, not as a command, a line end or the end.
bool plainParameterByte(std::uint8_t byte) { return byte != 0 && byte != kLineEnd && !isCommandLetter(byte); }

// The shown character is always one that encoding stores back to a byte that
// shows the same, so what the editor shows is what it writes.
char shownParameterByte(std::uint8_t letter, std::uint8_t byte, bool first)
{
    if (hasDtmfParameter(letter)) {
        // A stored 'a'..'d', '#' or '*' is stored again as the tone it names.
        const auto stored = static_cast<std::uint8_t>(ASCII2DTMF(static_cast<char>(byte)));
        if (byte >= '0' && byte <= '?')
            return DTMF2ASCII(static_cast<char>(byte));
        if (stored >= '0' && stored <= '?')
            return DTMF2ASCII(static_cast<char>(stored));
        return static_cast<char>(byte);
    }
    // The unit ignores the top bit after the first TAP byte; cleared, the byte
    // must still be a parameter byte, or it is shown as stored.
    if (letter == kCmdTap && !first && plainParameterByte(byte & 0x7F))
        return static_cast<char>(byte & 0x7F);
    return static_cast<char>(byte);
}

} // namespace

bool isCommandLetter(std::uint8_t byte)
{
    switch (byte) {
    case 'F':
    case 'G':
    case 'H':
    case 'L':
    case 'M':
    case 'N':
    case 'P':
    case 'Q':
    case 'R':
    case 'S':
    case 'T':
    case 'U':
    case 'V':
    case 'W':
    case 'X':
    case 'Z': return true;
    default: return false;
    }
}

bool hasDtmfParameter(std::uint8_t letter) { return letter == kCmdDial || letter == kCmdDtmf || letter == kCmdPatch; }

std::uint8_t ShrinkCommand(std::string_view label)
{
    for (const CommandLabel& entry : kLabels)
        if (label == entry.label)
            return entry.letter;
    return 0;
}

void ExpandCommand(std::uint8_t letter, std::string& out)
{
    for (const CommandLabel& entry : kLabels)
        if (letter == entry.letter) {
            out = entry.label;
            return;
        }
}

int DirLine::commandCount() const
{
    return static_cast<int>(std::find(command.begin(), command.end(), 0) - command.begin());
}

DirLines DecodeDirectory(std::span<const std::uint8_t> text)
{
    DirLines lines{};
    int lineIndex = 0;
    int slot = -1; // the command that parameter bytes belong to; -1 before the first
    for (const std::uint8_t byte : text) {
        // A '&' followed by NUL ends the text like the NUL itself: the empty
        // line it opens is never filled.
        if (byte == 0)
            break;
        if (byte == kLineEnd) {
            if (++lineIndex == kDirectoryLines)
                break;
            slot = -1;
            continue;
        }
        DirLine& line = lines[lineIndex];
        if (isCommandLetter(byte)) {
            if (slot + 1 < kCommandsPerLine)
                line.command[++slot] = byte;
            else
                slot = kCommandsPerLine; // a 13th command: it and its bytes are dropped
            continue;
        }
        if (slot < 0 || slot >= kCommandsPerLine)
            continue;
        std::string& parameter = line.parameter[slot];
        if (parameter.size() < kMaxParameterLength)
            parameter += shownParameterByte(line.command[slot], byte, parameter.empty());
    }
    return lines;
}

DirLines DecodeDirectory(const DirectoryRecord& record) { return DecodeDirectory(std::span(record.dirText)); }

bool EncodeDirectory(const DirLines& lines, std::span<std::uint8_t> text)
{
    TextWriter writer(text);
    // Empty lines between used ones are kept in place, so every line shown is
    // written back; an empty directory is a single line end.
    int last = kDirectoryLines - 1;
    while (last > 0 && lines[last].empty())
        --last;
    for (int i = 0; i <= last; ++i) {
        const DirLine& line = lines[i];
        for (int c = 0; c < kCommandsPerLine && line.command[c] != 0; ++c)
            putCommand(writer, line.command[c], line.parameter[c]);
        writer.put(kLineEnd);
    }
    writer.terminate();
    return writer.allFitted();
}

bool EncodeDirectory(const DirLines& lines, DirectoryRecord& record)
{
    return EncodeDirectory(lines, std::span(record.dirText));
}

DirectoryRecord EncodeDirectory(const DirLines& lines)
{
    DirectoryRecord record;
    EncodeDirectory(lines, record);
    return record;
}

int lineCount(const DirLines& lines)
{
    return static_cast<int>(std::find_if(lines.begin(), lines.end(), [](const DirLine& l) { return l.empty(); }) -
                            lines.begin());
}

int lineCost(const DirLine& line)
{
    int cost = 1;
    for (int c = 0; c < line.commandCount(); ++c)
        cost += 1 + static_cast<int>(line.parameter[c].size());
    return cost;
}

int usedBytes(const DirLines& lines)
{
    int used = 0;
    for (const DirLine& line : lines) {
        used += lineCost(line);
        if (line.empty())
            break;
    }
    return used;
}

std::string dirLineText(const DirLine& line)
{
    std::string text;
    for (int c = 0; c < line.commandCount(); ++c) {
        std::string label;
        ExpandCommand(line.command[c], label);
        text += label;
        text += line.parameter[c];
    }
    return text;
}

} // namespace rk4
