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

} // namespace
} // namespace rk4
