// PlainTextWriterTest.cpp - trees (stated as dumps) to their plain reading text.
#include "layout/format/PlainTextWriter.h"

#include "layout/Layout.h"
#include "layout/Node.h"
#include "support/LayoutDump.h"

#include <gtest/gtest.h>

namespace {

using qent::text::layout::Layout;
using qent::text::layout::format::PlainTextWriter;

struct TextCase {
  const char* label;
  const char* tree;
  const char16_t* text;
};
void PrintTo(const TextCase& k, std::ostream* out) { *out << k.label; }

class PlainTextWriterTest : public ::testing::TestWithParam<TextCase> {};
TEST_P(PlainTextWriterTest, WritesTheReadingText) {
  const auto layout = qent::test::parseLayout(GetParam().tree);
  EXPECT_EQ(PlainTextWriter().write(*layout), GetParam().text);
}
INSTANTIATE_TEST_SUITE_P(
    Cases, PlainTextWriterTest,
    ::testing::Values(
        TextCase{"TwoLines", "Content:node{Page{Line{Word\"a\",Word\"b\"},Line{Word\"c\"}}}",
                 u"a b\nc\n"},
        TextCase{"PagesSeparatedByFormFeed",
                 "Content:node{Page{Line{Word\"a\"}},Page{Line{Word\"b\"}},Page}",
                 u"a\n\fb\n\f"},
        TextCase{"EmptyLineGivesLoneLineFeed", "Content:node{Page{Line}}", u"\n"},
        TextCase{"EmptyLayout", "Content:node", u""},
        TextCase{"LineTextWinsOverWords", "Page{Line\"whole\"{Word\"a\",Word\"b\"}}",
                 u"whole\n"},
        TextCase{"WordTextWinsOverGlyphs", "Line{Word\"ab\"{Glyph\"x\",Glyph\"y\"}}", u"ab\n"},
        TextCase{"GlyphsWithoutWordTextRunTogether", "Line{Word{Glyph\"a\",Glyph\"b\"}}",
                 u"ab\n"},
        TextCase{"TextOutsideLinesRunsOn",
                 "Page{Box:content_area{Word\"x\",Word\"y\"},Line{Word\"z\"}}", u"xyz\n"},
        TextCase{"BoxTextHidesItsLines", "Page{Box:ocr_carea\"block_1\"{Line{Word\"a\"}}}",
                 u"block_1"},
        TextCase{"ContentTextAndChildren",
                 "Content:node\"head \"{Content:x\"in \",Line{Word\"w\"}}", u"head in w\n"},
        TextCase{"BlankBetweenEveryChild", "Line{Word\"a\",Image\"i.png\",Word\"b\"}",
                 u"a  b\n"},
        TextCase{"NestedPagesCount", "Page{Line{Word\"a\"},Page{Line{Word\"b\"}}}",
                 u"a\n\fb\n"}));

TEST(PlainTextWriterTest, LayoutWithoutRootGivesEmptyText) {
  EXPECT_EQ(PlainTextWriter().write(Layout()), u"");
}

TEST(PlainTextWriterTest, WriterCanBeUsedAgain) {
  PlainTextWriter writer;
  const auto layout = qent::test::parseLayout("Content:node{Page{Line{Word\"a\"}},Page}");
  EXPECT_EQ(writer.write(*layout), u"a\n\f");
  EXPECT_EQ(writer.write(*layout), u"a\n\f");
}

}  // namespace
