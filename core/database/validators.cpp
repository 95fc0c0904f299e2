#include "core/database/validators.h"

#include "core/database/directory_codec.h"

#include <algorithm>
#include <cstring>

namespace rk4 {

namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

bool anyOutside(std::string_view text, const char* allowedBesidesDigits)
{
    return std::any_of(text.begin(), text.end(), [&](char c) {
        return !isDigit(c) && (c == 0 || std::strchr(allowedBesidesDigits, c) == nullptr);
    });
}

} // namespace

bool CheckPhone(std::string& text)
{
    std::erase_if(text, [](char c) { return c == ' ' || c == '-'; });
    return anyOutside(text, "*#!");
}

bool CheckNumber(std::string_view text) { return anyOutside(text, ""); }

bool CheckDTMF(std::string_view text) { return anyOutside(text, "ABCDabcd!#*"); }

bool CheckFloat(std::string_view text)
{
    if (!text.empty() && (text[0] == '-' || text[0] == '+'))
        text.remove_prefix(1);
    return anyOutside(text, ".");
}

bool IsDirectoryUsed(const DirectoryRecord& record)
{
    for (const std::uint8_t byte : record.dirText) {
        if (byte == 0)
            return false;
        if (isCommandLetter(byte))
            return true;
    }
    return false;
}

bool IsDirectoryUsed(const Database& db, int directory) { return IsDirectoryUsed(db.dir.at(directory)); }

} // namespace rk4
