#include "core/points/spoken_units.h"

#include <algorithm>

namespace rk4 {

namespace {

const std::vector<const char*> kMultiplierWords = {
    "", "HUNDRED", "THOUSAND", "TEN THOUSAND", "HUNDRED THOUSAND", "MILLION", "TEN MILLION", "BILLION",
};

const std::vector<const char*> kUnitWords = {
    "",
    "DEGREES FAHRENHEIT",
    "DEGREES CELSIUS",
    "PERCENT",
    "VOLTS",
    "AMPS",
    "P S I",
    "INCHES",
    "FEET",
    "METERS",
    "GALLONS",
    "LITERS",
    "CUBIC FEET",
    "CUBIC METERS",
    "POUNDS",
    "KILOGRAMS",
    "R P M",
    "HERTZ",
    "WATTS",
    "KILOWATTS", // newer units only
    "P H",       // newer units only
};

const std::vector<const char*> kRateWords = {"", "PER SECOND", "PER MINUTE", "PER HOUR", "PER DAY"};

} // namespace

const std::vector<const char*>& unitWords(UnitSelector which)
{
    switch (which) {
    case UnitSelector::Multiplier: return kMultiplierWords;
    case UnitSelector::Unit: return kUnitWords;
    case UnitSelector::Rate: break;
    }
    return kRateWords;
}

int lastSelectorValue(UnitSelector which) { return static_cast<int>(unitWords(which).size()) - 1; }

bool needsNewerUnit(const UnitSelectors& selectors)
{
    const std::uint8_t unit = selectors[static_cast<int>(UnitSelector::Unit)];
    return unit >= kFirstNewerUnitWord && unit <= lastSelectorValue(UnitSelector::Unit);
}

std::string spokenUnitsText(const UnitSelectors& selectors)
{
    std::string text;
    for (int which = 0; which < 3; ++which) {
        const std::uint8_t value = selectors[which];
        if (value == 0)
            continue;
        const auto& words = unitWords(static_cast<UnitSelector>(which));
        if (!text.empty())
            text += ' ';
        text += value < words.size() ? std::string(words[value]) : "?" + std::to_string(value);
    }
    return text;
}

int SelectorChoices::indexOf(std::uint8_t value) const
{
    const auto at = std::find(values.begin(), values.end(), value);
    return at == values.end() ? 0 : static_cast<int>(at - values.begin());
}

SelectorChoices selectorChoices(UnitSelector which, std::uint8_t stored)
{
    SelectorChoices choices;
    const auto& words = unitWords(which);
    for (std::size_t value = 0; value < words.size(); ++value) {
        choices.labels.emplace_back(value == 0 ? "(none)" : words[value]);
        choices.values.push_back(static_cast<std::uint8_t>(value));
    }
    if (stored >= words.size()) {
        choices.labels.push_back("unknown word " + std::to_string(stored));
        choices.values.push_back(stored);
    }
    return choices;
}

} // namespace rk4
