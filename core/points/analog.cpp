#include "core/points/analog.h"

#include "core/common/numbers.h"
#include "core/database/validators.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace rk4 {

namespace {

constexpr int kTopCount = 255;

float number(const std::string& text) { return leadingNumber(text); }
int integerPart(const std::string& text) { return saturatedInt(number(text)); }

int placesOf(const Calibration& calib)
{
    return std::min(placesFor(calib.decimalMaximum), placesFor(calib.decimalMinimum));
}

int pow10(int places)
{
    int scale = 1;
    for (int i = 0; i < places; ++i)
        scale *= 10;
    return scale;
}

// A decimal value as the texts show it, with the texts' places.
std::string decimalText(float value, int places)
{
    return SetDecimal(saturatedInt(value * static_cast<float>(pow10(places))), places);
}

Message error(std::string text) { return Message{"Error", std::move(text), Icon::Error, Buttons::Ok}; }

} // namespace

int placesFor(const std::string& text)
{
    const float magnitude = std::fabs(number(text));
    if (magnitude >= 100.0f)
        return 1;
    if (magnitude >= 10.0f)
        return 2;
    return 3; // below 10, and below 1 as well
}

int movedecimal(const std::string& text, int places)
{
    std::size_t at = 0;
    bool negative = false;
    if (at < text.size() && (text[at] == '-' || text[at] == '+'))
        negative = text[at++] == '-';
    std::string digits;
    int decimals = -1;
    for (; at < text.size(); ++at) {
        const char c = text[at];
        if (c == '.') {
            if (decimals >= 0)
                break;
            decimals = 0;
        } else if (c >= '0' && c <= '9') {
            if (decimals >= 0) {
                if (decimals == places)
                    continue;
                ++decimals;
            }
            digits += c;
        } else {
            break;
        }
    }
    for (int d = std::max(decimals, 0); d < places; ++d)
        digits += '0';
    // Held at the int's limit: a field can be typed with any number of digits.
    int value = 0;
    for (const char digit : digits)
        value = value > (INT_MAX - 9) / 10 ? INT_MAX : value * 10 + (digit - '0');
    return negative ? -value : value;
}

std::string SetDecimal(int scaled, int places)
{
    std::string digits = std::to_string(scaled < 0 ? -scaled : scaled);
    if (digits.size() < 4)
        digits.insert(0, 4 - digits.size(), '0');
    if (places > 0)
        digits.insert(digits.size() - static_cast<std::size_t>(places), ".");
    return (scaled < 0 ? "-" : "+") + digits;
}

int VoltsToCounts(float volts)
{
    const float counts = volts * 0.2f * 255.0f;
    const float whole = std::floor(counts);
    return saturatedInt(whole) + (counts - whole > 0.499f ? 1 : 0);
}

int HysteresisCounts(int range, int percent)
{
    const float counts = static_cast<float>(range) * static_cast<float>(percent) / 100.0f;
    const float whole = std::floor(counts);
    return saturatedInt(whole) + (counts - whole > 0.5f ? 1 : 0);
}

AnalogRoutines::AnalogRoutines(PointRecord& point, bool volts) : point(point), voltsEntry(volts) { AlarmtoCalib(); }

float AnalogRoutines::binaryCounts(const std::string& text) const
{
    return voltsEntry ? static_cast<float>(VoltsToCounts(number(text))) : number(text);
}

std::string AnalogRoutines::Convert2(int counts) const
{
    const float slope = static_cast<float>((point.slope[0] << 16) | (point.slope[1] << 8) | point.slope[2]);
    const float offset = static_cast<std::int16_t>(point.decimalMinimum);
    const float value = offset + slope * static_cast<float>(counts - point.binaryMinimum) / 65536.0f;
    return SetDecimal(static_cast<int>(value), point.decimalPlaces & 0x0F);
}

float AnalogRoutines::rawCounts(float value) const
{
    const float binaryMinimum = binaryMinimumCounts();
    const float decimalMinimum = number(calib.decimalMinimum);
    const float decimalRange = number(calib.decimalMaximum) - decimalMinimum;
    if (decimalRange == 0.0f)
        return binaryMinimum;
    return binaryMinimum + (value - decimalMinimum) * (binaryMaximumCounts() - binaryMinimum) / decimalRange;
}

int AnalogRoutines::Find2Value(float value) const { return std::min(saturatedInt(rawCounts(value)), kTopCount); }

float AnalogRoutines::FindValue(int counts) const
{
    const float binaryMinimum = binaryMinimumCounts();
    const float binaryRange = binaryMaximumCounts() - binaryMinimum;
    const float decimalMinimum = number(calib.decimalMinimum);
    if (binaryRange == 0.0f)
        return decimalMinimum;
    return decimalMinimum +
           (number(calib.decimalMaximum) - decimalMinimum) * (static_cast<float>(counts) - binaryMinimum) / binaryRange;
}

void AnalogRoutines::FindPercent()
{
    const int range = point.binaryMaximum - point.binaryMinimum;
    const float percent =
        range == 0 ? 5.0f : static_cast<float>(point.lowReset - point.lowSetpoint) * 100.0f / static_cast<float>(range);
    static constexpr std::array<float, 10> kBounds = {1.5f, 3.0f, 4.5f, 6.5f, 9.0f, 11.0f, 13.5f, 17.5f, 22.5f, 27.5f};
    bool found = false;
    for (int step = static_cast<int>(kBounds.size()) - 1; step >= 0; --step)
        if (percent <= kBounds[step]) {
            calib.hysteresisIndex = step;
            found = true;
        }
    // Above the largest step the percentage is 10 while the step stays as it was.
    calib.hysteresisPercent = found ? kHysteresisPercent[calib.hysteresisIndex] : 10;
}

void AnalogRoutines::FixHyst()
{
    calib.hysteresisPercent = kHysteresisPercent[calib.hysteresisIndex];
    const int range = saturatedInt(binaryMaximumCounts() - binaryMinimumCounts());
    const int h = HysteresisCounts(range, calib.hysteresisPercent);
    const int places = placesOf(calib);
    calib.lowReset = decimalText(FindValue(Find2Value(number(calib.lowSetpoint)) + h), places);
    calib.highReset = decimalText(FindValue(Find2Value(number(calib.highSetpoint)) - h), places);
}

std::string AnalogRoutines::binaryText(int counts) const
{
    if (!voltsEntry)
        return std::to_string(counts);
    char text[16];
    std::snprintf(text, sizeof text, "%.2f", static_cast<double>(counts) * 5.0 / 255.0);
    return text;
}

void AnalogRoutines::setVolts(bool volts)
{
    if (volts == voltsEntry)
        return;
    const int minimum = saturatedInt(binaryMinimumCounts());
    const int maximum = saturatedInt(binaryMaximumCounts());
    voltsEntry = volts;
    calib.binaryMinimum = binaryText(minimum);
    calib.binaryMaximum = binaryText(maximum);
}

void AnalogRoutines::AlarmtoCalib()
{
    const int places = point.decimalPlaces & 0x0F;
    calib.binaryMinimum = binaryText(point.binaryMinimum);
    calib.binaryMaximum = binaryText(point.binaryMaximum);
    calib.decimalMaximum = SetDecimal(static_cast<std::int16_t>(point.decimalMaximum), places);
    calib.decimalMinimum = SetDecimal(static_cast<std::int16_t>(point.decimalMinimum), places);
    calib.lowSetpoint = SetDecimal(static_cast<std::int16_t>(point.lowSetpointDecimal), places);
    calib.highSetpoint = SetDecimal(static_cast<std::int16_t>(point.highSetpointDecimal), places);
    calib.lowReset = Convert2(point.lowReset);
    calib.highReset = Convert2(point.highReset);
    FindPercent();
}

CalibCheck AnalogRoutines::CheckError(Prompter& prompter) const
{
    auto refuse = [&](const std::string& text, CalibField field) {
        prompter.ask(error(text));
        return CalibCheck{false, field};
    };
    const std::pair<const std::string*, std::pair<const char*, CalibField>> numbers[] = {
        {&calib.binaryMinimum, {"The Binary Minimum is not a valid number.", CalibField::BinaryMinimum}},
        {&calib.binaryMaximum, {"The Binary Maximum is not a valid number.", CalibField::BinaryMaximum}},
        {&calib.decimalMinimum, {"The Decimal Minimum is not a valid number.", CalibField::DecimalMinimum}},
        {&calib.decimalMaximum, {"The Decimal Maximum is not a valid number.", CalibField::DecimalMaximum}},
        {&calib.lowSetpoint, {"The Low Setpoint is not a valid number.", CalibField::LowSetpoint}},
        {&calib.highSetpoint, {"The High Setpoint is not a valid number.", CalibField::HighSetpoint}},
    };
    for (const auto& [text, refusal] : numbers)
        if (CheckFloat(*text))
            return refuse(refusal.first, refusal.second);

    if (integerPart(calib.binaryMinimum) == integerPart(calib.binaryMaximum))
        return refuse("The Binary Minimum and Binary Maximum cannot be equal.", CalibField::BinaryMinimum);
    // Integer parts only: 0.2 and 0.8 count as equal.
    if (integerPart(calib.decimalMinimum) == integerPart(calib.decimalMaximum))
        return refuse("The Decimal Minimum and Decimal Maximum cannot be equal.", CalibField::DecimalMinimum);
    if (std::to_string(std::abs(integerPart(calib.highSetpoint))).size() >
        std::to_string(std::abs(integerPart(calib.decimalMaximum))).size())
        return refuse("High Setpoint is too large.  It cannot have more digits to the left of the decimal place than "
                      "the Decimal Maximum.",
                      CalibField::HighSetpoint);

    const int places = placesOf(calib);
    const std::string bottom = decimalText(FindValue(0), places);
    const std::string top = decimalText(FindValue(kTopCount), places);
    const std::pair<const std::string*, std::pair<const char*, CalibField>> setpoints[] = {
        {&calib.lowSetpoint, {"Low Setpoint", CalibField::LowSetpoint}},
        {&calib.highSetpoint, {"High Setpoint", CalibField::HighSetpoint}},
    };
    for (const auto& [text, which] : setpoints) {
        const int counts = saturatedInt(rawCounts(number(*text)));
        if (counts < 0)
            return refuse(std::string(which.first) + " is too small.  It must be greater than " + bottom, which.second);
        if (counts >= 256)
            return refuse(std::string(which.first) + " is too large.  It must be less than " + top, which.second);
    }

    if (binaryMaximumCounts() >= 256.0f)
        return refuse(voltsEntry ? "Binary Maximum cannot be greater than 5 volts."
                                 : "Binary Maximum cannot be greater than 255.",
                      CalibField::BinaryMaximum);
    if (binaryMaximumCounts() < binaryMinimumCounts())
        return refuse("Binary Maximum cannot be less than Binary Minimum.", CalibField::BinaryMaximum);
    if (number(calib.decimalMaximum) < number(calib.decimalMinimum))
        return refuse("Decimal Maximum cannot be less than Decimal Minimum.", CalibField::DecimalMaximum);
    // Integer parts again: 999.95 passes.
    if (integerPart(calib.decimalMaximum) > 999)
        return refuse("The Decimal Maximum value cannot be greater than 999.9.", CalibField::DecimalMaximum);
    if (integerPart(calib.decimalMinimum) < -999)
        return refuse("The Decimal Minimum value cannot be less than -999.9.", CalibField::DecimalMinimum);

    const int range = saturatedInt(binaryMaximumCounts() - binaryMinimumCounts());
    const int h = HysteresisCounts(range, kHysteresisPercent[calib.hysteresisIndex]);
    if (Find2Value(number(calib.highSetpoint)) - h < Find2Value(number(calib.lowSetpoint)))
        return refuse("The high alarm reset value will be less than the low setpoint.  Reduce hysteresis or change "
                      "setpoints.",
                      CalibField::Hysteresis);
    return {true, CalibField::None};
}

void AnalogRoutines::CalibtoAlarm()
{
    const int places = placesOf(calib);
    const int binaryMinimum = saturatedInt(binaryMinimumCounts());
    const int binaryMaximum = saturatedInt(binaryMaximumCounts());
    const int decimalMaximum = movedecimal(calib.decimalMaximum, places);
    const int decimalMinimum = movedecimal(calib.decimalMinimum, places);
    const std::uint32_t slope =
        binaryMaximum == binaryMinimum
            ? 32767u
            : static_cast<std::uint32_t>((static_cast<std::int64_t>(decimalMaximum) - decimalMinimum) * 65536 /
                                         (static_cast<std::int64_t>(binaryMaximum) - binaryMinimum));

    point.binaryMinimum = static_cast<std::uint16_t>(binaryMinimum);
    point.binaryMaximum = static_cast<std::uint16_t>(binaryMaximum);
    point.decimalMaximum = static_cast<std::uint16_t>(decimalMaximum);
    point.decimalMinimum = static_cast<std::uint16_t>(decimalMinimum);
    point.slope = {static_cast<std::uint8_t>(slope >> 16), static_cast<std::uint8_t>(slope >> 8),
                   static_cast<std::uint8_t>(slope)};
    const int low = Find2Value(number(calib.lowSetpoint));
    const int high = Find2Value(number(calib.highSetpoint));
    point.lowSetpoint = static_cast<std::uint16_t>(low);
    point.highSetpoint = static_cast<std::uint16_t>(high);
    point.lowSetpointDecimal = static_cast<std::uint16_t>(movedecimal(calib.lowSetpoint, places));
    point.highSetpointDecimal = static_cast<std::uint16_t>(movedecimal(calib.highSetpoint, places));
    const int h = HysteresisCounts(saturatedInt(static_cast<double>(binaryMaximum) - binaryMinimum),
                                   kHysteresisPercent[calib.hysteresisIndex]);
    point.lowReset = static_cast<std::uint16_t>(low + h);
    point.highReset = static_cast<std::uint16_t>(high - h);
    point.decimalPlaces = static_cast<std::uint8_t>((point.decimalPlaces & 0xF0) | places);
}

} // namespace rk4
