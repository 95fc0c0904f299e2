#pragma once
// The time fields of the Basic outputs and alarms editors: a text with its
// seconds or minutes resolution, the clamps when the resolution changes, and
// the check on OK. Seconds are stored as 25 ms steps, minutes as whole minutes.

#include "core/common/prompter.h"

#include <cstdint>
#include <optional>
#include <string>

namespace rk4 {

struct SimTime {
    enum class Kind { OutputTimer, Debounce };

    Kind kind = Kind::OutputTimer;
    std::string text;
    bool minutes = false;

    void load(std::uint16_t count, bool minutesScale);
    // The resolution radio moved; a value the new resolution cannot hold is
    // clamped with a message.
    void ResolutionChanging(bool toMinutes, Prompter& prompter);
    // The count to store, or nothing when refused (the message is shown).
    std::optional<std::uint16_t> validate(Prompter& prompter) const;

    bool operator==(const SimTime&) const = default;
};

} // namespace rk4
