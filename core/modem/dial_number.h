#pragma once
// The telephone number of a distant unit: the three parts the technician
// enters, the dialled number built from them ("+" country "(" area ")" number),
// and its translation into what the modem dials from where the tool is.

#include <cstdint>
#include <string>

namespace rk4::modem {

inline constexpr std::size_t kCountryCodeLength = 20;
inline constexpr std::size_t kAreaCodeLength = 8;
inline constexpr std::size_t kLocalNumberLength = 30;

// Letters become the digits of a telephone keypad (Q and Z are 1); other
// characters stay as they are.
std::string MakeLettersIntoDigits(std::string text);

struct DialledNumber {
    std::string country;
    std::string area;
    std::string number;

    // "+1(555)2255-669". A country code already written with its "+" gets no second one.
    std::string text() const;
};

// The number as the technician entered the three fields: each is cut to its
// field's length and its letters turned into digits.
DialledNumber enteredNumber(const std::string& country, const std::string& area, const std::string& number);

struct DialingLocation;

// A number written in one piece (the command line's): "+country(area)number"
// as it stands, "+digits" dialled internationally, anything else a number in
// the tool's own country and area. Letters become digits.
DialledNumber parseDialledNumber(const std::string& text, const DialingLocation& here);

// Where the tool dials from: its own country and area code, what reaches an
// outside line, and the prefixes of a long-distance and an international call.
struct DialingLocation {
    std::string country = "1";
    std::string area;
    std::string outsideLine;
    std::string longDistance = "1";
    std::string international = "011";
};

struct Translation {
    std::uint32_t error = 0; // a LINEERR_ code, 0 when translated
    std::string dialable;
};

// "+" is put in front of a number that lacks it; the result is read as
// +country(area)number and made into the digits to dial from `here`.
Translation TranslateAddress(std::string number, const DialingLocation& here);

} // namespace rk4::modem
