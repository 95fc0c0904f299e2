#include "core/basic/basic_fields.h"

#include <gtest/gtest.h>

namespace rk4 {
namespace {

TEST(BasicFields, CodesTakeSevenDtmfCharactersAndNameTheFieldWhenRefused)
{
    EXPECT_EQ(codeRefusal("1234567", "Access"), std::nullopt);
    EXPECT_EQ(codeRefusal("", "Access"), std::nullopt);
    EXPECT_EQ(codeRefusal("12345678", "Access"), "Access code has too may digits - maximum is 7");
    // A bad character is named before the length.
    EXPECT_EQ(codeRefusal("12345X78", "Modem Enable"),
              "Invalid digit found in the Modem Enable code, use 0-9, *, #, A, B, C and D only.");
    EXPECT_TRUE(sameCode("a1#", "A1#"));
    EXPECT_FALSE(sameCode("", ""));
    EXPECT_FALSE(sameCode("12", "123"));
}

TEST(BasicFields, PhoneNumbersLoseBlanksAndDashesAndAllowTheDelayAndLetters)
{
    std::string number = "555-12 34!a";
    EXPECT_FALSE(CheckBasicPhone(number));
    EXPECT_EQ(number, "5551234!a");
    std::string bad = "555.1234";
    EXPECT_TRUE(CheckBasicPhone(bad));
    std::string letter = "555E";
    EXPECT_TRUE(CheckBasicPhone(letter));
}

TEST(BasicFields, NumbersAreStoredAsOneDialLineEachAndReadBack)
{
    DirectoryRecord record;
    record.dirText.fill(0x55);
    SaveSimpleDirectory({"5551234", "0*#A"}, record);
    // '0' is stored as ':', '*' as ';', '#' as '<' and 'A' as '='.
    const std::string expected = "P5551234&P:;<=&";
    EXPECT_EQ(std::string(record.dirText.begin(), record.dirText.begin() + 15), expected);
    EXPECT_EQ(record.dirText[15], 0);
    EXPECT_EQ(record.dirText[16], 0x55); // written in place: the bytes after the end stay
    EXPECT_EQ(SimpleDirectoryNumbers(record), (std::vector<std::string>{"5551234", "0*#A"}));

    SaveSimpleDirectory({}, record);
    EXPECT_EQ(record.dirText[0], '&');
    EXPECT_EQ(record.dirText[1], 0);
    EXPECT_TRUE(SimpleDirectoryNumbers(record).empty());
}

TEST(BasicFields, FillCountsThreeBytesAboveEachNumber)
{
    EXPECT_EQ(simpleDirectoryFill({"5551234", "0123456789"}), 10 + 13);
    EXPECT_EQ(simpleFillPercent(23), 8);
    EXPECT_EQ(simpleFillPercent(256), 100);
}

} // namespace
} // namespace rk4
