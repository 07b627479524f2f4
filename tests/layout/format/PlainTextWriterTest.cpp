// PlainTextWriterTest.cpp - trees (stated as dumps) to their plain reading text.
#include "layout/format/PlainTextWriter.h"

#include "layout/Layout.h"
#include "layout/Node.h"
#include "support/LayoutDump.h"

#include <gtest/gtest.h>

namespace {

using qent::text::layout::Layout;
using qent::text::layout::format::PlainTextWriter;

TEST(PlainTextWriterTest, WritesTheReadingText) {
  const std::pair<const char*, const char16_t*> cases[] = {
      {"Content:node{Page{Line{Word\"a\",Word\"b\"},Line{Word\"c\"}}}", u"a b\nc\n"},
      {"Content:node{Page{Line{Word\"a\"}},Page{Line{Word\"b\"}},Page}", u"a\n\fb\n\f"},
      {"Content:node{Page{Line}}", u"\n"},
      {"Page{Line\"whole\"{Word\"a\",Word\"b\"}}", u"whole\n"},
      {"Line{Word\"ab\"{Glyph\"x\",Glyph\"y\"}}", u"ab\n"},
      {"Line{Word{Glyph\"a\",Glyph\"b\"}}", u"ab\n"},
      // Text outside lines runs on; a box's own text hides its lines.
      {"Page{Box:content_area{Word\"x\",Word\"y\"},Line{Word\"z\"}}", u"xyz\n"},
      {"Page{Box:ocr_carea\"block_1\"{Line{Word\"a\"}}}", u"block_1"},
      {"Content:node\"head \"{Content:x\"in \",Line{Word\"w\"}}", u"head in w\n"},
      {"Line{Word\"a\",Image\"i.png\",Word\"b\"}", u"a  b\n"},
      {"Page{Line{Word\"a\"},Page{Line{Word\"b\"}}}", u"a\n\fb\n"}};
  PlainTextWriter writer;  // used again for every case
  for (const auto& [tree, text] : cases) {
    EXPECT_EQ(writer.write(*qent::test::parseLayout(tree)), text) << tree;
  }
  EXPECT_EQ(writer.write(Layout()), u"");
}

}  // namespace
