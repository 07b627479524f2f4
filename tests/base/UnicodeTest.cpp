// UnicodeTest.cpp - the conversion module: round trips, astral characters, bad input, and
// the fast whole-document UTF-8 check against utfcpp's own.
#include "base/Unicode.h"

#include <gtest/gtest.h>

#include <utf8.h>

#include <random>
#include <stdexcept>
#include <string_view>

namespace {

using namespace qent::base;

TEST(UnicodeTest, RoundTripsAllPlanes) {
  const std::string text = "Stra\xC3\x9F" "e \xE2\x82\xAC \xF0\x9F\x98\x80 \xE4\xB8\xAD";
  const std::u16string wide = utf8ToUtf16(text);
  EXPECT_EQ(wide, u"Straße € 😀 中");
  EXPECT_EQ(wide.size(), 13u) << "the emoji is a surrogate pair";
  EXPECT_EQ(utf16ToUtf8(wide), text);
}

TEST(UnicodeTest, RejectsInvalidInputWithItsPosition) {
  struct Case {
    std::string bytes;
    const char* message;
  };
  for (const Case& k : {Case{"ab\xFF", "invalid UTF-8 at byte 2"},
                        Case{"\xC3", "invalid UTF-8 at byte 0"},
                        Case{"ok\xED\xA0\x80", "invalid UTF-8 at byte 2"},
                        Case{"\xC0\xAF", "invalid UTF-8 at byte 0"}}) {
    try {
      utf8ToUtf16(k.bytes);
      ADD_FAILURE() << "accepted " << k.message;
    } catch (const std::invalid_argument& e) {
      EXPECT_STREQ(e.what(), k.message);
    }
  }
  EXPECT_THROW(utf16ToUtf8(std::u16string(1, char16_t(0xD800))), std::invalid_argument);
  EXPECT_THROW(utf16ToUtf8(std::u16string(u"a") + char16_t(0xDC00)), std::invalid_argument);
}

TEST(UnicodeTest, LenientConversionReplacesInsteadOfFailing) {
  EXPECT_EQ(utf8ToUtf16Lenient("a\xFF" "b"), u"a\uFFFDb");
  std::u16string broken = u"x";
  broken += char16_t(0xD800);
  broken += u"y";
  EXPECT_EQ(utf16ToUtf8Lenient(broken), "x\xEF\xBF\xBDy");
  EXPECT_EQ(utf16ToUtf8Lenient(u"😀"), "\xF0\x9F\x98\x80");
}

std::size_t reference(std::string_view text) {
  const auto bad = utf8::find_invalid(text.begin(), text.end());
  return bad == text.end() ? std::string_view::npos
                           : static_cast<std::size_t>(bad - text.begin());
}

TEST(UnicodeTest, AgreesWithUtfcppOnRandomText) {
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

TEST(UnicodeTest, FindsTheFirstBadByte) {
  EXPECT_EQ(findInvalidUtf8(""), std::string_view::npos);
  EXPECT_EQ(findInvalidUtf8("plain ascii text, longer than eight bytes"), std::string_view::npos);
  EXPECT_EQ(findInvalidUtf8("12345678\xC3\xA4" "9\xFF"), 11u);
  EXPECT_EQ(findInvalidUtf8("abc\xC3" "d"), 3u);
  EXPECT_EQ(findInvalidUtf8("\xE2\x82"), 0u);
}

}  // namespace
