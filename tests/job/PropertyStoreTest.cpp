// PropertyStoreTest.cpp - how set values are stored and read as booleans and numbers, and
// the exact lookup of property names.
#include "job/PropertyStore.h"

#include "job/OrmidaJob.h"
#include "job/PropertyValues.h"
#include "job/property_table.h"
#include "support/JobApi.h"

#include <gtest/gtest.h>

#include <set>
#include <stdexcept>
#include <string>

namespace {

using namespace qent::job;

// The number conversions themselves are NumberConversion's; here only that the values reach
// them. The float fallback is tested with its trace line.
TEST(PropertyValuesTest, BooleansAndNumbers) {
  const std::pair<const char16_t*, bool> cases[] = {
      {u"", false},     {u"0", false},    {u"false", false}, {u"no", false},
      {u"1", true},     {u"true", true},  {u"False", true},  {u"NO", true},
      {u"00", true},    {u" 0", true},    {u"yes", true},    {u"x", true}};
  for (const auto& [value, expected] : cases) {
    EXPECT_EQ(toBoolean(value), expected) << qent::test::u8(value);
  }
  EXPECT_EQ(toInteger(u" 12px"), 12);
  EXPECT_EQ(toUnsigned(u"3000000000"), 3000000000u);
  EXPECT_DOUBLE_EQ(toDouble(u"0.25"), 0.25);
  EXPECT_FLOAT_EQ(toFloatOr(u"0.5", 0.7f), 0.5f);
}

TEST(PropertyStoreTest, LaterSetsReplaceEarlierOnesAndNothingGrows) {
  OrmidaJob job;
  for (int request = 0; request < 3; ++request) {  // a job reused for several requests
    ASSERT_TRUE(job.setProperty(u"WorkSpace", u"a"));
    ASSERT_TRUE(job.setProperty(u"WorkSpace", u"b"));
    ASSERT_TRUE(job.setProperty(u"Compare.Level", u"Glyph"));
    ASSERT_TRUE(job.setProperty(u"Compare.", u"empty sub"));
    ASSERT_TRUE(job.setProperty(u"Compare.Level", u"Line"));
    ASSERT_TRUE(job.setProperty(u"Compare.Unknown.Dotted", u"kept"));
    ASSERT_TRUE(job.setProperty(u"BestOfLayout.PageWidth", u"500"));
    EXPECT_FALSE(job.setProperty(u"Nope", u"1"));
    EXPECT_FALSE(job.setProperty(u"Nope.Level", u"2"));
  }
  const PropertyStore& store = job.properties();
  EXPECT_EQ(store.string(kWorkSpace), u"b");
  const auto subs = store.subProperties(kCompare);
  ASSERT_EQ(subs.size(), 3u);
  EXPECT_EQ(subs[0].first, 0u) << "an empty sub name reads as number 0";
  EXPECT_EQ(subs[1], std::make_pair(std::uint32_t(kLevel), std::u16string(u"Line")))
      << "a name set again moves to the end, where its last value is read";
  EXPECT_EQ(subs[2].first, 0u);
  EXPECT_EQ(store.subRecords()[2].subName, u"Unknown.Dotted");
  ASSERT_EQ(store.unknown().size(), 2u);
  EXPECT_EQ(store.unknown()[1].first, u"Nope.Level");
  EXPECT_EQ(store.subProperties(kBestOfLayout).size(), 1u);
}

TEST(PropertyStoreTest, TypedReadsOfPlainProperties) {
  PropertyStore store;
  EXPECT_FALSE(store.isSet(kCompare));
  EXPECT_FALSE(store.boolean(kCompare));
  store.setPlain(kCompare, u"");
  EXPECT_FALSE(store.isSet(kCompare)) << "empty counts as not set";
  EXPECT_TRUE(store.plain(kCompare).has_value());
  store.setPlain(kCompare, u"yes");
  EXPECT_TRUE(store.boolean(kCompare));
  EXPECT_EQ(store.integer(kPageWidth, 7), 7);
  store.setPlain(kPageWidth, u"-3");
  EXPECT_EQ(store.integer(kPageWidth, 7), -3);
  store.setPlain(kPageWidth, u"wide");
  EXPECT_THROW(store.integer(kPageWidth, 7), std::invalid_argument);
}

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
