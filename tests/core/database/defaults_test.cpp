#include "core/database/defaults.h"

#include <gtest/gtest.h>

#include <string>

using namespace rk4;

namespace {

bool allSpaces(const Name& name)
{
    for (char c : name)
        if (c != ' ')
            return false;
    return true;
}

// Dial, wait 5 s, dial the second number; stored digit 0 is ':'.
void expectFactoryServiceLine(const Database& db)
{
    const std::string line(db.gen.serviceLine.begin(), db.gen.serviceLine.end());
    EXPECT_EQ(line, std::string("P18::555:142Y&W5&P18::555:143Y&") + '\0');
}

} // namespace

TEST(DefaultValues, RepairsAnAllZeroImage)
{
    Database db;
    DefaultValues(db);
    for (const auto& directory : db.dir) {
        EXPECT_EQ(directory.dirText[0], '&');
        EXPECT_EQ(directory.dirText[1], 0);
    }
    for (const auto& group : db.group) {
        EXPECT_EQ(group.shortCycles, 5);
        EXPECT_EQ(group.shortTimer, 4);
        EXPECT_EQ(group.longTimer, 30);
        EXPECT_TRUE(allSpaces(group.name));
    }
    for (const auto& port : db.hardware.port) {
        EXPECT_EQ(port.debounce, 2);
        EXPECT_EQ(port.scaleFlags & 1, 0);
        EXPECT_EQ(port.timer, 10);
        EXPECT_EQ(port.scaleFlags & 2, 2);
    }
    for (const auto& point : db.alm) {
        EXPECT_EQ(point.inactive, 1);
        EXPECT_TRUE(allSpaces(point.name));
    }
    EXPECT_TRUE(allSpaces(db.gen.name));
    expectFactoryServiceLine(db);
}

TEST(DefaultValues, KeepsInRangeSelectorsAndClearsOthers)
{
    Database db;
    db.alm[0].unitSelector = {7, 20, 4};
    db.alm[1].unitSelector = {8, 21, 5};
    db.alm[2].type = kPointDigital;
    db.alm[2].inactive = 0;
    db.hardware.port[3].debounce = 9;
    db.hardware.port[3].scaleFlags = 1;
    DefaultValues(db);
    EXPECT_EQ(db.alm[0].unitSelector, (std::array<std::uint8_t, 3>{7, 20, 4}));
    EXPECT_EQ(db.alm[1].unitSelector, (std::array<std::uint8_t, 3>{0, 0, 0}));
    EXPECT_EQ(db.alm[2].inactive, 0) << "a used point keeps its own inactive byte";
    EXPECT_EQ(db.hardware.port[3].debounce, 9);
    EXPECT_EQ(db.hardware.port[3].scaleFlags, 1 | 2) << "only the zero timer was repaired";
}

TEST(ClearDatabase, KeepsOrClearsDirectories)
{
    Database db;
    for (auto& directory : db.dir)
        directory.dirText.fill('W');
    Database kept = db;
    ClearDatabase(kept, true);
    for (int d = 0; d < kDirectoryCount; ++d)
        EXPECT_EQ(kept.dir[d], db.dir[d]);

    ClearDatabase(db, false);
    for (const auto& directory : db.dir) {
        EXPECT_EQ(directory.dirText[0], '&');
        for (std::size_t i = 1; i < directory.dirText.size(); ++i)
            ASSERT_EQ(directory.dirText[i], 0);
    }
}

TEST(ClearDatabase, AdvancedTemplate)
{
    Database db;
    db.alm[4].type = kPointAnalog;
    db.alm[4].lowSetpoint = 63;
    db.hardware.port[2].typeFlags = 9;
    db.gen.accessCode[0] = '1';
    ClearDatabase(db, false);
    EXPECT_EQ(db.gen.basicMode, 0);
    EXPECT_EQ(db.gen.ringsToAnswer, 2);
    EXPECT_EQ(db.gen.accessCode[0], 0);
    for (const auto& point : db.alm) {
        EXPECT_EQ(point.type, 0);
        EXPECT_EQ(point.inactive, 1);
        EXPECT_EQ(point.lowSetpoint, 0);
        EXPECT_EQ(point.highReset, 1);
    }
    for (const auto& port : db.hardware.port) {
        EXPECT_EQ(port.typeFlags, 0);
        EXPECT_EQ(port.debounce, 2);
        EXPECT_EQ(port.timer, 10);
        EXPECT_EQ(port.scaleFlags, 2);
    }
    EXPECT_EQ(db.group[0].longTimer, 30);
}

TEST(ClearDatabase, BasicTemplateWithItsAsymmetries)
{
    Database db;
    db.gen.basicMode = 1;
    db.alm[13].inactive = 1;
    ClearDatabase(db, false);
    EXPECT_EQ(db.gen.basicMode, 1) << "the mode survives clearing";

    for (int i = 0; i < 8; ++i) {
        EXPECT_EQ(db.hardware.port[i].debounce, 40);
        EXPECT_EQ(db.hardware.port[i].timer, 0);
        EXPECT_EQ(db.alm[i].type, kPointDigital);
        EXPECT_EQ(db.alm[i].inactive, 0);
        EXPECT_EQ(db.alm[i].groupMask, 1);
        EXPECT_EQ(db.alm[i].port, i);
        EXPECT_EQ(db.alm[i].highReset, 1);
    }
    const int timers[8] = {400, 400, 400, 2400, 80, 400, 400, 200};
    const int types[8] = {0, 0, 0, 1, 1, 0, 0, 1};
    for (int i = 0; i < 8; ++i) {
        EXPECT_EQ(db.hardware.port[8 + i].timer, timers[i]) << "output " << i + 1;
        EXPECT_EQ(db.hardware.port[8 + i].typeFlags, types[i]) << "output " << i + 1;
        EXPECT_EQ(db.hardware.port[8 + i].debounce, 40);
    }
    for (int i = 8; i < 11; ++i) {
        EXPECT_EQ(db.alm[i].type, kPointOnOffOutput);
        EXPECT_EQ(db.alm[i].isOutput, 1);
        EXPECT_EQ(db.alm[i].inactive, 1);
        EXPECT_EQ(db.alm[i].port, i - 8);
    }
    for (int i = 11; i < 16; ++i)
        EXPECT_EQ(db.alm[i].inactive, 0) << "points 12 to 16 stay all zero";
    for (int i = 16; i < kPointCount; ++i)
        EXPECT_EQ(db.alm[i].inactive, 1);

    EXPECT_EQ(db.group[0].shiftDir, (std::array<std::uint8_t, 4>{0, 1, 1, 1}));
    EXPECT_EQ(db.group[1].shiftDir, (std::array<std::uint8_t, 4>{1, 1, 1, 1}));
    for (int g = 0; g < 2; ++g) {
        EXPECT_EQ(db.group[g].shortTimer, 20);
        EXPECT_EQ(db.group[g].longTimer, 20);
        EXPECT_EQ(db.group[g].enabled, 1);
        EXPECT_EQ(db.group[g].alarmOut, 6);
        EXPECT_EQ(db.group[g].ackOut, 8);
        EXPECT_EQ(db.group[g].newAlarmOut, 7);
    }
    EXPECT_EQ(db.group[2].shortCycles, 0) << "no Advanced defaults in Basic mode";
    EXPECT_EQ(db.gen.carrierDetectOut, 4);
    EXPECT_EQ(db.gen.ringOut, 5);
    EXPECT_EQ(db.gen.ringsToAnswer, 2);
    expectFactoryServiceLine(db);
}

TEST(PadTag, FillsFromTheFirstNul)
{
    std::array<char, 17> pump{"PUMP"};
    PadTag(pump);
    EXPECT_EQ(std::string(pump.data()), "PUMP            ");
    std::array<char, 17> empty{};
    PadTag(empty);
    EXPECT_EQ(std::string(empty.data()), std::string(16, ' '));
    std::array<char, 17> full{"ABCDEFGHIJKLMNOP"};
    PadTag(full);
    EXPECT_EQ(std::string(full.data()), "ABCDEFGHIJKLMNOP");
}

TEST(Masks, RotateWithinEightBits)
{
    EXPECT_EQ(MakeMask(0), 1);
    EXPECT_EQ(MakeMask(3), 8);
    EXPECT_EQ(MakeMask(7), 0x80);
    EXPECT_EQ(MakeMask(8), 1);
    EXPECT_EQ(MakeMask(-2), 1);
    for (int bit = 0; bit < 8; ++bit)
        EXPECT_EQ(MakeNotMask(bit), static_cast<std::uint8_t>(~MakeMask(bit)));
    EXPECT_EQ(MakeNotMask(3), 0xF7);
    EXPECT_EQ(FixInt(0x1234), 0x3412);
}

TEST(ExtractSeconds, ShowsTheUnitToolsSinglePrecisionText)
{
    const std::pair<std::uint16_t, const char*> cases[] = {
        {0, "0.050"},  {1, "0.025"},     {2, "0.050"},        {3, "0.075"},        {7, "0.174"},
        {40, "1.000"}, {2400, "60.000"}, {65520, "1638.000"}, {65534, "1638.349"}, {65535, "1638.375"},
    };
    for (const auto& [count, text] : cases) {
        std::string out;
        EXPECT_EQ(ExtractShowSeconds(out, count), text) << count;
    }
}
