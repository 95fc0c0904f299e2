#pragma once
// A directory as the unit stores it and as the editors show it. The stored
// form is a byte text: each line a run of commands (one letter, then its
// parameter bytes) closed by '&', the text ended by a NUL. The editors work on
// 20 `DirLine`s of up to 12 commands each, with parameters in shown form.

#include "core/database/database.h"

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace rk4 {

inline constexpr int kCommandsPerLine = 12;
inline constexpr int kDirectoryLines = 20;
inline constexpr std::size_t kMaxParameterLength = 39;
// The most bytes the directory editor lets a directory use, counted as
// `usedBytes` counts them; text and terminator then always fit in 256 bytes.
inline constexpr int kDirectoryByteBudget = 253;

inline constexpr std::uint8_t kLineEnd = '&';

// Command letters.
inline constexpr std::uint8_t kCmdDial = 'P';
inline constexpr std::uint8_t kCmdDtmf = 'Q';
inline constexpr std::uint8_t kCmdPatch = 'Z';
inline constexpr std::uint8_t kCmdWait = 'W';
inline constexpr std::uint8_t kCmdVoice = 'V';
inline constexpr std::uint8_t kCmdAlert = 'N';
inline constexpr std::uint8_t kCmdAnswer = 'M';
inline constexpr std::uint8_t kCmdAutoAck = 'X';
inline constexpr std::uint8_t kCmdSignal = 'S';
inline constexpr std::uint8_t kCmdTap = 'H';
inline constexpr std::uint8_t kEmptySlot = ' '; // the editor's empty slot; never stored

// True for the bytes that start a command: F G H L M N P Q R S T U V W X Z.
bool isCommandLetter(std::uint8_t byte);

// True for the commands whose parameter is held in the DTMF digit code.
bool hasDtmfParameter(std::uint8_t letter);

// Label -> letter by exact, case-sensitive comparison; ' ' for the label " ",
// 0 for anything else.
std::uint8_t ShrinkCommand(std::string_view label);

// Letter -> label. A letter without a label ('U', 0, any other byte) leaves
// `out` as it was.
void ExpandCommand(std::uint8_t letter, std::string& out);

struct DirLine {
    std::array<std::uint8_t, kCommandsPerLine> command{};  // 0 ends the line
    std::array<std::string, kCommandsPerLine> parameter{}; // shown form

    bool empty() const { return command[0] == 0; }
    int commandCount() const;
    bool operator==(const DirLine&) const = default;
};

using DirLines = std::array<DirLine, kDirectoryLines>;

// Decodes a directory text (a whole DirectoryRecord, or a shorter field in the
// same encoding). Reading stops at a NUL, at a '&' followed by NUL, or at the
// end of `text`. What does not fit the editor's shape is dropped: bytes before
// a line's first command, commands after the 12th of a line, lines after the
// 20th, and parameter characters after the 39th.
DirLines DecodeDirectory(std::span<const std::uint8_t> text);
DirLines DecodeDirectory(const DirectoryRecord& record);

// Encodes the lines up to the last used one, empty lines before it included,
// into `text`, followed by a NUL. Bytes after the NUL are left as they were, so encoding the lines a
// record decodes to gives back that record byte for byte. Returns false, with
// the text cut at the end of `text`, when the lines do not fit.
bool EncodeDirectory(const DirLines& lines, std::span<std::uint8_t> text);
bool EncodeDirectory(const DirLines& lines, DirectoryRecord& record);
// Encoded into a record of zeros.
DirectoryRecord EncodeDirectory(const DirLines& lines);

// Number of lines before the first empty one.
int lineCount(const DirLines& lines);

// What a line costs in the directory: one byte per command and per parameter
// character, and one for its '&'.
int lineCost(const DirLine& line);

// The directory's fill as the directory editor counts it: the cost of each line
// up to and including the first empty one (or line 20).
int usedBytes(const DirLines& lines);

// The line as the editors and the printout show it: each command's label
// followed directly by its parameter.
std::string dirLineText(const DirLine& line);

} // namespace rk4
