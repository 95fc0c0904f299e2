#include "core/points/points.h"

#include <gtest/gtest.h>

namespace rk4 {
namespace {

PointRecord attached(bool output, int port)
{
    PointRecord point;
    point.name.fill('X');
    point.type = output ? kPointOnOffOutput : kPointDigital;
    point.isOutput = output ? 1 : 0;
    point.port = static_cast<std::uint16_t>(port);
    point.groupMask = 3;
    return point;
}

TEST(ClearPoints, EmptiesOnlyThePointsOfTheChangedOutput)
{
    Database db;
    db.alm[0] = attached(true, 2);  // output 3
    db.alm[1] = attached(false, 2); // input 3
    db.alm[2] = attached(true, 2);
    db.alm[3] = attached(true, 1);

    EXPECT_EQ(ClearPoints(db, 10, true), 2);

    PointRecord empty;
    empty.inactive = 1;
    EXPECT_EQ(db.alm[0], empty);
    EXPECT_EQ(db.alm[2], empty);
    EXPECT_EQ(db.alm[1], attached(false, 2));
    EXPECT_EQ(db.alm[3], attached(true, 1));
}

TEST(ClearPoints, InputPortsAreCountedFromZero)
{
    Database db;
    db.alm[5] = attached(false, 2);
    db.alm[6] = attached(true, 2);
    EXPECT_EQ(ClearPoints(db, 2, false), 1);
    EXPECT_EQ(db.alm[5].type, kPointUnused);
    EXPECT_EQ(db.alm[5].inactive, 1);
    EXPECT_EQ(db.alm[6], attached(true, 2));
}

TEST(ConvertMask, IsOneForExactlyOneBit)
{
    for (int bit = 0; bit < 8; ++bit)
        EXPECT_EQ(ConvertMask(static_cast<std::uint8_t>(1u << bit)), 1) << bit;
    EXPECT_EQ(ConvertMask(0x30), 0);
    EXPECT_EQ(ConvertMask(0), 0);
    EXPECT_EQ(ConvertMask(0xFF), 0);
}

TEST(PortPointTypes, FollowTheHardwareTypeOfThePort)
{
    struct Case {
        std::uint8_t typeFlags;
        std::uint8_t input;
        std::uint8_t output;
    };
    // Polarity and edge bits do not change the type; analog is the 0x10 bit alone in the low five.
    const Case cases[] = {{0x00, 0x01, 0x60}, {0x81, 0x02, 0x61}, {0x42, 0x21, 0x61}, {0x03, 0x20, 0x61},
                          {0x10, 0x13, 0x61}, {0x90, 0x13, 0x61}, {0x11, 0x02, 0x61}};
    for (const Case& c : cases) {
        HardwarePort entry;
        entry.typeFlags = c.typeFlags;
        EXPECT_EQ(InputPointType(entry), c.input) << int(c.typeFlags);
        EXPECT_EQ(OutputPointType(entry), c.output) << int(c.typeFlags);
    }
}

TEST(PointsOnPorts, FindUsedPointsByTheNumberTheUserSees)
{
    Database db;
    db.alm[4] = attached(true, 2);
    db.alm[9] = attached(true, 2);
    db.alm[7] = attached(false, 2);
    db.alm[8] = PointRecord{}; // unused slot on port 0 is no point of input 1
    EXPECT_EQ(PointsOnOutput(db, 3), (std::vector<int>{4, 9}));
    EXPECT_EQ(PointsOnInput(db, 3), (std::vector<int>{7}));
    EXPECT_TRUE(PointsOnInput(db, 1).empty());
    EXPECT_EQ(ClearOutputPoints(db, 3), 2);
    EXPECT_TRUE(PointsOnOutput(db, 3).empty());
    EXPECT_EQ(ClearInputPoints(db, 3), 1);
}

TEST(SpecialUse, AcknowledgeInputTakesItsGroupsAndDropsItsOwnMask)
{
    Database db;
    db.group[0].ackIn = 2;
    db.group[3].ackIn = 2;
    db.group[6].ackIn = 2; // groups 7 and 8 are not in use
    PointRecord point = attached(false, 1);
    point.outFunction = 9;
    EXPECT_EQ(WorkOutSpecialUse(db, point), kUseAckIn);
    EXPECT_EQ(point.outGroupMask, 0x09);
    EXPECT_EQ(point.groupMask, 0);

    PointRecord watchdog = attached(false, 1);
    watchdog.type = kPointWatchdog;
    EXPECT_EQ(WorkOutSpecialUse(db, watchdog), kUseNone);
    EXPECT_EQ(watchdog.groupMask, 3);
}

TEST(SpecialUse, OutputsTakeTheFirstUseThatNamesThem)
{
    Database db;
    db.group[1].newAlarmOut = 4;
    db.group[4].ackOut = 4;
    db.gen.ringOut = 5;
    PointRecord point = attached(true, 3);
    EXPECT_EQ(WorkOutSpecialUse(db, point), kUseNewAlarm);
    EXPECT_EQ(point.outGroupMask, 0x02);
    EXPECT_EQ(point.groupMask, 3) << "an output keeps its group";
    PointRecord ring = attached(true, 4);
    EXPECT_EQ(WorkOutSpecialUse(db, ring), kUseRingOut);
    EXPECT_EQ(ring.outGroupMask, 0);
}

TEST(SpecialUse, GroupsAreAddedAndRemovedOnThePointsOfAPort)
{
    Database db;
    db.alm[2] = attached(true, 0);
    db.alm[3] = attached(true, 1);
    SetPointsGroupUse(db, true, 1, kUseAlarmOut, 3, true);
    SetPointsGroupUse(db, true, 1, kUseAlarmOut, 6, true);
    EXPECT_EQ(db.alm[2].outFunction, kUseAlarmOut);
    EXPECT_EQ(db.alm[2].outGroupMask, 0x24);
    EXPECT_EQ(db.alm[3].outGroupMask, 0);
    SetPointsGroupUse(db, true, 1, kUseAlarmOut, 3, false);
    EXPECT_EQ(db.alm[2].outGroupMask, 0x20);
    EXPECT_EQ(db.alm[2].outFunction, kUseAlarmOut);
    SetPointsGroupUse(db, true, 1, kUseAlarmOut, 6, false);
    EXPECT_EQ(db.alm[2].outFunction, kUseNone);
}

} // namespace
} // namespace rk4
