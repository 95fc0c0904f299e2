#include "core/settings/outputs.h"

#include <gtest/gtest.h>

namespace rk4 {
namespace {

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
