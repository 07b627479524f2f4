// NumberConversionTest.cpp - stoi/stod look-alikes: values, error texts, and independence
// from the caller's locale.
#include "base/NumberConversion.h"

#include "support/GermanLocale.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <stdexcept>

namespace {

using namespace qent::base;

TEST(NumberConversionTest, ParsesIntegersLikeStoi) {
  const std::pair<const char*, std::int32_t> cases[] = {
      {"42", 42}, {"  -17", -17}, {"+8", 8}, {"12abc", 12}, {"\t\n7 ", 7}, {"007", 7}, {"3.9", 3},
      {"2147483647", 2147483647}, {"-2147483648", std::numeric_limits<std::int32_t>::min()}};
  for (const auto& [text, value] : cases) EXPECT_EQ(parseInt(text), value) << text;
}

// The standard exception types (out_of_range for the texts that say so, else
// invalid_argument) with the texts the system has always given.
TEST(NumberConversionTest, ErrorsAreTheStandardTypesWithFixedTexts) {
  const std::pair<std::function<void()>, const char*> cases[] = {
      {[] { parseInt(""); }, "invalid stoi argument"},
      {[] { parseInt("2147483648"); }, "stoi argument out of range"},
      {[] { parseInt("-2147483649"); }, "stoi argument out of range"},
      {[] { parseUnsigned("x1"); }, "invalid stoul argument"},
      {[] { parseUnsigned("4294967296"); }, "stoul argument out of range"},
      {[] { parseDouble("+-1"); }, "invalid stod argument"},
      {[] { parseDouble("1e999"); }, "stod argument out of range"},
      {[] { parseFloat("1e40"); }, "stof argument out of range"},
      {[] { parseFloat("zero"); }, "invalid stof argument"}};
  for (const auto& [call, text] : cases) {
    const bool range = std::string(text).find("out of range") != std::string::npos;
    try {
      call();
      ADD_FAILURE() << "no exception for " << text;
    } catch (const std::out_of_range& e) {
      EXPECT_TRUE(range) << e.what();
      EXPECT_STREQ(e.what(), text);
    } catch (const std::invalid_argument& e) {
      EXPECT_FALSE(range) << e.what();
      EXPECT_STREQ(e.what(), text);
    }
  }
}

TEST(NumberConversionTest, ParsesUnsignedLikeStrtoulAndDoublesLikeStrtod) {
  EXPECT_EQ(parseUnsigned("4294967295"), 4294967295u);
  EXPECT_EQ(parseUnsigned("-1"), 4294967295u);
  EXPECT_EQ(parseUnsigned(" 12 words"), 12u);
  EXPECT_DOUBLE_EQ(parseDouble("0.7"), 0.7);
  EXPECT_DOUBLE_EQ(parseDouble("  -2.5e3xyz"), -2500.0);
  EXPECT_DOUBLE_EQ(parseDouble("+.5"), 0.5);
  EXPECT_DOUBLE_EQ(parseDouble("1,5"), 1.0) << "a comma ends the number, whatever the locale";
  EXPECT_TRUE(std::isinf(parseDouble("inf")));
}

TEST(NumberConversionTest, FormatsLikePrintfFixed) {
  EXPECT_EQ(formatFixed6(3.0), "3.000000");
  EXPECT_EQ(formatFixed6(0.1234567), "0.123457");
  EXPECT_EQ(formatFixed6(-2.5), "-2.500000");
  EXPECT_EQ(formatFixed6(12.0L), "12.000000");
  EXPECT_EQ(formatFixed6(1e20), "100000000000000000000.000000");
  EXPECT_EQ(formatFixed6(std::numeric_limits<double>::infinity()), "inf");
  EXPECT_EQ(formatShortest(0.5), "0.5");
}

// A German application may have switched its C locale to decimal commas; our texts and
// parses must not follow it.
TEST(NumberConversionTest, IgnoresTheCallersLocale) {
  const qent::test::ScopedGermanLocale german;
  if (!german.active()) GTEST_SKIP() << "no German locale installed";
  EXPECT_EQ(formatFixed6(3.25), "3.250000");
  EXPECT_DOUBLE_EQ(parseDouble("3.25"), 3.25);
  EXPECT_FLOAT_EQ(parseFloat("0.7"), 0.7f);
}

}  // namespace
