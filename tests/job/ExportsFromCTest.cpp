// ExportsFromCTest.cpp - runs the C-language caller, which keeps the header valid C.
#include <gtest/gtest.h>

extern "C" int ormidaCApiRoundTrip(void);

TEST(ExportsFromCTest, CallerWrittenInCRunsAJob) { EXPECT_EQ(ormidaCApiRoundTrip(), 0); }
