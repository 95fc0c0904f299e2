#pragma once
// Numbers that reach a three-digit service (211 .. 911) instead of a person.
// The directory editor, the Basic wizard and the Basic editors refuse them with
// the same texts, except that the Basic ones spell the 511 text differently.

#include <optional>
#include <string>
#include <string_view>

namespace rk4 {

enum class N11Wording {
    DirectoryEditor, // the directory line editor
    Basic,           // the Basic wizard and the Basic phone number editor
};

// The refusal text when `number` begins with a digit 2..9 followed by "11";
// nothing otherwise. The number is taken as given: callers remove blanks and
// '-' first (CheckPhone does).
std::optional<std::string> N11Refusal(std::string_view number, N11Wording wording);

} // namespace rk4
