#include "core/hardware/time_field.h"

#include "tests/support/scripted_prompter.h"

#include <gtest/gtest.h>

namespace rk4 {
namespace {

using test::ScriptedPrompter;

TEST(TimeField, ShowsStoredCountsAsTheUnitToolDoes)
{
    // Zero shows the 50 ms minimum; single precision truncation loses a
    // thousandth on some counts (7 and 65534), and that is what is shown.
    const std::pair<std::uint16_t, const char*> cases[] = {
        {0, "0.050"},    {1, "0.025"},     {3, "0.075"},        {7, "0.174"},        {40, "1.000"},
        {500, "12.500"}, {2400, "60.000"}, {65520, "1638.000"}, {65534, "1638.349"}, {65535, "1638.375"}};
    for (const auto& [count, text] : cases)
        EXPECT_EQ(timeFieldText(count, false), text) << count;
    EXPECT_EQ(timeFieldText(0, true), "1");
    EXPECT_EQ(timeFieldText(90, true), "90");
}

TEST(TimeField, SecondsOnOkAreTruncatedTo25msStepsWithinLimits)
{
    ScriptedPrompter prompter;
    TimeField field{TimeKind::Debounce, "1638", false};
    EXPECT_EQ(field.validate(prompter), 65520);
    field.text = "0.025";
    EXPECT_EQ(field.validate(prompter), 1);
    field.text = "0.049";
    EXPECT_EQ(field.validate(prompter), 1);
    field.text = "  12.5";
    EXPECT_EQ(field.validate(prompter), 500);
    EXPECT_TRUE(prompter.messages().empty());

    field.text = "1638.01";
    EXPECT_FALSE(field.validate(prompter));
    field.text = "0.024";
    EXPECT_FALSE(field.validate(prompter));
    field.text = "abc";
    EXPECT_FALSE(field.validate(prompter));
    ASSERT_EQ(prompter.messages().size(), 3u);
    EXPECT_EQ(prompter.messages()[0].text, "The debounce interval cannot be more than 1638 sec.");
    EXPECT_EQ(prompter.messages()[0].title, "Error");
    EXPECT_EQ(prompter.messages()[0].icon, Icon::Error);
    EXPECT_EQ(prompter.messages()[1].text, "The debounce interval cannot be less than .025 sec.");
    EXPECT_EQ(prompter.messages()[2].text, "The debounce interval cannot be less than .025 sec.");
}

TEST(TimeField, MinutesOnOkWarnAtOneAndRefuseOutsideTheRange)
{
    ScriptedPrompter prompter;
    TimeField field{TimeKind::Watchdog, "1", true};
    EXPECT_EQ(field.validate(prompter), 1);
    ASSERT_EQ(prompter.messages().size(), 1u);
    EXPECT_EQ(prompter.messages()[0].text,
              "Setting the watchdog interval to 1 minute with 1 minute resolution will result in a time between zero "
              "and 1 minute.  Use the Seconds setting for short times.");
    EXPECT_EQ(prompter.messages()[0].icon, Icon::Warning);

    field.text = "65535";
    EXPECT_EQ(field.validate(prompter), 65535);
    field.text = "2.9";
    EXPECT_EQ(field.validate(prompter), 2);

    prompter.clear();
    TimeField timer{TimeKind::Timer, "65536", true};
    EXPECT_FALSE(timer.validate(prompter));
    timer.text = "0.5";
    EXPECT_FALSE(timer.validate(prompter));
    EXPECT_EQ(prompter.texts(), (std::vector<std::string>{"The timer interval cannot be greater than 65535 min.",
                                                          "The timer interval cannot be less than 1 min."}));
}

TEST(TimeField, SwitchingToSecondsClampsAndCompletesTheText)
{
    ScriptedPrompter prompter;
    TimeField field{TimeKind::Debounce, "2000", true};
    field.toSeconds(prompter);
    EXPECT_EQ(field.text, "1638.000");
    EXPECT_FALSE(field.minutes);
    EXPECT_EQ(field.stepLabel(), "25 msec steps");
    EXPECT_EQ(prompter.texts(), std::vector<std::string>{
                                    "Debounce timer is out of range, it has been set to maximum for seconds: 1638."});

    prompter.clear();
    field.text = "5";
    field.toSeconds(prompter);
    EXPECT_EQ(field.text, "5.000");
    field.text = "2.5";
    field.toSeconds(prompter);
    EXPECT_EQ(field.text, "2.5");
    EXPECT_TRUE(prompter.messages().empty());

    TimeField timer{TimeKind::Timer, "0.01", true};
    timer.toSeconds(prompter);
    EXPECT_EQ(timer.text, "0.025");
    EXPECT_EQ(prompter.texts(),
              std::vector<std::string>{"Timer cannot be less than 25 msec, it has been set to 25 msec."});
}

TEST(TimeField, SwitchingToMinutesKeepsTheWholeNumberAndNeverZero)
{
    ScriptedPrompter prompter;
    TimeField field{TimeKind::Debounce, "0.025", false};
    field.toMinutes(prompter);
    EXPECT_EQ(field.text, "2");
    EXPECT_TRUE(field.minutes);
    EXPECT_EQ(field.stepLabel(), "1 min steps");
    EXPECT_EQ(prompter.texts(), std::vector<std::string>{"Debounce timer value cannot be less than 1 minute, it has "
                                                         "been set to 2 minutes."});

    prompter.clear();
    field.text = "1.5";
    field.toMinutes(prompter);
    EXPECT_EQ(field.text, "1");
    EXPECT_TRUE(prompter.messages().empty());

    TimeField watchdog{TimeKind::Watchdog, "", false};
    watchdog.toMinutes(prompter);
    EXPECT_EQ(watchdog.text, "2");
    EXPECT_TRUE(prompter.saw("Watchdog timer value cannot be less than 1 minute, it has been set to 2 minutes."));
}

} // namespace
} // namespace rk4
