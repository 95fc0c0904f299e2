#include "core/points/spoken_units.h"

#include "core/database/defaults.h"
#include "core/link/packing.h"

#include <gtest/gtest.h>

namespace rk4 {
namespace {

TEST(SpokenUnits, TextJoinsTheChosenWordsAndMarksValuesTheUnitDoesNotKnow)
{
    struct Case {
        UnitSelectors selectors;
        const char* text;
    };
    const Case cases[] = {
        {{0, 0, 0}, ""},
        {{2, 10, 2}, "THOUSAND GALLONS PER MINUTE"},
        {{0, 13, 1}, "CUBIC METERS PER SECOND"},
        {{5, 0, 0}, "MILLION"},
        {{0, 0, 4}, "PER DAY"},
        {{7, 20, 4}, "BILLION P H PER DAY"},
        {{8, 21, 5}, "?8 ?21 ?5"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(spokenUnitsText(c.selectors), c.text) << int(c.selectors[0]) << ',' << int(c.selectors[1]);
}

TEST(SpokenUnits, EveryWordALoadKeepsAndNoOther)
{
    // A load clears selectors beyond the unit's vocabulary; the word lists
    // must offer exactly the values a load keeps.
    Database db;
    db.alm[0].unitSelector = {7, 20, 4};
    db.alm[1].unitSelector = {8, 21, 5};
    DefaultValues(db);
    EXPECT_EQ(db.alm[0].unitSelector, (UnitSelectors{7, 20, 4}));
    EXPECT_EQ(db.alm[1].unitSelector, (UnitSelectors{0, 0, 0}));
    EXPECT_EQ(lastSelectorValue(UnitSelector::Multiplier), 7);
    EXPECT_EQ(lastSelectorValue(UnitSelector::Unit), 20);
    EXPECT_EQ(lastSelectorValue(UnitSelector::Rate), 4);
}

TEST(SpokenUnits, OnlyTheTwoNewestUnitWordsAreClearedForAnOlderUnit)
{
    Database db;
    for (int unit = 0; unit <= 20; ++unit)
        db.alm[unit].unitSelector = {3, static_cast<std::uint8_t>(unit), 2};
    std::vector<std::uint8_t> staging(64 * 1024);
    link::packDatabase(db, true, staging);
    for (int unit = 0; unit <= 20; ++unit) {
        const bool newer = unit == 19 || unit == 20;
        EXPECT_EQ(needsNewerUnit({0, static_cast<std::uint8_t>(unit), 0}), newer) << unit;
        EXPECT_EQ(db.alm[unit].unitSelector, (UnitSelectors{3, static_cast<std::uint8_t>(newer ? 0 : unit), 2}))
            << unit;
    }
}

TEST(SpokenUnits, ChoicesOfferNoneThenTheWordsAndKeepAnUnknownStoredValue)
{
    const SelectorChoices rates = selectorChoices(UnitSelector::Rate, 3);
    EXPECT_EQ(rates.labels, (std::vector<std::string>{"(none)", "PER SECOND", "PER MINUTE", "PER HOUR", "PER DAY"}));
    EXPECT_EQ(rates.indexOf(3), 3);

    const SelectorChoices unknown = selectorChoices(UnitSelector::Multiplier, 200);
    ASSERT_EQ(unknown.labels.size(), 9u);
    EXPECT_EQ(unknown.labels.back(), "unknown word 200");
    EXPECT_EQ(unknown.values[unknown.indexOf(200)], 200);
}

} // namespace
} // namespace rk4
