#include "core/settings/outputs.h"

#include "tests/support/scripted_prompter.h"

#include <gtest/gtest.h>

namespace rk4 {
namespace {

using test::ScriptedPrompter;

const char kQuestion[] = "Output 3 is presently being used as a controlled output in Points.  Changing it to the "
                         "Alarm Out function will remove it from Points - Proceed?";

PointRecord outputPoint(int output)
{
    PointRecord point;
    point.name.fill('P');
    point.type = kPointOnOffOutput;
    point.isOutput = 1;
    point.port = static_cast<std::uint16_t>(output - 1);
    return point;
}

TEST(SpecialOutputs, FixedSettingsReplaceEveryByteOfTheEntry)
{
    HardwarePort port{0x01, 40, 0x02, 0x10, 0x07, 9};
    SetOutputTimed(port, 400);
    EXPECT_EQ(port, (HardwarePort{1, 2, 0, 0, 0, 400}));
    SetOutputOnOff(port);
    EXPECT_EQ(port, (HardwarePort{0, 2, 0, 0, 0, 0}));

    Database db;
    outputPort(db, 8).timer = 5;
    EXPECT_EQ(db.hardware.port[15].timer, 5); // output 8 is the last entry
}

TEST(SpecialOutputs, TakingAnOutputAsksOnlyWhenPointsDriveIt)
{
    Database db;
    db.alm[4] = outputPoint(3);
    db.alm[9] = outputPoint(3);
    db.alm[12] = outputPoint(4);
    const Database before = db;

    ScriptedPrompter prompter;
    prompter.expect(kQuestion, Answer::No);
    EXPECT_FALSE(TakeOutputFromPoints(db, 3, "Alarm Out", prompter));
    EXPECT_EQ(db, before);

    prompter.expect(kQuestion, Answer::Yes);
    EXPECT_TRUE(TakeOutputFromPoints(db, 3, "Alarm Out", prompter));
    EXPECT_EQ(db.alm[4].type, kPointUnused);
    EXPECT_EQ(db.alm[4].inactive, 1);
    EXPECT_EQ(db.alm[9].type, kPointUnused);
    EXPECT_EQ(db.alm[12], before.alm[12]);

    EXPECT_TRUE(TakeOutputFromPoints(db, 5, "Alarm Out", prompter)); // no point: no question
    EXPECT_TRUE(prompter.finished());
}

TEST(SpecialOutputs, FirstGroupUseFollowsGroupThenFunctionOrder)
{
    Database db;
    EXPECT_FALSE(FirstGroupUsingOutput(db, 0)); // "not used" is never a conflict
    db.group[7].alarmOut = 2;
    db.group[6].ackOut = 2;
    db.group[6].newAlarmOut = 2;
    auto use = FirstGroupUsingOutput(db, 2);
    ASSERT_TRUE(use);
    EXPECT_EQ(use->group, 7);
    EXPECT_EQ(use->function, "New Alarm Out");
    db.group[6] = GroupRecord{};
    use = FirstGroupUsingOutput(db, 2);
    ASSERT_TRUE(use);
    EXPECT_EQ(use->group, 8);
    EXPECT_EQ(use->function, "Alarm Out");
    EXPECT_FALSE(FirstGroupUsingOutput(db, 3));
}

} // namespace
} // namespace rk4
