#include "core/modem/dial_number.h"

#include "core/modem/line_errors.h"

#include <cctype>
#include <optional>

namespace rk4::modem {

namespace {

char keypadDigit(char letter)
{
    // A..Z on the keypad; Q and Z, missing from older keypads, dial as 1.
    static constexpr char kDigits[] = "22233344455566671778889991";
    const int index = std::toupper(static_cast<unsigned char>(letter)) - 'A';
    return kDigits[index];
}

// What a modem can dial: digits, the tone keys and the pause.
std::string dialCharacters(const std::string& text)
{
    std::string out;
    for (const char c : text)
        if (std::isdigit(static_cast<unsigned char>(c)) || c == '*' || c == '#' || c == ',')
            out += c;
    return out;
}

// A country or area code: digits, perhaps spaced; nothing when anything else is in it.
std::optional<std::string> codeDigits(const std::string& text)
{
    std::string out;
    for (const char c : text) {
        if (std::isdigit(static_cast<unsigned char>(c)))
            out += c;
        else if (c != ' ')
            return std::nullopt;
    }
    return out;
}

} // namespace

std::string MakeLettersIntoDigits(std::string text)
{
    for (char& c : text)
        if (std::isalpha(static_cast<unsigned char>(c)) && static_cast<unsigned char>(c) < 0x80)
            c = keypadDigit(c);
    return text;
}

std::string DialledNumber::text() const
{
    const std::string plus = country.starts_with('+') ? "" : "+";
    return plus + country + "(" + area + ")" + number;
}

DialledNumber enteredNumber(const std::string& country, const std::string& area, const std::string& number)
{
    return DialledNumber{MakeLettersIntoDigits(country.substr(0, kCountryCodeLength)),
                         MakeLettersIntoDigits(area.substr(0, kAreaCodeLength)),
                         MakeLettersIntoDigits(number.substr(0, kLocalNumberLength))};
}

DialledNumber parseDialledNumber(const std::string& text, const DialingLocation& here)
{
    const std::string digits = MakeLettersIntoDigits(text);
    if (!digits.starts_with('+'))
        return DialledNumber{here.country, here.area, digits};
    const auto open = digits.find('(');
    const auto close = digits.find(')');
    if (open == std::string::npos || close == std::string::npos || close < open)
        return DialledNumber{"", "", digits.substr(1)};
    return DialledNumber{digits.substr(1, open - 1), digits.substr(open + 1, close - open - 1),
                         digits.substr(close + 1)};
}

Translation TranslateAddress(std::string number, const DialingLocation& here)
{
    if (!number.starts_with('+'))
        number.insert(number.begin(), '+');
    const auto open = number.find('(');
    const auto close = number.find(')');
    std::optional<std::string> country = std::string(), area = std::string();
    std::string local;
    if (open != std::string::npos && close != std::string::npos && open < close) {
        country = codeDigits(number.substr(1, open - 1));
        area = codeDigits(number.substr(open + 1, close - open - 1));
        local = dialCharacters(number.substr(close + 1));
    } else {
        // No area written: everything after the "+" is dialled internationally.
        local = dialCharacters(number.substr(1));
    }
    if (local.empty() || !country || !area)
        return Translation{LINEERR_INVALADDRESS, {}};

    Translation result;
    if (!country->empty() && *country == dialCharacters(here.country)) {
        if (area->empty() || *area == dialCharacters(here.area))
            result.dialable = here.outsideLine + local;
        else
            result.dialable = here.outsideLine + here.longDistance + *area + local;
    } else {
        result.dialable = here.outsideLine + here.international + *country + *area + local;
    }
    return result;
}

} // namespace rk4::modem
