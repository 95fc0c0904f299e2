#include "core/database/database.h"

#include <gtest/gtest.h>

TEST(Smoke, ImageIs4704Bytes) { EXPECT_EQ(rk4::Database{}.toBytes().size(), 4704u); }
