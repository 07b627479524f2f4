#include "ormida/ormida.h"
#include <gtest/gtest.h>
TEST(Smoke, Version) { EXPECT_EQ(OrmidaGetVersion(), 0x01070000u); }
