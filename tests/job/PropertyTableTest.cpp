// PropertyTableTest.cpp - the property numbers that results and sub-properties are keyed by.
#include "job/property_table.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace {

using namespace qent::job;

TEST(PropertyTableTest, NamesAndNumbersAreOneToOneAndLookupIsExact) {
  std::set<std::string> names;
  for (std::uint32_t i = 0; i < kPropertyCount; ++i) {
    names.emplace(propertyName(i));
    if (i > 0) {
      EXPECT_EQ(propertyNumber(propertyName(i)), i) << propertyName(i);
    }
  }
  EXPECT_EQ(names.size(), std::size_t{kPropertyCount});
  EXPECT_EQ(propertyName(kPropertyCount), "__Unknown");
  for (const std::string_view name : {std::string_view("compare"), std::string_view("Compare "),
                                      std::string_view(""), std::string_view("__Unknown"),
                                      std::string_view("Compare\0x", 9)}) {
    EXPECT_EQ(propertyNumber(name), kUnknownProperty) << name;
  }
}

}  // namespace
