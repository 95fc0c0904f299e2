#include "core/hardware/time_field.h"

#include "tests/support/scripted_prompter.h"

#include <gtest/gtest.h>

namespace rk4 {
namespace {

using test::ScriptedPrompter;

TEST(TimeField, ShowsSecondsAsTheSecondsTextAndMinutesAsAWholeNumberNeverZero)
{
    EXPECT_EQ(timeFieldText(7, false), "0.174");
    EXPECT_EQ(timeFieldText(0, true), "1");
    EXPECT_EQ(timeFieldText(90, true), "90");
}

TEST(TimeField, OkStoresTheCountOrRefusesWithTheFieldsOwnText)
{
    struct Case {
        TimeKind kind;
        bool minutes;
        const char* text;
        int count; // -1: refused
        const char* message;
    };
    const char* const kOneMinute =
        "Setting the watchdog interval to 1 minute with 1 minute resolution will result in a "
        "time between zero and 1 minute.  Use the Seconds setting for short times.";
    const Case cases[] = {
        {TimeKind::Debounce, false, "1638", 65520, nullptr},
        {TimeKind::Debounce, false, "0.025", 1, nullptr},
        {TimeKind::Debounce, false, "0.049", 1, nullptr}, // truncated to a 25 ms step
        {TimeKind::Debounce, false, "  12.5", 500, nullptr},
        {TimeKind::Debounce, false, "1638.01", -1, "The debounce interval cannot be more than 1638 sec."},
        {TimeKind::Debounce, false, "0.024", -1, "The debounce interval cannot be less than .025 sec."},
        {TimeKind::Debounce, false, "abc", -1, "The debounce interval cannot be less than .025 sec."},
        {TimeKind::Debounce, true, "0", -1, "The debounce interval cannot be less than 1 min."},
        {TimeKind::Watchdog, true, "1", 1, kOneMinute}, // allowed, with a warning
        {TimeKind::Watchdog, true, "65535", 65535, nullptr},
        {TimeKind::Watchdog, true, "2.9", 2, nullptr},
        {TimeKind::Timer, true, "65536", -1, "The timer interval cannot be greater than 65535 min."},
        {TimeKind::Timer, true, "0.5", -1, "The timer interval cannot be less than 1 min."},
    };
    for (const Case& c : cases) {
        ScriptedPrompter prompter;
        const auto count = TimeField{c.kind, c.text, c.minutes}.validate(prompter);
        EXPECT_EQ(count ? int{*count} : -1, c.count) << c.text;
        if (!c.message) {
            EXPECT_TRUE(prompter.messages().empty()) << c.text;
            continue;
        }
        ASSERT_EQ(prompter.messages().size(), 1u) << c.text;
        EXPECT_EQ(prompter.messages()[0].text, c.message);
        EXPECT_EQ(prompter.messages()[0].icon, c.count < 0 ? Icon::Error : Icon::Warning) << c.text;
    }
}

TEST(TimeField, NotANumberAndInfinityAreRefusedInBothScales)
{
    for (const char* text : {"nan", "NaN", "-nan", "inf", "-inf", "infinity", " +nan(1)"}) {
        for (const bool minutes : {false, true}) {
            ScriptedPrompter prompter;
            TimeField field{TimeKind::Watchdog, text, minutes};
            EXPECT_FALSE(field.validate(prompter)) << text << (minutes ? " min" : " s");
            ASSERT_EQ(prompter.messages().size(), 1u) << text;
            EXPECT_EQ(prompter.messages()[0].text, minutes ? "The watchdog interval cannot be less than 1 min."
                                                           : "The watchdog interval cannot be less than .025 sec.");
        }
    }
}

TEST(TimeField, SwitchingScalesClampsAndCompletesTheText)
{
    struct Case {
        TimeKind kind;
        bool toMinutes;
        const char* text;
        const char* shown;
        const char* message;
    };
    const Case cases[] = {
        {TimeKind::Debounce, false, "2000", "1638.000",
         "Debounce timer is out of range, it has been set to maximum for seconds: 1638."},
        {TimeKind::Debounce, false, "5", "5.000", nullptr},
        {TimeKind::Debounce, false, "2.5", "2.5", nullptr},
        {TimeKind::Timer, false, "0.01", "0.025", "Timer cannot be less than 25 msec, it has been set to 25 msec."},
        {TimeKind::Timer, false, "0.025", "0.025", nullptr},
        {TimeKind::Debounce, true, "0.025", "2",
         "Debounce timer value cannot be less than 1 minute, it has been set to 2 minutes."},
        {TimeKind::Debounce, true, "1.5", "1", nullptr},
        {TimeKind::Watchdog, true, "", "2",
         "Watchdog timer value cannot be less than 1 minute, it has been set to 2 minutes."},
    };
    for (const Case& c : cases) {
        ScriptedPrompter prompter;
        TimeField field{c.kind, c.text, !c.toMinutes};
        c.toMinutes ? field.toMinutes(prompter) : field.toSeconds(prompter);
        EXPECT_EQ(field.text, c.shown) << c.text;
        EXPECT_EQ(field.minutes, c.toMinutes);
        EXPECT_EQ(field.stepLabel(), c.toMinutes ? "1 min steps" : "25 msec steps");
        EXPECT_EQ(prompter.texts(), c.message ? std::vector<std::string>{c.message} : std::vector<std::string>{})
            << c.text;
    }
}

} // namespace
} // namespace rk4
