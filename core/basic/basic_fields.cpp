#include "core/basic/basic_fields.h"

#include "core/database/directory_codec.h"
#include "core/database/dtmf.h"
#include "core/database/validators.h"

#include <algorithm>

namespace rk4 {

std::string invalidCodeText(std::string_view codeName)
{
    return "Invalid digit found in the " + std::string(codeName) + " code, use 0-9, *, #, A, B, C and D only.";
}

std::string tooManyDigitsText(std::string_view codeName)
{
    return std::string(codeName) + " code has too may digits - maximum is 7";
}

std::optional<std::string> codeRefusal(std::string_view text, std::string_view codeName)
{
    if (CheckDTMF(text))
        return invalidCodeText(codeName);
    if (text.size() > kMaxCodeDigits)
        return tooManyDigitsText(codeName);
    return std::nullopt;
}

bool sameCode(std::string_view first, std::string_view second)
{
    if (first.empty() || second.empty() || first.size() != second.size())
        return false;
    return std::equal(first.begin(), first.end(), second.begin(),
                      [](char a, char b) { return ASCII2DTMF(a) == ASCII2DTMF(b); });
}

bool CheckBasicPhone(std::string& number)
{
    std::erase_if(number, [](char c) { return c == ' ' || c == '-'; });
    return std::any_of(number.begin(), number.end(), [](char c) {
        const bool digit = c >= '0' && c <= '9';
        const bool letter = (c >= 'A' && c <= 'D') || (c >= 'a' && c <= 'd');
        return !(digit || letter || c == '*' || c == '#' || c == '!');
    });
}

std::vector<std::string> SimpleDirectoryNumbers(const DirectoryRecord& record)
{
    std::vector<std::string> numbers;
    for (const DirLine& line : DecodeDirectory(record))
        if (line.command[0] == kCmdDial)
            numbers.push_back(line.parameter[0]);
    return numbers;
}

void SaveSimpleDirectory(const std::vector<std::string>& numbers, DirectoryRecord& record)
{
    DirLines lines{};
    const std::size_t count = std::min<std::size_t>(numbers.size(), kDirectoryLines);
    for (std::size_t i = 0; i < count; ++i) {
        lines[i].command[0] = kCmdDial;
        lines[i].parameter[0] = numbers[i];
    }
    EncodeDirectory(lines, record);
}

int simpleDirectoryFill(const std::vector<std::string>& numbers)
{
    int fill = 0;
    for (const std::string& number : numbers)
        fill += static_cast<int>(number.size()) + kSimpleNumberOverhead;
    return fill;
}

int simpleFillPercent(int fill) { return fill * 100 / 256; }

} // namespace rk4
