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

struct Case {
  std::string json;
  std::string expected;
};

// The golden answer below shows pages, images, words, glyphs, ids and line confidences;
// these are the rules it cannot show.
TEST(CloudOcrReaderTest, BuildsTheTree) {
  const Case cases[] = {
      // Line 12 is made after the last break and stays empty; the next paragraph shows
      // that it took its number.
      {answer(paragraph(word(0, symbol("a", "LINE_BREAK")) + "," +
          word(20, symbol("b", "SPACE")) + "," +
          word(40, symbol("c", "EOL_SURE_SPACE"))) +
          "," + paragraph(word(0, symbol("d", "HYPHEN")))),
       "Content:node{Page#1(w=100,h=50){Image#2\"picture.img\",Box#3:paragraph{"
       "Line#4[0,0,10,10](conf=0){Word#5[0,0,10,10]{Glyph#6\"a\"}},"
       "Line#7[20,0,30,10](conf=0){Word#8[20,0,10,10]{Glyph#9\"b\"},"
       "Word#10[40,0,10,10]{Glyph#11\"c\"}}},"
       "Box#13:paragraph{Line#14[0,0,10,10](conf=0){Word#15[0,0,10,10]{Glyph#16\"d\"}}}}}"},
      {answer(paragraph(word(0, symbol("a", "LINE_BREAK") + "," + symbol("b") + ",7") +
          "," + word(20, symbol("c", "")))),
       "Content:node{Page#1(w=100,h=50){Image#2\"picture.img\",Box#3:paragraph{"
       "Line#4[0,0,30,10](conf=0){Word#5[0,0,10,10]{Glyph#6\"a\",Glyph#7\"b\"},"
       "Word#8[20,0,10,10]{Glyph#9\"c\"}}}}}"},
      {R"({"fullTextAnnotation":{"pages":[1,{"blocks":[null,{"paragraphs":["p"]},)"
       R"({"boundingBox":)" + vertices(1, 1, 9, 9) + R"(,"paragraphs":[)" +
          paragraph("[]," + word(0, symbol("a"))) + "]}]}]}}",
       "Content:node{Page#1{Image#2\"picture.img\",Box#3:paragraph{"
       "Line#4[0,0,10,10](conf=0){Word#5[0,0,10,10]{Glyph#6\"a\"}}}}}"},
      {answer(paragraph("", R"(,"boundingBox":)" + vertices(5, 6, 25, 16)) + "," +
          R"({"confidence":0.5})"),
       "Content:node{Page#1(w=100,h=50){Image#2\"picture.img\","
       "Box#3:paragraph[5,6,20,10],Box#5:paragraph}}"},
      {R"({"fullTextAnnotation":{"pages":[{"width":"800","height":true,"blocks":[{"paragraphs":[)" +
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
      {answer(paragraph(
          R"({"boundingBox":{"vertices":[{"x":12.9,"y":-3.7},{"x":30},{"y":5.2},7,{"x":"1"}]}},)"
          R"({"boundingBox":{"vertices":[{"y":4},{"y":9}]}},)"
          R"({"boundingBox":{"vertices":[]}},{"boundingBox":{}})")),
       "Content:node{Page#1(w=100,h=50){Image#2\"picture.img\",Box#3:paragraph{"
       "Line#4[0,-3,30,12](conf=0){Word#5[12,-3,18,8],Word#6[0,4,0,5],Word#7,Word#8}}}}"},
      {R"({"responses":[{"fullTextAnnotation":{"pages":[{"width":1}]}}],)"
       R"("fullTextAnnotation":{"pages":[{"width":2}]}})",
       "Content:node{Page#1(w=2){Image#2\"picture.img\"}}"},
      {R"({"responses":[1,{"error":{}},{"fullTextAnnotation":[]},)"
       R"({"fullTextAnnotation":{"pages":[{"width":3}]}},{"fullTextAnnotation":{"pages":[{"width":4}]}}]})",
       "Content:node{Page#1(w=3){Image#2\"picture.img\"}}"},
      {R"({"fullTextAnnotation":{"pages":[{"width":4294967295.9,"height":0,"blocks":[{"paragraphs":[)" +
          paragraph(R"({"boundingBox":{"vertices":[{"x":-2147483648,"y":2147483647.5},)"
          R"({"x":-1,"y":2147483647}]}})") +
          "]}]}]}}",
       "Content:node{Page#1(w=4294967295){Image#2\"picture.img\",Box#3:paragraph{"
       "Line#4[-2147483648,2147483647,2147483647,0](conf=0){"
       "Word#5[-2147483648,2147483647,2147483647,0]}}}}"}};
  for (const Case& c : cases) EXPECT_EQ(readTree(c.json), c.expected) << c.json;
  EXPECT_EQ(readTree(R"({"fullTextAnnotation":{"text":"x"}})"), "Content:node");
  CloudOcrReader reader;  // every read counts its ids from one
  const std::string json = answer(paragraph(word(0, symbol("a"))));
  EXPECT_EQ(dump(*reader.read(json)), dump(*reader.read(json)));
  // Foreign members may nest as deep as the limit: the top object and 511 arrays in it.
  const std::size_t inner = CloudOcrReader::kMaxJsonDepth - 1;
  EXPECT_EQ(readTree(R"({"fullTextAnnotation":{},"extra":)" + std::string(inner, '[') +
                     std::string(inner, ']') + "}"),
            "Content:node");
}

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

TEST(CloudOcrReaderTest, RefusesBadInputWithCode20039) {
  const std::string kDeep = std::string(CloudOcrReader::kMaxJsonDepth, '[');
  const std::string bad = "Incorrect format";
  const std::string range = bad + ": the ";
  const Case cases[] = {
      {"", bad},
      {"[{\"fullTextAnnotation\":{}}]", bad},
      {R"({"textAnnotations":[]})", bad},
      {R"({"fullTextAnnotation":[]})", bad},
      {R"({"responses":[{},{"error":{"code":3}}]})", bad},
      {"{\"fullTextAnnotation\":{\"text\":\"\xC3\"}}", bad},
      {std::string("{\"fullTextAnnotation\":{}}\0x", 27), bad},
      {R"({"fullTextAnnotation":{"pages":[{"width":1e400}]}})", bad},
      {answer(paragraph(R"({"symbols":[]})")), "Bounding box for a word is not found"},
      {R"({"fullTextAnnotation":{},"x":)" + kDeep + std::string(kDeep.size(), ']') + "}",
       bad + ": values nested deeper than 512 levels"},
      {std::string(100000, '['), bad + ": values nested deeper than 512 levels"},
      {answer(paragraph(R"({"boundingBox":{"vertices":[{"x":3e9}]}})")),
       range + "vertex coordinate 3e+09 is out of range"},
      {answer(paragraph(R"({"boundingBox":{"vertices":[{"x":-2000000000},{"x":2000000000}]}})")),
       bad + ": a rectangle is wider than 2147483647 pixels"},
      {answer(paragraph(R"({"boundingBox":{"vertices":[{"y":-2000000000},{"y":-1999999999}]}},)"
                        R"({"boundingBox":{"vertices":[{"y":2000000000},{"y":2000000001}]}})")),
       bad + ": a rectangle is higher than 2147483647 pixels"},
      {R"({"fullTextAnnotation":{"pages":[{"width":-1}]}})", range + "page width -1 is out of range"},
      {R"({"fullTextAnnotation":{"pages":[{"height":4294967296}]}})",
       range + "page height 4294967296 is out of range"},
      {answer(paragraph(word(0, R"({"text":"\udc00"})"))),
       range + "text of a symbol is not valid Unicode ("}};
  for (const Case& c : cases) {
    try {
      CloudOcrReader().read(c.json);
      ADD_FAILURE() << "read without error: " << c.json.substr(0, 80);
    } catch (const qent::base::QentException& e) {
      EXPECT_EQ(e.code(), 20039u);
      EXPECT_EQ(std::string(e.what()).substr(0, c.expected.size()), c.expected);
    }
  }
}

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
