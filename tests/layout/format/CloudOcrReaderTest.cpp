// CloudOcrReaderTest.cpp - cloud-OCR answers to trees: where the annotation is found, lines
// cut at detected breaks, line rectangles and confidences, bounding boxes, node ids, members
// of the wrong kind, every kind of bad input, and a golden tree.
#include "layout/format/CloudOcrReader.h"

#include "base/QentException.h"
#include "layout/IteratorTemplate.h"
#include "layout/Layout.h"
#include "layout/Nodes.h"
#include "support/LayoutDump.h"
#include "support/Golden.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

namespace qent::test {
namespace {

using namespace qent::text::layout;
using qent::text::layout::format::CloudOcrReader;

// JSON pieces of an answer, so that the cases below read like their shape.
std::string vertices(int left, int top, int right, int bottom) {
  const std::string l = std::to_string(left), t = std::to_string(top);
  const std::string r = std::to_string(right), b = std::to_string(bottom);
  return R"({"vertices":[{"x":)" + l + R"(,"y":)" + t + R"(},{"x":)" + r + R"(,"y":)" + t +
         R"(},{"x":)" + r + R"(,"y":)" + b + R"(},{"x":)" + l + R"(,"y":)" + b + "}]}";
}

// A symbol with a one-character text, and a break type when `breakType` is not empty.
std::string symbol(const std::string& text, const std::string& breakType = "") {
  std::string json = R"({"text":")" + text + "\"";
  if (!breakType.empty()) {
    json += R"(,"property":{"detectedBreak":{"type":")" + breakType + "\"}}";
  }
  return json + "}";
}

// A word from `left` to `left + 10` on the row 0..10, with the given symbols.
std::string word(int left, const std::string& symbols, const std::string& more = "") {
  return R"({"boundingBox":)" + vertices(left, 0, left + 10, 10) + R"(,"symbols":[)" + symbols +
         "]" + more + "}";
}

std::string paragraph(const std::string& words, const std::string& more = "") {
  return R"({"words":[)" + words + "]" + more + "}";
}

// One page of 100 x 50 with one block holding the paragraphs.
std::string answer(const std::string& paragraphs) {
  return R"({"fullTextAnnotation":{"pages":[{"width":100,"height":50,"blocks":[{"paragraphs":[)" +
         paragraphs + "]}]}]}}";
}

std::string readTree(const std::string& json) { return dump(*CloudOcrReader().read(json)); }

struct ReadCase {
  const char* label;
  std::string json;
  std::string tree;
};
void PrintTo(const ReadCase& k, std::ostream* out) { *out << k.label; }

class CloudOcrReaderCases : public ::testing::TestWithParam<ReadCase> {};

TEST_P(CloudOcrReaderCases, BuildsTheTree) { EXPECT_EQ(readTree(GetParam().json), GetParam().tree); }

INSTANTIATE_TEST_SUITE_P(
    Rules, CloudOcrReaderCases,
    ::testing::Values(
        ReadCase{"PageWithItsImage", R"({"fullTextAnnotation":{"pages":[{"width":800,"height":600}]}})",
                 "Content:node{Page#1(w=800,h=600){Image#2\"picture.img\"}}"},
        ReadCase{"WordsWithoutBreaksMakeOneLine",
                 answer(paragraph(word(0, symbol("a") + "," + symbol("b", "SPACE")) + "," +
                                  word(20, symbol("c")))),
                 "Content:node{Page#1(w=100,h=50){Image#2\"picture.img\",Box#3:paragraph{"
                 "Line#4[0,0,30,10](conf=0){Word#5[0,0,10,10]{Glyph#6\"a\",Glyph#7\"b\"},"
                 "Word#8[20,0,10,10]{Glyph#9\"c\"}}}}}"},
        // Line 12 is made after the last break and stays empty; the next paragraph shows
        // that it took its number.
        ReadCase{"BreaksOtherThanSpaceEndTheLine",
                 answer(paragraph(word(0, symbol("a", "LINE_BREAK")) + "," +
                                  word(20, symbol("b", "SPACE")) + "," +
                                  word(40, symbol("c", "EOL_SURE_SPACE"))) +
                        "," + paragraph(word(0, symbol("d", "HYPHEN")))),
                 "Content:node{Page#1(w=100,h=50){Image#2\"picture.img\",Box#3:paragraph{"
                 "Line#4[0,0,10,10](conf=0){Word#5[0,0,10,10]{Glyph#6\"a\"}},"
                 "Line#7[20,0,30,10](conf=0){Word#8[20,0,10,10]{Glyph#9\"b\"},"
                 "Word#10[40,0,10,10]{Glyph#11\"c\"}}},"
                 "Box#13:paragraph{Line#14[0,0,10,10](conf=0){Word#15[0,0,10,10]{Glyph#16\"d\"}}}}}"},
        ReadCase{"OnlyTheLastSymbolsBreakCounts",
                 answer(paragraph(word(0, symbol("a", "LINE_BREAK") + "," + symbol("b") + ",7") +
                                  "," + word(20, symbol("c", "")))),
                 "Content:node{Page#1(w=100,h=50){Image#2\"picture.img\",Box#3:paragraph{"
                 "Line#4[0,0,30,10](conf=0){Word#5[0,0,10,10]{Glyph#6\"a\",Glyph#7\"b\"},"
                 "Word#8[20,0,10,10]{Glyph#9\"c\"}}}}}"},
        ReadCase{"BlocksAreTransparentAndOtherElementsSkipped",
                 R"({"fullTextAnnotation":{"pages":[1,{"blocks":[null,{"paragraphs":["p"]},)"
                 R"({"boundingBox":)" + vertices(1, 1, 9, 9) + R"(,"paragraphs":[)" +
                     paragraph("[]," + word(0, symbol("a"))) + "]}]}]}}",
                 "Content:node{Page#1{Image#2\"picture.img\",Box#3:paragraph{"
                 "Line#4[0,0,10,10](conf=0){Word#5[0,0,10,10]{Glyph#6\"a\"}}}}}"},
        ReadCase{"ParagraphGeometryAndEmptyParagraphs",
                 answer(paragraph("", R"(,"boundingBox":)" + vertices(5, 6, 25, 16)) + "," +
                        R"({"confidence":0.5})"),
                 "Content:node{Page#1(w=100,h=50){Image#2\"picture.img\","
                 "Box#3:paragraph[5,6,20,10],Box#5:paragraph}}"},
        ReadCase{"WordAndSymbolFields",
                 answer(paragraph(R"({"confidence":0.75,"boundingBox":)" + vertices(2, 3, 12, 23) +
                                  R"(,"symbols":[{"text":"\u00e9","confidence":0.5,"boundingBox":)" +
                                  vertices(2, 3, 7, 23) + R"(},{"text":"\ud83d\ude00"}]})")),
                 "Content:node{Page#1(w=100,h=50){Image#2\"picture.img\",Box#3:paragraph{"
                 "Line#4[2,3,10,20](conf=0.75){Word#5[2,3,10,20](conf=0.75){"
                 "Glyph#6[2,3,5,20]\"\xC3\xA9\"(conf=0.5),Glyph#7\"\xF0\x9F\x98\x80\"}}}}}"},
        ReadCase{"MembersOfTheWrongKindCountAsAbsent",
                 R"({"fullTextAnnotation":{"pages":[{"width":"800","height":true,"blocks":[{"paragraphs":[)" +
                     paragraph(R"({"confidence":"high","boundingBox":)" + vertices(0, 0, 10, 10) +
                               R"(,"symbols":[{"text":5,"confidence":null,"boundingBox":[1,2],)"
                               R"("property":{"detectedBreak":"LINE_BREAK"}},)"
                               R"({"text":"b","property":{"detectedBreak":{"type":3}}}]},)" +
                               word(20, symbol("c")),
                               R"(,"boundingBox":"no")") +
                     "]}]}]}}",
                 "Content:node{Page#1{Image#2\"picture.img\",Box#3:paragraph{"
                 "Line#4[0,0,30,10](conf=0){Word#5[0,0,10,10]{Glyph#6,Glyph#7\"b\"},"
                 "Word#8[20,0,10,10]{Glyph#9\"c\"}}}}}"},
        ReadCase{"BoundingBoxRules",
                 answer(paragraph(
                     R"({"boundingBox":{"vertices":[{"x":12.9,"y":-3.7},{"x":30},{"y":5.2},7,{"x":"1"}]}},)"
                     R"({"boundingBox":{"vertices":[{"y":4},{"y":9}]}},)"
                     R"({"boundingBox":{"vertices":[]}},{"boundingBox":{}})")),
                 "Content:node{Page#1(w=100,h=50){Image#2\"picture.img\",Box#3:paragraph{"
                 "Line#4[0,-3,30,12](conf=0){Word#5[12,-3,18,8],Word#6[0,4,0,5],Word#7,Word#8}}}}"},
        ReadCase{"TopLevelAnnotationWinsOverResponses",
                 R"({"responses":[{"fullTextAnnotation":{"pages":[{"width":1}]}}],)"
                 R"("fullTextAnnotation":{"pages":[{"width":2}]}})",
                 "Content:node{Page#1(w=2){Image#2\"picture.img\"}}"},
        ReadCase{"FirstResponseWithAnAnnotation",
                 R"({"responses":[1,{"error":{}},{"fullTextAnnotation":[]},)"
                 R"({"fullTextAnnotation":{"pages":[{"width":3}]}},{"fullTextAnnotation":{"pages":[{"width":4}]}}]})",
                 "Content:node{Page#1(w=3){Image#2\"picture.img\"}}"},
        ReadCase{"AnnotationWithoutPages", R"({"fullTextAnnotation":{"text":"x"}})",
                 "Content:node"},
        ReadCase{"LargeButRepresentableNumbers",
                 R"({"fullTextAnnotation":{"pages":[{"width":4294967295.9,"height":0,"blocks":[{"paragraphs":[)" +
                     paragraph(R"({"boundingBox":{"vertices":[{"x":-2147483648,"y":2147483647.5},)"
                               R"({"x":-1,"y":2147483647}]}})") +
                     "]}]}]}}",
                 "Content:node{Page#1(w=4294967295){Image#2\"picture.img\",Box#3:paragraph{"
                 "Line#4[-2147483648,2147483647,2147483647,0](conf=0){"
                 "Word#5[-2147483648,2147483647,2147483647,0]}}}}"}));

TEST(CloudOcrReaderTest, LineConfidenceCountsWordsWithoutOne) {
  const auto layout = CloudOcrReader().read(answer(paragraph(
      word(0, symbol("a"), R"(,"confidence":0.9)") + "," +
      word(20, symbol("b"), R"(,"confidence":0.8)") + "," + word(40, symbol("c")) + "," +
      word(60, symbol("d"), R"(,"confidence":0)") + "," +
      word(80, symbol("e", "LINE_BREAK"), R"(,"confidence":-0.5)"))));
  IteratorTemplate<Line> line(layout->root());
  ASSERT_FALSE(line.atEnd());
  EXPECT_DOUBLE_EQ(line->storedConfidence(), (0.9 + 0.8) / 5);
  EXPECT_EQ(line->rect(), (Rect{0, 0, 90, 10}));
}

TEST(CloudOcrReaderTest, BothPlacesOfTheAnnotationGiveTheSameLayout) {
  const std::string annotation =
      R"({"pages":[{"width":100,"height":50,"blocks":[{"paragraphs":[)" +
      paragraph(word(0, symbol("a", "LINE_BREAK")) + "," + word(20, symbol("b"))) + "]}]}]}";
  const auto top = CloudOcrReader().read(R"({"fullTextAnnotation":)" + annotation + "}");
  const auto nested =
      CloudOcrReader().read(R"({"responses":[{"textAnnotations":[],"fullTextAnnotation":)" +
                            annotation + "}]}");
  EXPECT_EQ(dump(*nested), dump(*top));
  EXPECT_EQ(top->format(), 3u);
  EXPECT_EQ(nested->format(), 3u);
}

TEST(CloudOcrReaderTest, EveryReadCountsFromOne) {
  CloudOcrReader reader;
  const std::string json = answer(paragraph(word(0, symbol("a"))));
  EXPECT_EQ(dump(*reader.read(json)), dump(*reader.read(json)));
}

TEST(CloudOcrReaderTest, NestingUpToTheLimitIsAccepted) {
  // Foreign members may nest as deep as the limit: the top object and 511 arrays in it.
  const std::size_t inner = CloudOcrReader::kMaxJsonDepth - 1;
  const std::string json = R"({"fullTextAnnotation":{},"extra":)" + std::string(inner, '[') +
                           std::string(inner, ']') + "}";
  EXPECT_EQ(readTree(json), "Content:node");
}

struct BadCase {
  const char* label;
  std::string json;
  std::string message;
};
void PrintTo(const BadCase& k, std::ostream* out) { *out << k.label; }

class CloudOcrReaderErrors : public ::testing::TestWithParam<BadCase> {};

TEST_P(CloudOcrReaderErrors, FailWithCode20039) {
  try {
    CloudOcrReader().read(GetParam().json);
    FAIL() << "read without error";
  } catch (const qent::base::QentException& e) {
    EXPECT_EQ(e.code(), 20039u);
    EXPECT_EQ(std::string(e.what()).substr(0, GetParam().message.size()), GetParam().message);
  }
}

const std::string kDeep = std::string(CloudOcrReader::kMaxJsonDepth, '[');

INSTANTIATE_TEST_SUITE_P(
    Inputs, CloudOcrReaderErrors,
    ::testing::Values(
        BadCase{"Empty", "", "Incorrect format"},
        BadCase{"NotJson", "{\"fullTextAnnotation\":{", "Incorrect format"},
        BadCase{"TopLevelArray", "[{\"fullTextAnnotation\":{}}]", "Incorrect format"},
        BadCase{"NoAnnotation", R"({"textAnnotations":[]})", "Incorrect format"},
        BadCase{"AnnotationNotAnObject", R"({"fullTextAnnotation":[]})", "Incorrect format"},
        BadCase{"ResponsesWithoutAnnotation", R"({"responses":[{},{"error":{"code":3}}]})",
                "Incorrect format"},
        BadCase{"InvalidUtf8", "{\"fullTextAnnotation\":{\"text\":\"\xC3\"}}", "Incorrect format"},
        BadCase{"TextAfterTheDocument", R"({"fullTextAnnotation":{}} {})", "Incorrect format"},
        BadCase{"NulAfterTheDocument", std::string("{\"fullTextAnnotation\":{}}\0x", 27),
                "Incorrect format"},
        BadCase{"NumberBeyondDouble", R"({"fullTextAnnotation":{"pages":[{"width":1e400}]}})",
                "Incorrect format"},
        BadCase{"WordWithoutBoundingBox", answer(paragraph(R"({"symbols":[]})")),
                "Bounding box for a word is not found"},
        BadCase{"WordWithNullBoundingBox", answer(paragraph(R"({"boundingBox":null})")),
                "Bounding box for a word is not found"},
        BadCase{"NestedBeyondTheLimit",
                R"({"fullTextAnnotation":{},"x":)" + kDeep + std::string(kDeep.size(), ']') + "}",
                "Incorrect format: values nested deeper than 512 levels"},
        BadCase{"HugeNestingStopsEarly", std::string(100000, '['),
                "Incorrect format: values nested deeper than 512 levels"},
        BadCase{"CoordinateBeyond32Bits",
                answer(paragraph(R"({"boundingBox":{"vertices":[{"x":3e9}]}})")),
                "Incorrect format: the vertex coordinate 3e+09 is out of range"},
        BadCase{"CoordinateBelow32Bits",
                answer(paragraph(R"({"boundingBox":{"vertices":[{"y":-2147483649}]}})")),
                "Incorrect format: the vertex coordinate -2147483649 is out of range"},
        BadCase{"RectangleWiderThan32Bits",
                answer(paragraph(R"({"boundingBox":{"vertices":[{"x":-2000000000},{"x":2000000000}]}})")),
                "Incorrect format: a rectangle is wider than 2147483647 pixels"},
        BadCase{"LineHigherThan32Bits",
                answer(paragraph(R"({"boundingBox":{"vertices":[{"y":-2000000000},{"y":-1999999999}]}},)"
                                 R"({"boundingBox":{"vertices":[{"y":2000000000},{"y":2000000001}]}})")),
                "Incorrect format: a rectangle is higher than 2147483647 pixels"},
        BadCase{"NegativePageSize", R"({"fullTextAnnotation":{"pages":[{"width":-1}]}})",
                "Incorrect format: the page width -1 is out of range"},
        BadCase{"PageSizeBeyond32Bits", R"({"fullTextAnnotation":{"pages":[{"height":4294967296}]}})",
                "Incorrect format: the page height 4294967296 is out of range"},
        BadCase{"LoneSurrogateInText",
                answer(paragraph(word(0, R"({"text":"\udc00"})"))),
                "Incorrect format: the text of a symbol is not valid Unicode ("}));

// The golden tree, one node per row and indented by depth, so that a change reads as a diff.
std::string indented(const std::string& dumped) {
  std::string out;
  int depth = 0;
  int parens = 0;
  bool quoted = false;
  auto newline = [&] { out += "\n" + std::string(static_cast<std::size_t>(depth) * 2, ' '); };
  for (std::size_t i = 0; i < dumped.size(); ++i) {
    const char c = dumped[i];
    if (quoted) {
      out += c;
      if (c == '\\' && i + 1 < dumped.size()) out += dumped[++i];
      else if (c == '"') quoted = false;
      continue;
    }
    if (c == '"') quoted = true;
    if (c == '(' || c == '[') ++parens;
    if (c == ')' || c == ']') --parens;
    if (c == '}') {
      --depth;
      newline();
    }
    out += c;
    if (c == '{') {
      ++depth;
      newline();
    } else if (c == ',' && parens == 0) {
      newline();
    }
  }
  return out + "\n";
}

TEST(CloudOcrReaderGoldenTest, HandMadeAnswer) {
  expectGolden("cloud-ocr/hand-made.tree",
               indented(dump(*CloudOcrReader().read(readTestData("cloud-ocr/hand-made.json")))));
}

}  // namespace
}  // namespace qent::test
