#pragma once
// Checks shared by every editor, the printout and the warnings. The Check
// functions return true when the text holds a character that is not allowed;
// an empty text is acceptable to all of them.

#include "core/database/database.h"

#include <string>
#include <string_view>

namespace rk4 {

// Removes every blank and '-' from `text` in place, then allows 0-9, '*', '#'
// and the '!' delay.
bool CheckPhone(std::string& text);

// Allows 0-9.
bool CheckNumber(std::string_view text);

// Allows 0-9, A-D, a-d, '!', '#' and '*'.
bool CheckDTMF(std::string_view text);

// Allows 0-9 and '.', and a leading '-' or '+'. The points are not counted:
// "1.2.3" passes.
bool CheckFloat(std::string_view text);

// True when the directory holds any command letter (parameter bytes count too).
bool IsDirectoryUsed(const Database& db, int directory);
bool IsDirectoryUsed(const DirectoryRecord& record);

} // namespace rk4
