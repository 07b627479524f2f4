// JSONWriterTest.cpp - the members the JSON layout writer emits, their conditions and order.
#include "layout/format/JSONWriter.h"

#include "layout/Layout.h"
#include "layout/Nodes.h"
#include "support/LayoutBuilders.h"
#include "support/LayoutDump.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <string>

namespace qent::test {
namespace {

using namespace qent::text::layout;
using qent::text::layout::format::JSONWriter;

std::string written(const std::string& tree) {
  auto node = parseDump(tree);
  return JSONWriter().writeNode(*node);
}

struct WriteCase {
  const char* name;
  const char* tree;
  const char* json;
};

class JSONWriterMembers : public ::testing::TestWithParam<WriteCase> {};

TEST_P(JSONWriterMembers, WritesTheNodeObject) {
  EXPECT_EQ(written(GetParam().tree), GetParam().json);
}

INSTANTIATE_TEST_SUITE_P(
    Rules, JSONWriterMembers,
    ::testing::Values(
        WriteCase{"GenericNode", "Node", R"({"type":"node"})"},
        WriteCase{"RootWithIdAndAttributes", "Content#r:node(@b=2,@a=1){Page}",
                  R"({"attributes":{"a":"1","b":"2"},"children":[{"index_in_layout":0,"type":"page"}],"id":"r","type":"node"})"},
        WriteCase{"PlainFragment", "Fragment\"t\"", R"({"text":"t","type":"fragment"})"},
        WriteCase{"AllZeroRectangleWritesNoGeometry", "Word\"a\"",
                  R"({"text":"a","type":"word"})"},
        WriteCase{"OneNonZeroSideWritesAllFour", "Word[0,0,0,5]\"a\"",
                  R"({"height":5,"left":0,"text":"a","top":0,"type":"word","width":0})"},
        WriteCase{"NegativeCoordinates", "Line[-3,-4,10,2]",
                  R"({"height":2,"left":-3,"top":-4,"type":"line","width":10})"},
        WriteCase{"UnsetConfidenceWithoutGlyphs", "Word\"a\"(conf=-1)",
                  R"({"text":"a","type":"word"})"},
        WriteCase{"ZeroConfidenceIsWritten", "Glyph\"a\"(conf=0)",
                  R"({"confidence":0.0,"text":"a","type":"glyph"})"},
        WriteCase{"GlyphMeanConfidenceButNoGlyphs",
                  "Word\"ab\"{Glyph\"a\"(conf=80),Glyph\"b\"(conf=91),Glyph\"c\"}",
                  R"({"confidence":85.5,"text":"ab","type":"word"})"},
        WriteCase{"WordWithoutTextTakesContentTexts",
                  "Word{Glyph\"g\",Content:x\"A\"{Content:y\"B\"},Content:z\"C\"}",
                  R"({"text":"ABC","type":"word"})"},
        WriteCase{"LineWritesWordsButNotGlyphs", "Line{Word\"a\"{Glyph\"a\"}}",
                  R"({"children":[{"text":"a","type":"word"}],"type":"line"})"},
        WriteCase{"Fonts", "Word(family=\"Noto Serif\",size=10.5,style=2,weight=3)",
                  R"({"font_family":"Noto Serif","font_size":10.5,"font_style":"italic","font_weight":"bold","type":"word"})"},
        WriteCase{"UnknownFontCodesWriteEmptyNames", "Glyph(style=4,weight=9,size=0)",
                  R"({"font_size":0.0,"font_style":"","font_weight":"","type":"glyph"})"},
        WriteCase{"FontNames", "Line{Glyph(style=1,weight=1),Glyph(style=3,weight=2)}",
                  R"({"children":[{"font_style":"normal","font_weight":"light","type":"glyph"},{"font_style":"oblique","font_weight":"normal","type":"glyph"}],"type":"line"})"},
        WriteCase{"ColoursOnlyWithTheirFlags", "Glyph(color=\"1 2 3\",bg=\"unset 4 5 6\")",
                  R"({"color_rgb":[1,2,3],"type":"glyph"})"},
        WriteCase{"BackgroundColour", "Glyph(bg=\"255 0 7\")",
                  R"({"backgr_color_rgb":[255,0,7],"type":"glyph"})"},
        WriteCase{"PolygonBaselineAngle", "Line(poly=\"1 2;-3 4\",base=\"0.5 -2\",angle=90)",
                  R"({"baseline":[0.5,-2.0],"polygon":[[1,2],[-3,4]],"textangle":90.0,"type":"line"})"},
        WriteCase{"EntityJoinsTheAttributes", "Glyph(entity=PER,@z=1,@a=2)",
                  R"({"attributes":{"a":"2","x_entity":"PER","z":"1"},"type":"glyph"})"},
        WriteCase{"LineExtremesAsAttributes", "Line(asc=3,desc=0,gh=12.5)",
                  R"({"attributes":{"max_ascenders":3.0,"max_glyph_height":12.5},"type":"line"})"},
        WriteCase{"LineWithoutExtremesHasNoAttributes", "Line", R"({"type":"line"})"},
        WriteCase{"WordMarksAsAttributes", "Word\"w\"(checked=1,rejected=7,sens=0.25)",
                  R"({"attributes":{"x_checked":1.0,"x_rejected":7.0,"x_sensibility":0.25},"text":"w","type":"word"})"},
        WriteCase{"NonPositiveSensibilityIsNotWritten", "Word(sens=-1)", R"({"type":"word"})"},
        WriteCase{"FieldsReplaceAttributesOfTheSameName",
                  "Line(asc=3,@max_ascenders=old,@m=x)",
                  R"({"attributes":{"m":"x","max_ascenders":3.0},"type":"line"})"},
        WriteCase{"Box", "Box:ocrx_table[1,2,3,4]{Box}",
                  R"({"children":[{"type":"content_area"}],"height":4,"left":1,"top":2,"type":"ocrx_table","width":3})"},
        WriteCase{"CustomBox", "Box:my_area", R"({"type":"my_area"})"},
        WriteCase{"Field", "Field\"f\"", R"({"text":"f","type":"formfield"})"},
        WriteCase{"Picture", "Picture[0,0,5,5](src=\"a.png\")",
                  R"({"attributes":{"image_source":"a.png"},"height":5,"left":0,"top":0,"type":"image_fragment","width":5})"},
        WriteCase{"Page",
                  "Page(w=800,h=600,lang=de,index=3,angle=-1.5,pfloat=2,pnum=9){Image\"p.png\"}",
                  R"({"children":[{"image":"p.png","type":"image"}],"height":600,"index_in_layout":3,"language":"de","textangle":-1.5,"type":"page","width":800})"},
        WriteCase{"EmptyPage", "Page", R"({"index_in_layout":0,"type":"page"})"},
        WriteCase{"ImageWithoutName", "Image", R"({"image":"","type":"image"})"},
        WriteCase{"Content", "Content:ocrx_table\"cell\"{Word\"w\"}",
                  R"({"children":[{"text":"w","type":"word"}],"text":"cell","type":"ocrx_table"})"},
        WriteCase{"EscapesAndUnicode", "Word\"\\\"\\\\\\n\xC3\xA4\xF0\x9F\x98\x80\"",
                  "{\"text\":\"\\\"\\\\\\n\xC3\xA4\xF0\x9F\x98\x80\",\"type\":\"word\"}"},
        WriteCase{"Numbers", "Line(asc=1e+21,desc=1e-07,gh=0.1)",
                  R"({"attributes":{"max_ascenders":1e21,"max_descenders":1e-7,"max_glyph_height":0.1},"type":"line"})"}),
    [](const auto& testCase) { return std::string(testCase.param.name); });

TEST(JSONWriterTest, AttributeKeysFollowUtf8ByteOrder) {
  // U+FF01 sorts before U+10000 in UTF-16 code units but after it in UTF-8 bytes.
  auto node = parseDump("Node(@\"\xEF\xBC\x81\"=a,@\"\xF0\x90\x80\x80\"=b)");
  EXPECT_EQ(JSONWriter().writeNode(*node),
            "{\"attributes\":{\"\xEF\xBC\x81\":\"a\",\"\xF0\x90\x80\x80\":\"b\"},\"type\":\"node\"}");
}

TEST(JSONWriterTest, WritesTheDocumentAroundTheRoot) {
  auto layout = parseLayout("Content:node{Page{Word[1,1,1,1]\"x\"}}");
  EXPECT_EQ(JSONWriter().write(*layout),
            R"({"root":{"children":[{"children":[{"height":1,"left":1,"text":"x","top":1,"type":"word","width":1}],"index_in_layout":0,"type":"page"}],"type":"node"}})");
  EXPECT_EQ(JSONWriter().write(Layout()), "{}");
}

TEST(JSONWriterTest, EmbedsASubtreeInAnotherDocument) {
  auto node = parseDump("Word\"a\"");
  rapidjson::StringBuffer buffer;
  JSONWriter::Output out(buffer);
  out.StartObject();
  out.Key("left");
  JSONWriter writer;
  writer.writeNode(*node, out);
  out.Key("list");
  out.StartArray();
  writer.writeNode(*node, out);
  writer.writeNode(*node, out);
  out.EndArray();
  out.EndObject();
  EXPECT_TRUE(out.IsComplete());
  EXPECT_STREQ(buffer.GetString(),
               R"({"left":{"text":"a","type":"word"},"list":[{"text":"a","type":"word"},{"text":"a","type":"word"}]})");
}

TEST(JSONWriterTest, NumbersIgnoreTheProcessLocale) {
  const std::string before = std::setlocale(LC_ALL, nullptr);
  if (std::setlocale(LC_ALL, "de_DE.UTF-8") == nullptr &&
      std::setlocale(LC_ALL, "de_DE") == nullptr) {  // the Windows C runtime's name
    GTEST_SKIP() << "the de_DE.UTF-8 locale is not installed";
  }
  const std::string json = written("Word(conf=85.5,size=10.25)");
  std::setlocale(LC_ALL, before.c_str());
  EXPECT_EQ(json, R"({"confidence":85.5,"font_size":10.25,"type":"word"})");
}

TEST(JSONWriterTest, RefusesWhatJsonCannotHold) {
  auto check = [](std::unique_ptr<Node> node, const std::string& member) {
    try {
      JSONWriter().writeNode(*node);
      ADD_FAILURE() << "written";
    } catch (const std::invalid_argument& e) {
      EXPECT_NE(std::string(e.what()).find("\"" + member + "\""), std::string::npos) << e.what();
    }
  };
  check(word(std::u16string(1, u'\xD800')), "text");
  check(with(word(u"a"), [](Word& w) { w.setTextangle(std::nan("")); }), "textangle");
  check(with(word(u"a"), [](Word& w) { w.setConfidence(std::numeric_limits<double>::infinity()); }),
        "confidence");
  check(with(word(u"a"), [](Word& w) { w.setXEntity("\xFF"); }), "x_entity");
  check(with(line(Rect{}), [](Line& l) { l.setMaxAscenders(-std::numeric_limits<double>::infinity()); }),
        "max_ascenders");
  auto page = std::make_unique<Page>();
  page->setLanguage("\xC3");
  check(std::move(page), "language");
}

}  // namespace
}  // namespace qent::test
