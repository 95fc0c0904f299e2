#pragma once
// Small text helpers shared by the editors' messages and list lines.

#include <string>
#include <vector>

namespace rk4 {

// The text without the blanks, tabs and carriage returns around it.
inline std::string trimBlanks(const std::string& text)
{
    const auto first = text.find_first_not_of(" \t\r\n");
    if (first == std::string::npos)
        return {};
    const auto last = text.find_last_not_of(" \t\r\n");
    return text.substr(first, last - first + 1);
}

// "4", "1 and 2", "1, 2 and 4": the way group and port lists are written.
inline std::string joinWithAnd(const std::vector<int>& numbers)
{
    std::string text;
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        if (i > 0)
            text += i + 1 == numbers.size() ? " and " : ", ";
        text += std::to_string(numbers[i]);
    }
    return text;
}

// "3, 5": a plain list.
inline std::string joinWithCommas(const std::vector<int>& numbers)
{
    std::string text;
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        if (i > 0)
            text += ", ";
        text += std::to_string(numbers[i]);
    }
    return text;
}

// Text followed by blanks up to `width`: the columns of list lines and pages.
inline std::string padRight(std::string text, std::size_t width)
{
    if (text.size() < width)
        text.append(width - text.size(), ' ');
    return text;
}

// "Group 1" or "Groups 1, 2 and 4".
inline std::string groupsText(const std::vector<int>& groups)
{
    return (groups.size() == 1 ? "Group " : "Groups ") + joinWithAnd(groups);
}

} // namespace rk4
