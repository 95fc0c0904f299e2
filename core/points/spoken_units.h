#pragma once
// The words an analog or totalizer point speaks after its value. The unit
// holds its own vocabulary; a point stores only three selectors of it:
//   byte 59 (selector A): the multiplier said right after the number, 0..7;
//   byte 60 (selector B): the unit of measure, 0..20;
//   byte 61 (selector C): the rate, 0..4.
// 0 in each means "say nothing here". "12.5 THOUSAND GALLONS PER MINUTE" is
// the value with A = 2, B = 10, C = 2.

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace rk4 {

using UnitSelectors = std::array<std::uint8_t, 3>;

enum class UnitSelector { Multiplier = 0, Unit = 1, Rate = 2 };

// The words of each selector, indexed by the stored value; entry 0 is empty.
const std::vector<const char*>& unitWords(UnitSelector which);

// The largest value a unit knows for this selector.
int lastSelectorValue(UnitSelector which);

// Unit words 19 and 20 arrived with the newer units. A unit reached only by
// the alternate (older) link handshake has them cleared on a database write.
inline constexpr std::uint8_t kFirstNewerUnitWord = 19;
bool needsNewerUnit(const UnitSelectors& selectors);

// What the unit says after the value: the chosen words joined by a blank,
// or "" when all three are 0. A value the unit does not know is shown as
// "?N" so that it is never mistaken for a word.
std::string spokenUnitsText(const UnitSelectors& selectors);

// The choices a selector list offers: "(none)" for 0, then the words. A
// stored value beyond the known ones gets its own last entry, so that opening
// and closing the dialog never changes it.
struct SelectorChoices {
    std::vector<std::string> labels;
    std::vector<std::uint8_t> values;
    int indexOf(std::uint8_t value) const;
};
SelectorChoices selectorChoices(UnitSelector which, std::uint8_t stored);

} // namespace rk4
