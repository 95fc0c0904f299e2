#include "core/database/dtmf.h"

#include <algorithm>

namespace rk4 {

char ASCII2DTMF(char shown)
{
    switch (shown) {
    case 'A':
    case 'a': return '=';
    case 'B':
    case 'b': return '>';
    case 'C':
    case 'c': return '?';
    case 'D':
    case 'd': return '0';
    case '0': return ':';
    case '#': return '<';
    case '*': return ';';
    default: return shown;
    }
}

void ASCII2DTMF(std::string& text)
{
    for (char& c : text)
        c = ASCII2DTMF(c);
}

char DTMF2ASCII(char stored)
{
    switch (stored) {
    case '0': return 'D';
    case ':': return '0';
    case ';': return '*';
    case '<': return '#';
    case '=': return 'A';
    case '>': return 'B';
    case '?': return 'C';
    default: return stored >= '1' && stored <= '9' ? stored : '*';
    }
}

void DTMF2ASCII(std::string& text)
{
    for (char& c : text)
        c = DTMF2ASCII(c);
}

std::string dtmfCodeText(const DtmfCode& field)
{
    const auto end = std::find(field.begin(), field.end(), 0);
    std::string text(field.begin(), end);
    DTMF2ASCII(text);
    return text;
}

void storeDtmfCode(std::string_view text, DtmfCode& field)
{
    const std::size_t length = std::min(text.size(), kMaxCodeDigits);
    for (std::size_t i = 0; i < length; ++i)
        field[i] = static_cast<std::uint8_t>(ASCII2DTMF(text[i]));
    field[length] = 0;
}

} // namespace rk4
