// Utf8ValidationTest.cpp - the fast whole-document UTF-8 check agrees with utfcpp's own.
#include "base/Unicode.h"

#include <gtest/gtest.h>

#include <utf8.h>

#include <random>
#include <string>
#include <string_view>

namespace qent::base {
namespace {

std::size_t reference(std::string_view text) {
  const auto bad = utf8::find_invalid(text.begin(), text.end());
  return bad == text.end() ? std::string_view::npos
                           : static_cast<std::size_t>(bad - text.begin());
}

TEST(Utf8ValidationTest, AgreesWithUtfcppOnRandomText) {
  // Mostly ASCII with valid and broken multi-byte pieces, so runs of every length occur.
  const std::string pieces[] = {"a", "bcdefgh", "0123456789abcdef", "\xC3\xA4", "\xE2\x82\xAC",
                                "\xF0\x9F\x98\x80", "\xC3", "\x80", "\xED\xA0\x80", "\xC0\xAF",
                                "\xF4\x90\x80\x80", "\xFF", " "};
  std::mt19937 random(11);
  for (int round = 0; round < 20000; ++round) {
    std::string text;
    const int count = static_cast<int>(random() % 12);
    for (int i = 0; i < count; ++i) {
      // Broken pieces are rarer than valid ones, so many texts are valid throughout.
      const std::size_t pick = random() % 40;
      text += pieces[pick < 24 ? pick % 3 : pick < 36 ? 3 + pick % 3 : 6 + pick % 7];
    }
    ASSERT_EQ(findInvalidUtf8(text), reference(text)) << text;
  }
}

TEST(Utf8ValidationTest, FindsTheFirstBadByte) {
  EXPECT_EQ(findInvalidUtf8(""), std::string_view::npos);
  EXPECT_EQ(findInvalidUtf8("plain ascii text, longer than eight bytes"), std::string_view::npos);
  EXPECT_EQ(findInvalidUtf8("12345678\xC3\xA4" "9\xFF"), 11u);
  EXPECT_EQ(findInvalidUtf8("abc\xC3" "d"), 3u);
  EXPECT_EQ(findInvalidUtf8("\xE2\x82"), 0u);
}

}  // namespace
}  // namespace qent::base
