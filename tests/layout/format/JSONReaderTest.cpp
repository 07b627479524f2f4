// JSONReaderTest.cpp - JSON layout documents to trees: node kinds, members, attribute
// numbers, and every kind of bad input.
#include "layout/format/JSONReader.h"

#include "base/QentException.h"
#include "layout/Layout.h"
#include "layout/LayoutLimits.h"
#include "support/LayoutDump.h"

#include <gtest/gtest.h>

#include <clocale>
#include <stdexcept>
#include <string>

namespace qent::test {
namespace {

using namespace qent::text::layout;
using qent::text::layout::format::JSONReader;

std::string readRoot(const std::string& rootObject) {
  return dump(*JSONReader().read("{\"root\":" + rootObject + "}"));
}

struct ReadCase {
  const char* name;
  const char* root;  // the value of "root"
  const char* tree;  // its dump
};

class JSONReaderMembers : public ::testing::TestWithParam<ReadCase> {};

TEST_P(JSONReaderMembers, BuildsTheTree) {
  EXPECT_EQ(readRoot(GetParam().root), GetParam().tree);
}

INSTANTIATE_TEST_SUITE_P(
    Rules, JSONReaderMembers,
    ::testing::Values(
        ReadCase{"RootNode", R"({"type":"node","id":"r"})", "Content#r:node"},
        ReadCase{"KindsByTypeName",
                 R"({"type":"node","children":[{"type":"image","image":"p.png"},{"type":"page"},{"type":"content_area"},{"type":"formfield"},{"type":"line"},{"type":"word"},{"type":"glyph"},{"type":"image_fragment"}]})",
                 "Content:node{Image\"p.png\",Page,Box,Field,Line,Word,Glyph,Picture}"},
        ReadCase{"NamesWithoutCodeBecomeContents",
                 R"({"type":"node","children":[{"type":"fragment","text":"f","left":1,"top":1,"width":1,"height":1},{"type":"ocrx_table","text":"t"},{"type":"node"},{"type":"Word"},{"type":""}]})",
                 "Content:node{Content:fragment\"f\",Content:ocrx_table\"t\",Content:node,"
                 "Content:Word,Content}"},
        ReadCase{"MemberOrderDoesNotMatter",
                 R"({"children":[{"text":"a","width":3,"type":"word"}],"id":"x","type":"page"})",
                 "Page#x{Word[0,0,3,0]\"a\"}"},
        ReadCase{"AttributeNumbersBecomeFixedText",
                 R"({"type":"node","attributes":{"i":3,"f":1.5,"n":-0.25,"e":1e2,"big":12345678901234567890,"tiny":-1e-7,"s":"3","z":null}})",
                 "Content:node(@big=12345678901234567890.000000,@e=100.000000,@f=1.500000,"
                 "@i=3.000000,@n=-0.250000,@s=3,@tiny=-0.000000)"},
        ReadCase{"AttributeNumbersBeyondDoubleRange",
                 R"({"type":"node","attributes":{"a":1e-400,"b":-1e-5000}})",
                 "Content:node(@a=0.000000,@b=-0.000000)"},
        ReadCase{"BaselineCoefficientsBecomeTheBaseline",
                 R"({"type":"line","attributes":{"baseline_coefficients":[0.5,-1],"k":"v"}})",
                 "Line(base=\"0.5 -1\",@k=v)"},
        ReadCase{"BaselineCoefficientsOfANonFragmentAreDropped",
                 R"({"type":"page","attributes":{"baseline_coefficients":[1]}})", "Page"},
        ReadCase{"FragmentMembers",
                 R"({"type":"word","text":"w","left":10.9,"top":-3.7,"width":0,"height":5,"confidence":87.5,"font_family":"Serif","font_style":"oblique","font_weight":"light","font_size":12,"textangle":-90,"polygon":[[1,2],[3.9,-4]],"baseline":[0.25,2],"color_rgb":[1,2,3.9],"backgr_color_rgb":[255,255,0],"x_entity":"ORG"})",
                 "Word[10,-3,0,5]\"w\"(conf=87.5,size=12,family=Serif,style=3,weight=1,"
                 "angle=-90,entity=ORG,poly=\"1 2;3 -4\",base=\"0.25 2\",color=\"1 2 3\","
                 "bg=\"255 255 0\")"},
        ReadCase{"UnknownFontNamesAndColoursOfOtherSizes",
                 R"({"type":"glyph","font_style":"bold","font_weight":"heavy","color_rgb":[1,2],"backgr_color_rgb":[1,2,3,4]})",
                 "Glyph"},
        ReadCase{"MembersOfTheWrongKindCountAsAbsent",
                 R"({"type":"word","text":5,"left":"3","children":{"type":"glyph"},"attributes":[1],"confidence":null,"polygon":{},"id":true,"font_family":["x"]})",
                 "Word"},
        ReadCase{"LaterDuplicatesWin",
                 R"({"type":"glyph","text":"a","text":"b","type":"word","children":[{"type":"glyph"}],"children":[],"left":1,"left":"x"})",
                 "Word\"b\""},
        ReadCase{"ForeignMembersAreSkipped",
                 R"({"type":"page","foo":{"type":"word","children":[[[{"a":[]}]]]},"bar":[{"type":"x"}],"children":[{"type":"word","baz":null}]})",
                 "Page{Word}"},
        ReadCase{"PageMembers",
                 R"({"type":"page","width":800.7,"height":600,"language":"de","index_in_layout":4,"textangle":0.5,"left":3,"text":"ignored"})",
                 "Page(w=800,h=600,lang=de,index=4,angle=0.5)"},
        ReadCase{"LineExtremesComeBackFromTheAttributes",
                 R"({"type":"line","attributes":{"max_ascenders":3,"max_descenders":"2","max_glyph_height":1.5},"max_descenders":7})",
                 "Line(asc=3,desc=7,gh=1.5,@max_descenders=2)"},
        ReadCase{"WordMarksComeBackFromTheAttributes",
                 R"({"type":"word","attributes":{"x_checked":1.0,"x_rejected":18446744073709549568,"x_sensibility":0.5,"x_entity":"LOC"}})",
                 "Word(sens=0.5,entity=LOC,checked=1,rejected=18446744073709549568)"},
        ReadCase{"WordMarksAsMembers",
                 R"({"type":"word","x_checked":2,"x_rejected":3,"x_sensibility":0.25,"textangle":5})",
                 "Word(sens=0.25,angle=5,checked=2,rejected=3)"},
        ReadCase{"OtherClassesKeepThoseNamesAsAttributes",
                 R"({"type":"glyph","attributes":{"x_checked":1,"max_ascenders":2,"image_source":"s"}})",
                 "Glyph(@image_source=s,@max_ascenders=2.000000,@x_checked=1.000000)"},
        ReadCase{"PictureSource",
                 R"({"type":"image_fragment","attributes":{"image_source":"a.png"},"left":1,"top":1,"width":2,"height":2})",
                 "Picture[1,1,2,2](src=a.png)"},
        ReadCase{"ContentKeepsOnlyItsCommonMembersAndText",
                 R"({"type":"ocrx_table","id":"t","text":"x","left":5,"confidence":9,"attributes":{"x_entity":"E"}})",
                 "Content#t:ocrx_table\"x\"(@x_entity=E)"},
        ReadCase{"EscapesAndUnicode", "{\"type\":\"word\",\"text\":\"\\\"\\u00e4\\ud83d\\ude00\xE2\x82\xAC\"}",
                 "Word\"\\\"\xC3\xA4\xF0\x9F\x98\x80\xE2\x82\xAC\""},
        ReadCase{"TinyNumbersBecomeZero", R"({"type":"word","confidence":1e-400,"left":-1e-999})",
                 "Word(conf=0)"}),
    [](const auto& testCase) { return std::string(testCase.param.name); });

TEST(JSONReaderTest, SetsTheFormatCode) {
  EXPECT_EQ(JSONReader().read(R"({"root":{"type":"node"}})")->format(), 4u);
}

TEST(JSONReaderTest, AcceptsAByteOrderMarkAndSurroundingBlanks) {
  EXPECT_EQ(dump(*JSONReader().read("\xEF\xBB\xBF \n{\"root\":{\"type\":\"node\"}}\r\n\t ")),
            "Content:node");
}

TEST(JSONReaderTest, TheLastRootObjectWins) {
  EXPECT_EQ(dump(*JSONReader().read(
                R"({"x":1,"root":{"type":"a"},"y":[],"root":{"type":"b"}})")),
            "Content:b");
}

TEST(JSONReaderTest, AttributeNumbersIgnoreTheProcessLocale) {
  const std::string before = std::setlocale(LC_ALL, nullptr);
  if (std::setlocale(LC_ALL, "de_DE.UTF-8") == nullptr &&
      std::setlocale(LC_ALL, "de_DE") == nullptr) {  // the Windows C runtime's name
    GTEST_SKIP() << "the de_DE.UTF-8 locale is not installed";
  }
  std::string tree;
  try {
    tree = readRoot(R"({"type":"word","confidence":2.5,"attributes":{"n":3.25}})");
  } catch (...) {
    std::setlocale(LC_ALL, before.c_str());
    throw;
  }
  std::setlocale(LC_ALL, before.c_str());
  EXPECT_EQ(tree, "Word(conf=2.5,@n=3.250000)");
}

TEST(JSONReaderTest, ReadsTheDeepestNestingAllowed) {
  std::string json = "{\"root\":";
  for (std::size_t i = 1; i < kMaxLayoutDepth; ++i) json += R"({"type":"node","children":[)";
  json += R"({"type":"word","text":"deep","polygon":[[1,2]],"attributes":{"baseline_coefficients":[1]}})";
  for (std::size_t i = 1; i < kMaxLayoutDepth; ++i) json += "]}";
  json += "}";
  auto layout = JSONReader().read(json);
  std::size_t depth = 0;
  for (const Node* node = layout->root(); node != nullptr;
       node = node->childCount() > 0 ? &node->child(0) : nullptr) {
    ++depth;
  }
  EXPECT_EQ(depth, kMaxLayoutDepth);
}

// What a failed read reports.
struct Failure {
  enum Kind { Json, InvalidArgument } kind;
  std::string message;
};

Failure failureOf(const std::string& json) {
  try {
    JSONReader().read(json);
  } catch (const base::QentException& e) {
    EXPECT_EQ(e.code(), 20039u);
    return {Failure::Json, e.what()};
  } catch (const std::invalid_argument& e) {
    return {Failure::InvalidArgument, e.what()};
  }
  return {Failure::Json, "no failure"};
}

struct BadCase {
  const char* name;
  std::string json;
  Failure::Kind kind;
  std::string message;
};

class JSONReaderFailures : public ::testing::TestWithParam<BadCase> {};

TEST_P(JSONReaderFailures, ReportsTheDocumentedError) {
  const Failure failure = failureOf(GetParam().json);
  EXPECT_EQ(failure.message, GetParam().message);
  EXPECT_EQ(failure.kind, GetParam().kind);
}

const char* const kNotJson = "Failed to parse JSON layout";
const char* const kNoRoot = "Root node is not found";
const char* const kNoType = "Type attribute is not found";
const char* const kAttribute = "Invalid Attribute Format. Only Number and String are supported.";
const char* const kRectangle = "Width or Height of Rectangle must be > 0";

std::string nested(const std::string& open, const std::string& close, int levels,
                   const std::string& inner = "") {
  std::string text;
  for (int i = 0; i < levels; ++i) text += open;
  text += inner;
  for (int i = 0; i < levels; ++i) text += close;
  return text;
}

INSTANTIATE_TEST_SUITE_P(
    BadInput, JSONReaderFailures,
    ::testing::Values(
        BadCase{"Empty", "", Failure::Json, kNotJson},
        BadCase{"Blank", " \n", Failure::Json, kNotJson},
        BadCase{"Truncated", R"({"root":{"type":"page","children":[{"type":"wo)", Failure::Json,
                kNotJson},
        BadCase{"TruncatedAfterValue", R"({"root":{"type":"page"})", Failure::Json, kNotJson},
        BadCase{"TopLevelArray", "[]", Failure::Json, kNotJson},
        BadCase{"TopLevelString", "\"root\"", Failure::Json, kNotJson},
        BadCase{"TopLevelNumber", "5", Failure::Json, kNotJson},
        BadCase{"TopLevelNull", "null", Failure::Json, kNotJson},
        BadCase{"TrailingText", R"({"root":{"type":"node"}} x)", Failure::Json, kNotJson},
        BadCase{"TwoDocuments", R"({"root":{"type":"node"}}{})", Failure::Json, kNotJson},
        BadCase{"TextAfterANulByte", std::string("{\"root\":{\"type\":\"node\"}}\0x", 27),
                Failure::Json, kNotJson},
        BadCase{"NulByteInAString", std::string("{\"root\":{\"type\":\"no\0de\"}}", 25),
                Failure::Json, kNotJson},
        BadCase{"InvalidUtf8", "{\"root\":{\"type\":\"word\",\"text\":\"\xC3\x28\"}}",
                Failure::Json, kNotJson},
        BadCase{"InvalidUtf8InAKey", "{\"root\":{\"type\":\"word\",\"\xFF\":1}}", Failure::Json,
                kNotJson},
        BadCase{"OverlongUtf8", "{\"root\":{\"type\":\"word\",\"text\":\"\xC0\xAF\"}}",
                Failure::Json, kNotJson},
        BadCase{"LoneSurrogateEscape", R"({"root":{"type":"word","text":"\udc00"}})",
                Failure::Json, kNotJson},
        BadCase{"LoneSurrogateInAnAttributeKey", R"({"root":{"type":"word","attributes":{"\udc00":"a"}}})",
                Failure::Json, kNotJson},
        BadCase{"LoneHighSurrogateEscape", R"({"root":{"type":"word","text":"\ud800x"}})",
                Failure::Json, kNotJson},
        BadCase{"SingleQuotes", R"({'root':{'type':'node'}})", Failure::Json, kNotJson},
        BadCase{"TrailingComma", R"({"root":{"type":"node",}})", Failure::Json, kNotJson},
        BadCase{"Comment", R"({"root":{"type":"node"}/*x*/})", Failure::Json, kNotJson},
        BadCase{"NaN", R"({"root":{"type":"word","confidence":NaN}})", Failure::Json, kNotJson},
        // The parser takes no number beyond the range of a double, wherever it stands.
        BadCase{"NumberBeyondDoubleInAnAttribute",
                R"({"root":{"type":"node","attributes":{"a":1e99999}}})", Failure::Json, kNotJson},
        BadCase{"NumberBeyondDoubleInAForeignMember", R"({"root":{"type":"node","x":-1e400}})",
                Failure::Json, kNotJson},
        BadCase{"IntegerBeyondDouble",
                "{\"root\":{\"type\":\"word\",\"top\":" + std::string(400, '9') + "}}",
                Failure::Json, kNotJson},
        BadCase{"SyntaxErrorAfterAFault", R"({"root":{"children":[]},"x":})", Failure::Json,
                kNotJson},
        BadCase{"NoRoot", "{}", Failure::Json, kNoRoot},
        BadCase{"OtherKeyOnly", R"({"roots":{"type":"node"}})", Failure::Json, kNoRoot},
        BadCase{"RootArray", R"({"root":[]})", Failure::Json, kNoRoot},
        BadCase{"RootString", R"({"root":"node"})", Failure::Json, kNoRoot},
        BadCase{"RootNull", R"({"root":null})", Failure::Json, kNoRoot},
        BadCase{"RootWithoutType", R"({"root":{}})", Failure::Json, kNoType},
        BadCase{"TypeNotAString", R"({"root":{"type":5}})", Failure::Json, kNoType},
        BadCase{"TypeOverwrittenByANumber", R"({"root":{"type":"node","type":5}})",
                Failure::Json, kNoType},
        BadCase{"ChildWithoutType", R"({"root":{"type":"node","children":[{"text":"a"}]}})",
                Failure::Json, kNoType},
        BadCase{"AttributeBoolean", R"({"root":{"type":"node","attributes":{"a":true}}})",
                Failure::InvalidArgument, kAttribute},
        BadCase{"AttributeObject", R"({"root":{"type":"node","attributes":{"a":{}}}})",
                Failure::InvalidArgument, kAttribute},
        BadCase{"AttributeArray", R"({"root":{"type":"node","attributes":{"a":[1]}}})",
                Failure::InvalidArgument, kAttribute},
        BadCase{"BaselineCoefficientsNotNumbers",
                R"({"root":{"type":"line","attributes":{"baseline_coefficients":[1,"2"]}}})",
                Failure::InvalidArgument, kAttribute},
        BadCase{"NegativeWidth", R"({"root":{"type":"word","width":-1}})",
                Failure::InvalidArgument, kRectangle},
        BadCase{"NegativeHeightOfABox", R"({"root":{"type":"content_area","height":-2.5}})",
                Failure::InvalidArgument, kRectangle},
        BadCase{"ChildNotAnObject", R"({"root":{"type":"node","children":[{"type":"page"},5]}})",
                Failure::Json,
                "Failed to parse JSON layout: an element of \"children\" is not a node object"},
        BadCase{"ChildArray", R"({"root":{"type":"node","children":[[]]}})", Failure::Json,
                "Failed to parse JSON layout: an element of \"children\" is not a node object"},
        BadCase{"PolygonPointOfThree", R"({"root":{"type":"line","polygon":[[1,2,3]]}})",
                Failure::Json,
                "Failed to parse JSON layout: a point of \"polygon\" is not an array of two numbers"},
        BadCase{"PolygonPointNotAnArray", R"({"root":{"type":"line","polygon":[1,2]}})",
                Failure::Json,
                "Failed to parse JSON layout: a point of \"polygon\" is not an array of two numbers"},
        BadCase{"PolygonCoordinateNotANumber", R"({"root":{"type":"line","polygon":[[1,"2"]]}})",
                Failure::Json,
                "Failed to parse JSON layout: a point of \"polygon\" is not an array of two numbers"},
        BadCase{"BaselineNotNumbers", R"({"root":{"type":"line","baseline":[1,[2]]}})",
                Failure::Json,
                "Failed to parse JSON layout: \"baseline\" holds a value that is not a number"},
        BadCase{"ColourComponentNotANumber", R"({"root":{"type":"word","color_rgb":[1,"2",3]}})",
                Failure::Json,
                "Failed to parse JSON layout: a component of \"color_rgb\" is not a number"},
        BadCase{"ColourComponentOutOfRange", R"({"root":{"type":"word","backgr_color_rgb":[1,256,3]}})",
                Failure::Json,
                "Failed to parse JSON layout: the number 256 of \"backgr_color_rgb\" is out of range"},
        BadCase{"CoordinateBeyond32Bits", R"({"root":{"type":"word","left":2147483648}})",
                Failure::Json,
                "Failed to parse JSON layout: the number 2147483648 of \"left\" is out of range"},
        BadCase{"PolygonBeyond32Bits", R"({"root":{"type":"word","polygon":[[0,-3e9]]}})",
                Failure::Json,
                "Failed to parse JSON layout: the number -3e+09 of \"polygon\" is out of range"},
        BadCase{"NegativePageWidth", R"({"root":{"type":"page","width":-1}})", Failure::Json,
                "Failed to parse JSON layout: the number -1 of \"width\" is out of range"},
        BadCase{"NegativeWordMark", R"({"root":{"type":"word","x_checked":-1}})", Failure::Json,
                "Failed to parse JSON layout: the number -1 of \"x_checked\" is out of range"},
        // Just above the largest double: the parser lets it through, the conversion not.
        BadCase{"ConfidenceBeyondDouble", R"({"root":{"type":"word","confidence":1.8e308}})",
                Failure::Json,
                "Failed to parse JSON layout: the number 1.8e308 of \"confidence\" is out of range"},
        BadCase{"LongNumberIsShortenedInTheMessage",
                "{\"root\":{\"type\":\"word\",\"font_size\":1.8" + std::string(60, '0') +
                    "e308}}",
                Failure::Json,
                "Failed to parse JSON layout: the number 1.8" + std::string(37, '0') +
                    "... of \"font_size\" is out of range"},
        BadCase{"NodesOneLevelTooDeep",
                "{\"root\":" +
                    nested(R"({"type":"node","children":[)", "]}",
                           static_cast<int>(kMaxLayoutDepth), R"({"type":"word"})") +
                    "}",
                Failure::Json, "Failed to parse JSON layout: nodes nested deeper than 1000 levels"},
        BadCase{"HundredThousandNodeLevels",
                "{\"root\":" + nested(R"({"type":"node","children":[)", "]}", 100000) + "}",
                Failure::Json, "Failed to parse JSON layout: nodes nested deeper than 1000 levels"},
        BadCase{"HundredThousandArraysInAForeignMember",
                R"({"root":{"type":"node","x":)" + nested("[", "]", 100000) + "}}", Failure::Json,
                "Failed to parse JSON layout: values nested deeper than 2064 levels"},
        BadCase{"HundredThousandOpeningArrays", std::string(100000, '['), Failure::Json,
                kNotJson},
        BadCase{"HundredThousandOpeningObjects", nested("{\"a\":", "", 100000), Failure::Json,
                "Failed to parse JSON layout: values nested deeper than 2064 levels"}),
    [](const auto& testCase) { return std::string(testCase.param.name); });

}  // namespace
}  // namespace qent::test
