// LongDoubleCharsTest.cpp - long double numbers read with their full precision and range
// and printed with a decimal point, whatever the platform's library and the C locale.
#include "base/platform/platform.h"

#include "base/NumberConversion.h"
#include "support/GermanLocale.h"

#include <gtest/gtest.h>

#include <charconv>
#include <cmath>
#include <limits>
#include <cstring>
#include <random>
#include <string>

namespace {

namespace platform = qent::base::platform;

struct ReadCase {
  const char* text;
  std::size_t used;     // characters taken
  bool inRange;         // false: result_out_of_range and the value left alone
  const char* shortest; // the value, as to_chars prints it (taken from glibc's reading)
};
void PrintTo(const ReadCase& k, std::ostream* out) { *out << k.text; }

std::string shortest(long double value) {
  char buffer[64];
  const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
  return std::string(buffer, result.ptr);
}

class LongDoubleFromCharsTest : public ::testing::TestWithParam<ReadCase> {};

TEST_P(LongDoubleFromCharsTest, ReadsLikeGlibc) {
  const ReadCase& k = GetParam();
  long double value = -7;
  const auto result = platform::longDoubleFromChars(k.text, k.text + std::strlen(k.text), value);
  EXPECT_EQ(static_cast<std::size_t>(result.ptr - k.text), k.used);
  if (k.inRange) {
    EXPECT_EQ(result.ec, std::errc());
    EXPECT_EQ(shortest(value), k.shortest);
  } else {
    EXPECT_EQ(result.ec, std::errc::result_out_of_range);
    EXPECT_EQ(value, -7);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Numbers, LongDoubleFromCharsTest,
    ::testing::Values(
        // More digits than a double holds, beyond a double's range, both ends of long
        // double's own range.
        ReadCase{"12345678901234567890", 20, true, "12345678901234567890"},
        ReadCase{"3.14159265358979323846264338327950288", 37, true, "3.1415926535897932385"},
        ReadCase{"0.1", 3, true, "0.1"},
        ReadCase{"1e400", 5, true, "1e+400"},
        ReadCase{"-2.5e-4000", 10, true, "-2.5e-4000"},
        ReadCase{"1.18973149535723176502e+4932", 28, true, "1.189731495357231765e+4932"},
        ReadCase{"1.2e4932", 8, false, ""}, ReadCase{"1e5000", 6, false, ""},
        ReadCase{"1e-5000", 7, false, ""}, ReadCase{"1e-4940", 7, false, ""},
        // Where the number ends.
        ReadCase{"1.5e", 3, true, "1.5"}, ReadCase{"00012.50x", 8, true, "12.5"},
        ReadCase{".5", 2, true, "0.5"}, ReadCase{"inf", 3, true, "inf"},
        ReadCase{"-inf", 4, true, "-inf"}, ReadCase{"-1e-4000", 8, true, "-1e-4000"}));

TEST(LongDoubleFromCharsTest, NotANumberIsInvalid) {
  for (const char* text : {"", "x1", ".", "e5", "+1"}) {
    long double value = -7;
    const auto result = platform::longDoubleFromChars(text, text + std::strlen(text), value);
    EXPECT_EQ(result.ec, std::errc::invalid_argument) << text;
    EXPECT_EQ(result.ptr, text) << text;
    EXPECT_EQ(value, -7) << text;
  }
}

// A German application may have set a decimal comma; the point still separates decimals
// and a comma still ends the number.
TEST(LongDoubleFromCharsTest, IgnoresTheCallersDecimalComma) {
  long double value = 0, commaValue = 0, parsed = 0;
  const char* text = "12345678901234567890.5";
  const char* withComma = "2,5";
  std::from_chars_result result{}, commaResult{};
  {
    const qent::test::ScopedGermanLocale german;
    if (!german.active()) GTEST_SKIP() << "no German locale installed";
    result = platform::longDoubleFromChars(text, text + std::strlen(text), value);
    commaResult = platform::longDoubleFromChars(withComma, withComma + 3, commaValue);
    parsed = qent::base::parseLongDouble("12345678901234567890");
  }
  EXPECT_EQ(result.ptr, text + std::strlen(text));
  EXPECT_EQ(shortest(value), "12345678901234567890");  // .5 rounds to the even neighbour
  EXPECT_EQ(commaResult.ptr, withComma + 1);
  EXPECT_EQ(shortest(commaValue), "2");
  EXPECT_EQ(shortest(parsed), "12345678901234567890");
}

std::string printed(long double value, std::chars_format format, int precision) {
  char buffer[400];
  const auto result =
      platform::longDoubleToChars(buffer, buffer + sizeof buffer, value, format, precision);
  EXPECT_EQ(result.ec, std::errc());
  return std::string(buffer, result.ptr);
}

std::string printed(double value, std::chars_format format, int precision) {
  char buffer[400];
  const auto result = std::to_chars(buffer, buffer + sizeof buffer, value, format, precision);
  return std::string(buffer, result.ptr);
}

TEST(LongDoubleToCharsTest, PrintsAPointUnderADecimalCommaLocale) {
  const qent::test::ScopedGermanLocale german;
  if (!german.active()) GTEST_SKIP() << "no German locale installed";
  EXPECT_EQ(printed(3.25L, std::chars_format::fixed, 6), "3.250000");
  EXPECT_EQ(printed(-3.25L, std::chars_format::scientific, 3), "-3.250e+00");
  EXPECT_EQ(printed(3.25L, std::chars_format::general, 6), "3.25");
  EXPECT_EQ(printed(12345678901234567890.0L, std::chars_format::fixed, 2),
            "12345678901234567890.00");
  EXPECT_EQ(printed(7.0L, std::chars_format::fixed, 0), "7");
  EXPECT_EQ(printed(-std::numeric_limits<long double>::infinity(), std::chars_format::fixed, 6),
            "-inf");
  EXPECT_EQ(qent::base::formatFixed6(0.5L), "0.500000");
}

// A double's value is exactly a long double's, and with a precision both print its exact
// decimal expansion rounded: long double must print what double prints, in any locale.
TEST(LongDoubleToCharsTest, PrintsWhatDoublePrintsForTheSameValue) {
  std::mt19937_64 random(7);
  std::uniform_real_distribution<double> mantissa(-10.0, 10.0);
  std::uniform_int_distribution<int> exponent(-30, 30);
  const qent::test::ScopedGermanLocale german;
  for (int i = 0; i < 3000; ++i) {
    const double value = std::ldexp(mantissa(random), exponent(random));
    for (const auto format : {std::chars_format::fixed, std::chars_format::scientific,
                              std::chars_format::general}) {
      const int precision = i % 12;
      ASSERT_EQ(printed(static_cast<long double>(value), format, precision),
                printed(value, format, precision))
          << "value " << printed(value, std::chars_format::scientific, 17);
    }
  }
}

}  // namespace
