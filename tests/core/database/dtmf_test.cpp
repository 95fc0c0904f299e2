#include "core/database/dtmf.h"

#include <gtest/gtest.h>

using namespace rk4;

TEST(DtmfCode, ConvertsShownDigitsToStoredAndBack)
{
    std::string text = "12*#0ABCDabcd!";
    ASCII2DTMF(text);
    EXPECT_EQ(text, "12;<:=>?0=>?0!");
    DTMF2ASCII(text);
    EXPECT_EQ(text, "12*#0ABCDABCD*"); // the stored delay shows as a star
}

TEST(DtmfCode, CodeFieldsHoldSevenDigitsAndKeepTheBytesAfterTheNul)
{
    DtmfCode field;
    field.fill('1');
    EXPECT_EQ(dtmfCodeText(field), "11111111"); // no terminator: read all eight, no further
    field.fill('X');
    storeDtmfCode("10#", field);
    EXPECT_EQ(field, (DtmfCode{'1', ':', '<', 0, 'X', 'X', 'X', 'X'}));
    storeDtmfCode("123456789", field);
    EXPECT_EQ(dtmfCodeText(field), "1234567");
}
