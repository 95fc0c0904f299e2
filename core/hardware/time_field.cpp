#include "core/hardware/time_field.h"

#include "core/database/defaults.h"

#include <charconv>
#include <cmath>

namespace rk4 {

namespace {

// "Debounce timer", "Watchdog timer", "Timer": the head of the scale messages.
std::string timerName(TimeKind kind)
{
    switch (kind) {
    case TimeKind::Debounce: return "Debounce timer";
    case TimeKind::Watchdog: return "Watchdog timer";
    case TimeKind::Timer: break;
    }
    return "Timer";
}

// "debounce", "watchdog", "timer": the word in the OK check's messages.
std::string intervalName(TimeKind kind)
{
    switch (kind) {
    case TimeKind::Debounce: return "debounce";
    case TimeKind::Watchdog: return "watchdog";
    case TimeKind::Timer: break;
    }
    return "timer";
}

void warn(Prompter& prompter, std::string text) { prompter.tell("Warning", std::move(text), Icon::Warning); }
void refuse(Prompter& prompter, std::string text) { prompter.tell("Error", std::move(text), Icon::Error); }

std::string_view fieldPrefix(const std::string& text)
{
    std::string_view view(text);
    view = view.substr(0, std::min(view.size(), kTimeFieldLength));
    while (!view.empty() && view.front() == ' ')
        view.remove_prefix(1);
    if (!view.empty() && view.front() == '+')
        view.remove_prefix(1);
    return view;
}

} // namespace

std::string timeFieldText(std::uint16_t count, bool minutes)
{
    if (minutes)
        return std::to_string(count == 0 ? 1 : count);
    return secondsText(count);
}

float parseTimeValue(const std::string& text)
{
    const std::string_view view = fieldPrefix(text);
    float value = 0.0f;
    // from_chars ignores the locale, so "0.025" reads the same everywhere.
    // It also takes "nan" and "inf", which are not times: they read as text
    // that is no number at all.
    const auto result = std::from_chars(view.data(), view.data() + view.size(), value, std::chars_format::fixed);
    return result.ec == std::errc() && std::isfinite(value) ? value : 0.0f;
}

int parseWholeNumber(const std::string& text)
{
    const std::string_view view = fieldPrefix(text);
    int value = 0;
    const auto result = std::from_chars(view.data(), view.data() + view.size(), value);
    return result.ec == std::errc() ? value : 0;
}

void TimeField::load(std::uint16_t count, bool minutesScale)
{
    minutes = minutesScale;
    text = timeFieldText(count, minutesScale);
}

void TimeField::toSeconds(Prompter& prompter)
{
    const float value = parseTimeValue(text);
    minutes = false;
    if (value > kMaxSeconds) {
        text = "1638";
        warn(prompter, timerName(kind) + " is out of range, it has been set to maximum for seconds: 1638.");
    }
    if (value >= kMinSeconds) {
        if (text.find('.') == std::string::npos)
            text += ".000";
    } else {
        warn(prompter, timerName(kind) + " cannot be less than 25 msec, it has been set to 25 msec.");
        text = "0.025";
    }
}

void TimeField::toMinutes(Prompter& prompter)
{
    int value = parseWholeNumber(text);
    minutes = true;
    if (value == 0) {
        value = 2; // the message says 1 minute, the value becomes 2: both as the unit's tool has them
        warn(prompter, timerName(kind) + " value cannot be less than 1 minute, it has been set to 2 minutes.");
    }
    text = std::to_string(value);
}

std::optional<std::uint16_t> TimeField::validate(Prompter& prompter) const
{
    const float value = parseTimeValue(text);
    const std::string name = intervalName(kind);
    if (minutes) {
        if (value == 1.0f) {
            warn(prompter, "Setting the " + name +
                               " interval to 1 minute with 1 minute resolution will result in a time between zero "
                               "and 1 minute.  Use the Seconds setting for short times.");
        } else if (value < 1.0f) {
            refuse(prompter, "The " + name + " interval cannot be less than 1 min.");
            return std::nullopt;
        } else if (value > kMaxMinutes) {
            refuse(prompter, "The " + name + " interval cannot be greater than 65535 min.");
            return std::nullopt;
        }
        return static_cast<std::uint16_t>(value);
    }
    if (value < kMinSeconds) {
        refuse(prompter, "The " + name + " interval cannot be less than .025 sec.");
        return std::nullopt;
    }
    if (value > kMaxSeconds) {
        refuse(prompter, "The " + name + " interval cannot be more than 1638 sec.");
        return std::nullopt;
    }
    // Truncated in single precision, as the unit's tool computes it.
    const float steps = value * 40.0f;
    return static_cast<std::uint16_t>(steps);
}

} // namespace rk4
