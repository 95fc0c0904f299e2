#pragma once
// One time field of a port dialog (debounce, watchdog timer, output on-time):
// the text in the field, its seconds/minutes radio and step label, the scale
// handlers that clamp the text when the radio changes, and the check on OK.
//
// Seconds scale: a count of 25 ms steps, 1..65520 (0.025 s .. 1638 s).
// Minutes scale: a count of minutes, 1..65535.

#include "core/common/prompter.h"

#include <cstdint>
#include <optional>
#include <string>

namespace rk4 {

enum class TimeKind { Debounce, Watchdog, Timer };

inline constexpr std::uint16_t kMaxSecondsCount = 65520; // 1638 s
inline constexpr float kMaxSeconds = 1638.0f;
inline constexpr float kMinSeconds = 0.025f;
inline constexpr float kMaxMinutes = 65535.0f;
inline constexpr std::size_t kTimeFieldLength = 8;

// The dialog's text of a stored count: seconds as "1.000", minutes as a
// whole number with a zero shown as 1.
std::string timeFieldText(std::uint16_t count, bool minutes);

// Leading decimal number of a field's text, as the unit's tool reads it: at
// most 8 characters, leading blanks skipped, no number gives 0.
float parseTimeValue(const std::string& text);
int parseWholeNumber(const std::string& text);

struct TimeField {
    TimeKind kind = TimeKind::Debounce;
    std::string text;
    bool minutes = false;

    void load(std::uint16_t count, bool minutesScale);
    std::string stepLabel() const { return minutes ? "1 min steps" : "25 msec steps"; }

    // The radio went to seconds or minutes (DebounceSec, DebounceMin and twins).
    void toSeconds(Prompter& prompter);
    void toMinutes(Prompter& prompter);

    // The count to store on OK, or nothing when refused (the message is shown).
    std::optional<std::uint16_t> validate(Prompter& prompter) const;
};

} // namespace rk4
