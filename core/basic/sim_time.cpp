#include "core/basic/sim_time.h"

#include "core/hardware/time_field.h"

namespace rk4 {

namespace {

void warn(Prompter& prompter, std::string text) { prompter.tell("Warning", std::move(text), Icon::Warning); }
void refuse(Prompter& prompter, std::string text) { prompter.tell("Error", std::move(text), Icon::Error); }

} // namespace

void SimTime::load(std::uint16_t count, bool minutesScale)
{
    minutes = minutesScale;
    text = timeFieldText(count, minutesScale);
}

void SimTime::ResolutionChanging(bool toMinutes, Prompter& prompter)
{
    if (toMinutes == minutes)
        return;
    minutes = toMinutes;
    const std::string head = kind == Kind::Debounce ? "Debounce timer" : "Timer";
    const float value = parseTimeValue(text);
    if (toMinutes) {
        if (value < 1.0f) {
            // The message says 1 minute and the value becomes 2, as the unit's tool has always done.
            text = "2";
            warn(prompter, head + " value cannot be less than 1 minute, it has been set to 2 minutes.");
        } else {
            text = std::to_string(parseWholeNumber(text));
        }
    } else if (value > kMaxSeconds) {
        text = "1638";
        warn(prompter, head + " is out of range, it has been set to maximum for seconds: 1638.");
    }
}

std::optional<std::uint16_t> SimTime::validate(Prompter& prompter) const
{
    const bool debounce = kind == Kind::Debounce;
    const std::string name = debounce ? "debounce" : "timer";
    const float value = parseTimeValue(text);
    if (minutes) {
        if (value == 1.0f)
            warn(prompter, "Setting the " + name +
                               " interval to 1 minute with 1 minute resolution will result in a time between zero "
                               "and 1 minute.  Use the Seconds setting for short times.");
        if (value > kMaxMinutes) {
            refuse(prompter, "The " + name + " interval cannot be greater than 65535 min.");
            return std::nullopt;
        }
        if (value < 1.0f) {
            refuse(prompter, "The " + name + " interval cannot be less than 1 min.");
            return std::nullopt;
        }
        return static_cast<std::uint16_t>(value);
    }
    if (value > kMaxSeconds) {
        refuse(prompter, "The " + name + " interval cannot be more than 1638 sec.");
        return std::nullopt;
    }
    if (value < 0.0f) {
        refuse(prompter, debounce ? "The debounce interval cannot be less than zero sec."
                                  : "The timer interval cannot be less than zero.");
        return std::nullopt;
    }
    // Truncated in single precision, as every time field of the image is.
    const float steps = value * 40.0f;
    return static_cast<std::uint16_t>(steps);
}

} // namespace rk4
