// JSONFormatTest.cpp - the JSON layout format: what the reader builds and refuses, what the
// writer emits, golden documents, random round trips and the JSON conformance suite.
#include "layout/format/JSONReader.h"
#include "layout/format/JSONWriter.h"

#include "base/QentException.h"
#include "layout/FaithfulCopier.h"
#include "layout/Layout.h"
#include "layout/LayoutLimits.h"
#include "layout/Nodes.h"
#include "support/GermanLocale.h"
#include "support/Golden.h"
#include "support/LayoutDump.h"
#include "support/RandomDump.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <functional>
#include <limits>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

namespace qent::test {
namespace {

using namespace qent::text::layout;
using qent::text::layout::format::JSONReader;
using qent::text::layout::format::JSONWriter;
using ::testing::HasSubstr;
using ::testing::ThrowsMessage;

std::string readRoot(const std::string& rootObject) {
  return dump(*JSONReader().read("{\"root\":" + rootObject + "}"));
}
std::string written(const std::string& tree) { return JSONWriter().writeNode(*parseDump(tree)); }
std::string roundTrip(const std::string& json) {
  return JSONWriter().write(*JSONReader().read(json));
}

struct Case {
  std::string input;
  std::string expected;
};

// The golden document below carries every member once; these are the rules it cannot show.
TEST(JSONReaderTest, BuildsTheTree) {
  const Case cases[] = {
      {R"({"type":"node","children":[{"type":"fragment","text":"f","left":1,"top":1,"width":1,"height":1},{"type":"ocrx_table","text":"t"},{"type":"Word"},{"type":""}]})",
       "Content:node{Content:fragment\"f\",Content:ocrx_table\"t\",Content:Word,Content}"},
      {R"({"type":"node","attributes":{"i":3,"f":1.5,"n":-0.25,"e":1e2,"big":12345678901234567890,"tiny":-1e-7,"s":"3","z":null,"a":1e-400,"b":-1e-5000}})",
       "Content:node(@a=0.000000,@b=-0.000000,@big=12345678901234567890.000000,@e=100.000000,"
       "@f=1.500000,@i=3.000000,@n=-0.250000,@s=3,@tiny=-0.000000)"},
      {R"({"type":"page","attributes":{"baseline_coefficients":[1]},"children":[{"type":"line","attributes":{"baseline_coefficients":[0.5,-1],"k":"v"}}]})",
       "Page{Line(base=\"0.5 -1\",@k=v)}"},
      {R"({"type":"word","left":10.9,"top":-3.7,"width":0,"height":5,"font_style":"oblique","font_weight":"light","color_rgb":[1,2,3.9]})",
       "Word[10,-3,0,5](style=3,weight=1,color=\"1 2 3\")"},
      // Members of the wrong kind or out of their names' range are left out.
      {R"({"type":"word","text":5,"left":"3","children":{"type":"glyph"},"attributes":[1],"confidence":null,"polygon":{},"id":true,"font_family":["x"],"font_style":"bold","font_weight":"heavy","color_rgb":[1,2],"backgr_color_rgb":[1,2,3,4]})",
       "Word"},
      {R"({"type":"glyph","text":"a","text":"b","type":"word","children":[{"type":"glyph"}],"children":[],"left":1,"left":"x"})",
       "Word\"b\""},
      {R"({"type":"page","foo":{"type":"word","children":[[[{"a":[]}]]]},"bar":[{"type":"x"}],"children":[{"type":"word","baz":null}]})",
       "Page{Word}"},
      {R"({"type":"line","attributes":{"max_ascenders":3,"max_descenders":"2","max_glyph_height":1.5},"max_descenders":7})",
       "Line(asc=3,desc=7,gh=1.5,@max_descenders=2)"},
      {R"({"type":"word","attributes":{"x_checked":1.0,"x_rejected":18446744073709549568,"x_sensibility":0.5,"x_entity":"LOC"}})",
       "Word(sens=0.5,entity=LOC,checked=1,rejected=18446744073709549568)"},
      {R"({"type":"word","x_checked":2,"x_rejected":3,"x_sensibility":0.25,"textangle":5})",
       "Word(sens=0.25,angle=5,checked=2,rejected=3)"},
      {R"({"type":"glyph","attributes":{"x_checked":1,"max_ascenders":2,"image_source":"s"}})",
       "Glyph(@image_source=s,@max_ascenders=2.000000,@x_checked=1.000000)"},
      {R"({"type":"ocrx_table","id":"t","text":"x","left":5,"confidence":9,"attributes":{"x_entity":"E"}})",
       "Content#t:ocrx_table\"x\"(@x_entity=E)"},
      {"{\"type\":\"word\",\"text\":\"\\\"\\u00e4\\ud83d\\ude00\xE2\x82\xAC\"}",
       "Word\"\\\"\xC3\xA4\xF0\x9F\x98\x80\xE2\x82\xAC\""},
      {R"({"type":"word","confidence":1e-400,"left":-1e-999})", "Word(conf=0)"}};
  for (const Case& c : cases) EXPECT_EQ(readRoot(c.input), c.expected) << c.input;
  EXPECT_EQ(dump(*JSONReader().read("\xEF\xBB\xBF \n{\"root\":{\"type\":\"node\"}}\r\n\t ")),
            "Content:node");
  EXPECT_EQ(dump(*JSONReader().read(R"({"x":1,"root":{"type":"a"},"y":[],"root":{"type":"b"}})")),
            "Content:b")
      << "the last root object wins";
}

std::string nested(const std::string& open, const std::string& close, std::size_t levels,
                   const std::string& inner = "") {
  std::string text;
  for (std::size_t i = 0; i < levels; ++i) text += open;
  text += inner;
  for (std::size_t i = 0; i < levels; ++i) text += close;
  return text;
}

// Code 0 stands for std::invalid_argument, which the C interface reports as undefined.
TEST(JSONReaderTest, RefusesBadInputWithTheDocumentedError) {
  const std::string notJson = "Failed to parse JSON layout";
  const std::string fault = notJson + ": ";
  const std::string noRoot = "Root node is not found", noType = "Type attribute is not found";
  const std::string attribute = "Invalid Attribute Format. Only Number and String are supported.";
  const std::string rectangle = "Width or Height of Rectangle must be > 0";
  const std::string child = fault + "an element of \"children\" is not a node object";
  const std::string point = fault + "a point of \"polygon\" is not an array of two numbers";
  const std::string tooDeep = fault + "nodes nested deeper than 1000 levels";
  const std::string valuesTooDeep = fault + "values nested deeper than 2064 levels";
  auto range = [&](const std::string& number, const std::string& member) {
    return fault + "the number " + number + " of \"" + member + "\" is out of range";
  };
  struct Bad {
    std::string json, message;
    unsigned code = 20039;
  };
  const Bad cases[] = {
      // Plain syntax errors are the conformance suite's; these are the reader's own checks.
      {std::string("{\"root\":{\"type\":\"node\"}}\0x", 27), notJson},
      {std::string("{\"root\":{\"type\":\"no\0de\"}}", 25), notJson},
      {"{\"root\":{\"type\":\"word\",\"text\":\"\xC0\xAF\"}}", notJson},
      {R"({"root":{"type":"word","text":"\udc00"}})", notJson},
      // The parser takes no number beyond the range of a double.
      {"{\"root\":{\"type\":\"word\",\"top\":" + std::string(400, '9') + "}}", notJson},
      {"{}", noRoot},
      {R"({"root":"node"})", noRoot},
      {R"({"root":{}})", noType},
      {R"({"root":{"type":"node","type":5}})", noType},
      {R"({"root":{"type":"node","children":[{"text":"a"}]}})", noType},
      {R"({"root":{"type":"node","attributes":{"a":true}}})", attribute, 0},
      {R"({"root":{"type":"line","attributes":{"baseline_coefficients":[1,"2"]}}})", attribute, 0},
      {R"({"root":{"type":"word","width":-1}})", rectangle, 0},
      {R"({"root":{"type":"content_area","height":-2.5}})", rectangle, 0},
      {R"({"root":{"type":"node","children":[{"type":"page"},5]}})", child},
      {R"({"root":{"type":"line","polygon":[[1,2,3]]}})", point},
      {R"({"root":{"type":"line","polygon":[1,2]}})", point},
      {R"({"root":{"type":"line","baseline":[1,[2]]}})",
       fault + "\"baseline\" holds a value that is not a number"},
      {R"({"root":{"type":"word","color_rgb":[1,"2",3]}})",
       fault + "a component of \"color_rgb\" is not a number"},
      {R"({"root":{"type":"word","backgr_color_rgb":[1,256,3]}})", range("256", "backgr_color_rgb")},
      {R"({"root":{"type":"word","left":2147483648}})", range("2147483648", "left")},
      {R"({"root":{"type":"word","polygon":[[0,-3e9]]}})", range("-3e+09", "polygon")},
      {R"({"root":{"type":"word","x_checked":-1}})", range("-1", "x_checked")},
      // Just above the largest double: the parser lets it through, the conversion not.
      {R"({"root":{"type":"word","confidence":1.8e308}})", range("1.8e308", "confidence")},
      {"{\"root\":{\"type\":\"word\",\"font_size\":1.8" + std::string(60, '0') + "e308}}",
       fault + "the number 1.8" + std::string(37, '0') + "... of \"font_size\" is out of range"},
      {"{\"root\":" + nested(R"({"type":"node","children":[)", "]}", kMaxLayoutDepth,
                               R"({"type":"word"})") + "}", tooDeep},
      {"{\"root\":" + nested(R"({"type":"node","children":[)", "]}", 100000) + "}", tooDeep},
      {R"({"root":{"type":"node","x":)" + nested("[", "]", 100000) + "}}", valuesTooDeep},
      {nested("{\"a\":", "", 100000), valuesTooDeep}};
  for (const Bad& c : cases) {
    const std::string shown = c.json.substr(0, 80);
    try {
      JSONReader().read(c.json);
      ADD_FAILURE() << "read without error: " << shown;
    } catch (const std::exception& e) {
      const auto* qent = dynamic_cast<const base::QentException*>(&e);
      EXPECT_EQ(qent != nullptr ? qent->code() : 0u, c.code) << shown;
      EXPECT_EQ(e.what(), c.message) << shown;
    }
  }
}

// Unset values, zero sizes and box kinds are the golden document's.
TEST(JSONWriterTest, WritesTheConditionalMembers) {
  const Case cases[] = {
      {"Word\"ab\"{Glyph\"a\"(conf=80),Glyph\"b\"(conf=91),Glyph\"c\"}",
       R"({"confidence":85.5,"text":"ab","type":"word"})"},
      {"Word{Glyph\"g\",Content:x\"A\"{Content:y\"B\"},Content:z\"C\"}",
       R"({"text":"ABC","type":"word"})"},
      {"Glyph(style=4,weight=9,size=0)",
       R"({"font_size":0.0,"font_style":"","font_weight":"","type":"glyph"})"},
      {"Glyph(color=\"1 2 3\",bg=\"unset 4 5 6\")", R"({"color_rgb":[1,2,3],"type":"glyph"})"},
      {"Line(asc=3,@max_ascenders=old,@m=x)",
       R"({"attributes":{"m":"x","max_ascenders":3.0},"type":"line"})"},
      {"Word\"\\\"\\\\\\n\\x01\"", R"({"text":"\"\\\n\u0001","type":"word"})"},
      {"Line(asc=1e+21,desc=1e-07,gh=0.1)",
       R"({"attributes":{"max_ascenders":1e21,"max_descenders":1e-7,"max_glyph_height":0.1},"type":"line"})"},
      // U+FF01 sorts before U+10000 in UTF-16 code units but after it in UTF-8 bytes.
      {"Node(@\"\xEF\xBC\x81\"=a,@\"\xF0\x90\x80\x80\"=b)",
       "{\"attributes\":{\"\xEF\xBC\x81\":\"a\",\"\xF0\x90\x80\x80\":\"b\"},\"type\":\"node\"}"}};
  for (const Case& c : cases) EXPECT_EQ(written(c.input), c.expected) << c.input;
  EXPECT_EQ(JSONWriter().write(Layout()), "{}");
}

TEST(JSONWriterTest, RefusesWhatJsonCannotHold) {
  const double inf = std::numeric_limits<double>::infinity();
  const std::pair<std::function<void(Line&)>, const char*> cases[] = {
      {[](Line& l) { l.setText(std::u16string(1, u'\xD800')); }, "text"},
      {[](Line& l) { l.setTextangle(std::nan("")); }, "textangle"},
      {[&](Line& l) { l.setConfidence(inf); }, "confidence"},
      {[](Line& l) { l.setXEntity("\xFF"); }, "x_entity"},
      {[&](Line& l) { l.setMaxAscenders(-inf); }, "max_ascenders"}};
  for (const auto& [spoil, member] : cases) {
    Line line;
    spoil(line);
    EXPECT_THAT([&] { JSONWriter().writeNode(line); },
                ThrowsMessage<std::invalid_argument>(HasSubstr("\"" + std::string(member) + "\"")));
  }
  Page page;
  page.setLanguage("\xC3");
  EXPECT_THROW(JSONWriter().writeNode(page), std::invalid_argument);
}

TEST(JSONFormatTest, NumbersIgnoreTheProcessLocale) {
  ScopedGermanLocale german;
  if (!german.active()) GTEST_SKIP() << "no German locale is installed";
  EXPECT_EQ(written("Word(conf=85.5,size=10.25)"),
            R"({"confidence":85.5,"font_size":10.25,"type":"word"})");
  EXPECT_EQ(readRoot(R"({"type":"word","confidence":2.5,"attributes":{"n":3.25}})"),
            "Word(conf=2.5,@n=3.250000)");
}

TEST(JSONFormatTest, RandomTreesSurviveRoundTrips) {
  std::mt19937 random(1);
  for (int round = 1; round <= 400; ++round) {
    const std::string faithful = randomDump(random, RandomTrees::JsonFaithful);
    const std::string json = JSONWriter().write(*parseLayout(faithful));
    ASSERT_EQ(roundTrip(json), json) << faithful;
    // Whatever the writer drops, it drops in the first round trip.
    const std::string any = randomDump(random);
    const auto tree = parseLayout(any);
    // The faithful copy keeps every class and field of any tree.
    ASSERT_EQ(dump(*FaithfulCopier::copy(*tree->root())), dump(*tree->root())) << any;
    const std::string once = roundTrip(JSONWriter().write(*tree));
    ASSERT_EQ(roundTrip(once), once) << any;
  }
}

// Every member the format knows, once.
const char* const kAllMembers =
    "Content#doc:node(@producer=test){Image\"page1.png\",Page#p1(w=2480,h=3508,lang=de,"
    "index=0,angle=0.5){Box#b1[100,200,2000,300](conf=93,@x_entity=ignored){Line#l1[100,200,"
    "900,40](asc=30,desc=8,gh=38,base=\"0.01 -2.5\",@style=\"heading 1\"){Word#w1[100,200,400,"
    "40]\"Rechnung\"(size=12,family=\"DejaVu Serif\",style=1,weight=3,color=\"0 0 0\",bg=\"255 "
    "255 255\",entity=B-MISC,checked=1,sens=0.75){Glyph\"R\"(conf=96)},Word#w2[520,200,480,"
    "40]\"Nr.\xC3\xA4\"(conf=88.25,rejected=2,poly=\"520 200;1000 200;1000 240;520 240\"),Word{"
    "Content:ocrx_cinfo\"17\"}}},Box:ocrx_table[100,600,2000,900]\"table\"{Field[120,620,300,"
    "50]\"field\"},Picture#pic[100,1600,800,600](src=\"figure 1.png\",angle=90),Fragment[1,1,1,"
    "1],Glyph[0,0,0,5]\"x\"(conf=0),Content:ocrx_note\"note\",Node#n}}";

TEST(JSONFormatTest, GoldenDocumentOfEveryMember) {
  expectGolden("json/all-members.json", JSONWriter().write(*parseLayout(kAllMembers)));
  const std::string json = readTestData("json/all-members.json");
  // The other box kind and the plain fragment come back as contents without geometry;
  // containers take their glyphs' mean confidence; the rest comes back unchanged.
  expectGolden("json/all-members.read.txt", dump(*JSONReader().read(json)));
  const std::string once = roundTrip(json);
  EXPECT_EQ(roundTrip(once), once);
}

// A document as a person or another tool might write it: blanks, members in any order,
// numbers in attributes, members the reader does not know.
TEST(JSONFormatTest, GoldenHandMadeDocument) {
  auto layout = JSONReader().read(readTestData("json/hand-made.json"));
  EXPECT_EQ(layout->format(), 4u);
  expectGolden("json/hand-made.read.txt", dump(*layout));
  expectGolden("json/hand-made.written.json", JSONWriter().write(*layout));
}

// None of the conformance suite's documents is a layout: valid JSON with an object on top
// lacks a root, everything else is not a layout document at all.
TEST(JSONFormatTest, AnswersEveryDocumentOfTheConformanceSuite) {
  int files = 0;
  for (const auto& entry :
       std::filesystem::directory_iterator(testData("third_party/json-test-suite"))) {
    if (entry.path().extension() != ".json") continue;
    ++files;
    const std::string name = entry.path().filename().string();
    const std::string json = readAll(entry.path());
    std::string message = "read";
    try {
      JSONReader().read(json);
    } catch (const std::exception& e) {
      message = e.what();
    }
    const std::size_t first = json.find_first_not_of(" \t\r\n");
    const bool object = first != std::string::npos && json[first] == '{';
    const std::string noRoot = "Root node is not found", notJson = "Failed to parse JSON layout";
    const char kind = name[0];
    EXPECT_TRUE(kind == 'y' ? message == (object ? noRoot : notJson)
                            : message == notJson || (kind == 'i' && message == noRoot))
        << name << ": " << message;
  }
  EXPECT_GT(files, 300);
}

}  // namespace
}  // namespace qent::test
