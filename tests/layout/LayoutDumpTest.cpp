// LayoutDumpTest.cpp - the test dump and its parser agree on every field of the model.
#include "support/LayoutBuilders.h"
#include "support/LayoutDump.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace qent::test {
namespace {

using namespace qent::text::layout;

// Each text is in the canonical form the dump writes, so parse then dump must give it back.
class LayoutDumpRoundTrip : public ::testing::TestWithParam<const char*> {};

TEST_P(LayoutDumpRoundTrip, ParseThenDumpGivesTheTextBack) {
  EXPECT_EQ(dump(*parseDump(GetParam())), GetParam());
}

INSTANTIATE_TEST_SUITE_P(
    EveryField, LayoutDumpRoundTrip,
    ::testing::Values(
        "Content:node",
        "Content:node{Page{Line[0,0,10,5]{Word\"ab\"}}}",
        "Node#n1(@a=1,@b=\"x y\",&aux=2)",
        "Page(w=800,h=600,lang=de,index=3,angle=0.5,pfloat=2.25,pnum=7)",
        "Image#img\"scan 1.png\"",
        "Content:ocrx_table\"cell text\"{Glyph\"x\"}",
        "Fragment[-1,-2,3,4]",
        "Box", "Box:ocrx_table_cell", "Box:ocrx_box", "Box:ocrx_box(kind=22)",
        "Box:ocrx_box(kind=99)", "Box:my_area", "Box:content_area(kind=25)",
        "Line[1,2,3,4](asc=3,desc=1.5,gh=9)",
        "Word\"w\"(conf=90,size=12,family=\"DejaVu Sans\",style=2,weight=3,sens=0.5,angle=-90,"
        "entity=PER,poly=\"1 2;3 4\",base=\"0.5 -1e+300\",color=\"1 2 3\",bg=\"unset 4 5 6\","
        "checked=1,rejected=18446744073709551615)",
        "Glyph\"\\\"q\\\\\\n\"(conf=0)",
        "Picture[0,0,5,5](src=\"a/b.png\")",
        "Field\"\xC3\xA4\xE2\x82\xAC\"",
        "Word\"x\\x01\""));

TEST(LayoutDumpTest, AcceptsBlanksBetweenTokens) {
  EXPECT_EQ(dump(*parseDump("Page { Line [0, 0, 10, 5] { Word \"a\" , Word \"b\" } }")),
            "Page{Line[0,0,10,5]{Word\"a\",Word\"b\"}}");
}

TEST(LayoutDumpTest, RejectsMalformedText) {
  for (const char* bad : {"Pagee", "Page{", "Page{Word", "Word(conf=)", "Page[0,0,1,1]",
                          "Word\"a", "Page(conf=1)", "Image:x", "Word Word"}) {
    EXPECT_THROW(parseDump(bad), std::invalid_argument) << bad;
  }
}

TEST(LayoutDumpTest, BuildersAndParserMakeTheSameTree) {
  auto built = root(page(line(Rect{0, 0, 50, 10}, word(u"ab", Rect{0, 0, 20, 10}),
                              with(word(u"cd", Rect{25, 0, 25, 10}),
                                   [](Word& w) { w.setConfidence(80); }))),
                    image(u"p.png"), content(u"note", u"n"), box(7, Rect{1, 1, 1, 1}),
                    fragment<Field>(Rect{}), glyph(u"g", {}, 50));
  EXPECT_EQ(dump(*built),
            "Content:node{Page{Line[0,0,50,10]{Word[0,0,20,10]\"ab\",Word[25,0,25,10]\"cd\"("
            "conf=80)}},Image\"p.png\",Content:note\"n\",Box:ocrx_table[1,1,1,1],Field,Glyph\"g\"("
            "conf=50)}");
  EXPECT_EQ(dump(*parseDump(dump(*built))), dump(*built));
}

TEST(LayoutDumpTest, LayoutWithoutRootDumpsNull) {
  EXPECT_EQ(dump(Layout()), "null");
  EXPECT_EQ(dump(*parseLayout("Page")), "Page");
}

}  // namespace
}  // namespace qent::test
