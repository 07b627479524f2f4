// UnicodeTest.cpp - the conversion module: round trips, astral characters, bad input.
#include "base/Unicode.h"

#include <gtest/gtest.h>

#include <stdexcept>

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

TEST(UnicodeTest, AsciiCaseFolding) {
  EXPECT_TRUE(equalsIgnoreAsciiCase("HoCr", "hocr"));
  EXPECT_FALSE(equalsIgnoreAsciiCase("hocr", "hoc"));
  EXPECT_EQ(toLowerAscii("WebAnno"), "webanno");
}

}  // namespace
