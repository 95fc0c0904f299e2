#include "core/common/numbers.h"

#include <gtest/gtest.h>

#include <string>

using namespace rk4;

TEST(Numbers, FieldTextReadsAsAFiniteNumberOrZero)
{
    constexpr float kLargest = std::numeric_limits<float>::max();
    const struct {
        std::string text;
        float value;
    } cases[] = {
        {"12.5", 12.5f},
        {" +3", 3.0f},
        {"-0.25xyz", -0.25f},
        {"1.2.3", 1.2f},
        {"", 0.0f},
        {"--3", 0.0f},
        {"+-3", 0.0f},
        {"x1", 0.0f},
        {"nan", 0.0f},
        {"-nan", 0.0f},
        {"inf", 0.0f},
        {"-infinity", 0.0f},
        {"1e999", kLargest},
        {"-1e999", -kLargest},
        {std::string(45, '9'), kLargest},
        {"1e-999", 0.0f},
        {"0." + std::string(60, '0') + "1", 0.0f},
    };
    for (const auto& c : cases)
        EXPECT_EQ(leadingNumber(c.text), c.value) << c.text;
}

TEST(Numbers, WholePartsAreHeldWithinTheIntsRange)
{
    EXPECT_EQ(saturatedInt(2.9), 2);
    EXPECT_EQ(saturatedInt(-2.9), -2);
    EXPECT_EQ(saturatedInt(1e300), INT_MAX);
    EXPECT_EQ(saturatedInt(-1e300), -INT_MAX);
    EXPECT_EQ(saturatedInt(std::numeric_limits<double>::quiet_NaN()), 0);
}
