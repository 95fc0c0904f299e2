#pragma once
// Numbers typed into the editors' text fields.

#include <algorithm>
#include <charconv>
#include <climits>
#include <cmath>
#include <limits>
#include <string_view>
#include <system_error>

namespace rk4 {

// The number at the start of `text`, read the same whatever the locale: an
// optional sign, digits, a decimal point and an exponent. Text that does not
// start with a number reads as 0, and so do "nan" and "inf", which no field
// holds; a number too large for a float reads as the largest float of its
// sign, so every value this gives can be compared and converted safely.
inline float leadingNumber(std::string_view text)
{
    while (!text.empty() && text.front() == ' ')
        text.remove_prefix(1);
    bool negative = false;
    if (!text.empty() && (text.front() == '+' || text.front() == '-')) {
        negative = text.front() == '-';
        text.remove_prefix(1);
    }
    // A second sign is no number; from_chars would take it.
    if (text.empty() || text.front() == '+' || text.front() == '-')
        return 0.0f;
    float value = 0.0f;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error == std::errc::result_out_of_range) {
        // Too small to tell from zero (a negative exponent, or nothing but
        // zeros before the point), or too large to hold.
        const std::string_view number(text.data(), static_cast<std::size_t>(end - text.data()));
        const std::size_t exponent = number.find_first_of("eE");
        const bool tiny = exponent != std::string_view::npos
                              ? exponent + 1 < number.size() && number[exponent + 1] == '-'
                              : number.substr(0, number.find('.')).find_first_not_of('0') == std::string_view::npos;
        value = tiny ? 0.0f : std::numeric_limits<float>::max();
    } else if (error != std::errc() || !std::isfinite(value)) {
        value = 0.0f;
    }
    return negative ? -value : value;
}

// The whole part of `value` as an int, held within -INT_MAX..INT_MAX (so its
// magnitude is an int too), and 0 for a value that is no number.
inline int saturatedInt(double value)
{
    if (std::isnan(value))
        return 0;
    return static_cast<int>(std::clamp(value, -static_cast<double>(INT_MAX), static_cast<double>(INT_MAX)));
}

} // namespace rk4
