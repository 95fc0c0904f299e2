#include "core/database/validators.h"

#include "core/database/n11.h"

#include <gtest/gtest.h>

#include <cstring>

using namespace rk4;

TEST(Validators, CheckPhoneRemovesBlanksAndDashesThenAllowsDigitsStarHashAndDelay)
{
    std::string number = "555-12 34";
    EXPECT_FALSE(CheckPhone(number));
    EXPECT_EQ(number, "5551234");
    for (std::string good : {"", "!9*#"})
        EXPECT_FALSE(CheckPhone(good));
    for (std::string bad : {"555,1234", "555A"})
        EXPECT_TRUE(CheckPhone(bad)) << bad;
}

TEST(Validators, EachCheckAllowsItsOwnCharactersOnly)
{
    EXPECT_FALSE(CheckNumber("0123456789") || CheckNumber(""));
    EXPECT_TRUE(CheckNumber("-1"));
    EXPECT_FALSE(CheckDTMF("0123456789ABCDabcd!#*") || CheckDTMF(""));
    EXPECT_TRUE(CheckDTMF("E"));
    for (const char* good : {"-1.5", "+2", "1.2.3", ""})
        EXPECT_FALSE(CheckFloat(good)) << good;
    for (const char* bad : {"1-5", "1e5", "--1"})
        EXPECT_TRUE(CheckFloat(bad)) << bad;
}

TEST(Validators, DirectoryIsUsedWhenAnyByteBeforeTheNulIsACommandLetter)
{
    Database db;
    const auto set = [&](int d, std::string_view text) {
        std::memcpy(db.dir[d].dirText.data(), text.data(), text.size());
    };
    set(0, "&");
    set(1, "W5&");
    set(2, "&1F"); // a parameter byte counts as well
    set(3, std::string_view("&\0W5&", 5));
    db.dir[4].dirText.fill('1'); // no NUL at all
    const bool expected[] = {false, true, true, false, false, false};
    for (int d = 0; d < kDirectoryCount; ++d)
        EXPECT_EQ(IsDirectoryUsed(db, d), expected[d]) << d;
}

TEST(N11Rule, RefusesTwoToNineFollowedByElevenWithTheirTexts)
{
    const std::string prefix = "Not a valid phone number -  The first digits cannot be ";
    EXPECT_EQ(N11Refusal("4115551234", N11Wording::DirectoryEditor),
              prefix + "411.\nThis will result in an Directory Assistance call.");
    EXPECT_EQ(N11Refusal("2111", N11Wording::Basic), prefix + "211.\nThis is a reserved number sequence.");
    EXPECT_EQ(N11Refusal("511", N11Wording::DirectoryEditor), prefix + "511.\nTThis is a reserved number sequence.");
    EXPECT_EQ(N11Refusal("511", N11Wording::Basic), prefix + "511.\nThis is a reserved number sequence.");
    for (char first = '2'; first <= '9'; ++first) {
        const std::string number = std::string(1, first) + "11";
        const auto text = N11Refusal(number, N11Wording::DirectoryEditor);
        ASSERT_TRUE(text);
        EXPECT_EQ(text->substr(prefix.size(), 4), number + ".");
        if (first != '5') {
            EXPECT_EQ(text, N11Refusal(number, N11Wording::Basic));
        }
    }
    for (const char* accepted : {"1411", "0411", "4105551234", "41", "", "*11", "!911"})
        EXPECT_FALSE(N11Refusal(accepted, N11Wording::DirectoryEditor)) << accepted;
}
