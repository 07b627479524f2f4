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
  std::errc ec;         // on an error the value is left alone
  const char* shortest; // the value, as to_chars prints it (taken from glibc's reading)
};
std::string shortest(long double value) {
  char buffer[64];
  const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
  return std::string(buffer, result.ptr);
}

// Read under a German locale: an application may have set a decimal comma, and the point
// must still separate decimals and a comma still end the number.
TEST(LongDoubleFromCharsTest, ReadsLikeGlibcInAnyLocale) {
  constexpr std::errc kOk{}, kRange = std::errc::result_out_of_range,
                      kInvalid = std::errc::invalid_argument;
  const ReadCase cases[] = {
      // More digits than a double holds, beyond a double's range, both ends of long
      // double's own range.
      {"12345678901234567890", 20, kOk, "12345678901234567890"},
      {"3.14159265358979323846264338327950288", 37, kOk, "3.1415926535897932385"},
      {"0.1", 3, kOk, "0.1"}, {"1e400", 5, kOk, "1e+400"}, {"-2.5e-4000", 10, kOk, "-2.5e-4000"},
      {"1.18973149535723176502e+4932", 28, kOk, "1.189731495357231765e+4932"},
      {"1.2e4932", 8, kRange, ""}, {"1e5000", 6, kRange, ""}, {"1e-5000", 7, kRange, ""},
      {"1e-4940", 7, kRange, ""},
      // Where the number ends; .5 rounds to the even neighbour.
      {"12345678901234567890.5", 22, kOk, "12345678901234567890"}, {"2,5", 1, kOk, "2"},
      {"1.5e", 3, kOk, "1.5"}, {"00012.50x", 8, kOk, "12.5"}, {".5", 2, kOk, "0.5"},
      {"inf", 3, kOk, "inf"}, {"-inf", 4, kOk, "-inf"}, {"-1e-4000", 8, kOk, "-1e-4000"},
      // Not a number at all.
      {"", 0, kInvalid, ""}, {"x1", 0, kInvalid, ""}, {".", 0, kInvalid, ""},
      {"e5", 0, kInvalid, ""}, {"+1", 0, kInvalid, ""}};
  const qent::test::ScopedGermanLocale german;
  if (!german.active()) GTEST_SKIP() << "no German locale installed";
  for (const ReadCase& k : cases) {
    long double value = -7;
    const auto result = platform::longDoubleFromChars(k.text, k.text + std::strlen(k.text), value);
    EXPECT_EQ(static_cast<std::size_t>(result.ptr - k.text), k.used) << k.text;
    EXPECT_EQ(result.ec, k.ec) << k.text;
    if (k.ec == std::errc()) {
      EXPECT_EQ(shortest(value), k.shortest) << k.text;
      EXPECT_EQ(shortest(qent::base::parseLongDouble(k.text)), k.shortest) << k.text;
    } else {
      EXPECT_EQ(value, -7) << k.text;
    }
  }
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

// Values a double cannot hold, under a decimal-comma locale; the rest is compared with
// double below.
TEST(LongDoubleToCharsTest, PrintsAPointUnderADecimalCommaLocale) {
  const qent::test::ScopedGermanLocale german;
  if (!german.active()) GTEST_SKIP() << "no German locale installed";
  EXPECT_EQ(printed(12345678901234567890.0L, std::chars_format::fixed, 2),
            "12345678901234567890.00");
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
