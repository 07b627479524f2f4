// WebAnnoWriterTest.cpp - layouts (stated as dumps) to WebAnno TSV: sentences, token rows,
// byte offsets, the entity column, and a golden document.
#include "layout/format/WebAnnoWriter.h"

#include "layout/Layout.h"
#include "layout/format/CloudOcrReader.h"
#include "layout/Nodes.h"
#include "support/LayoutBuilders.h"
#include "support/LayoutDump.h"
#include "support/Golden.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>

namespace qent::test {
namespace {

using namespace qent::text::layout;
using qent::text::layout::format::CloudOcrReader;
using qent::text::layout::format::WebAnnoWriter;

const std::string kHeader = "#FORMAT=WebAnno TSV 3.2\n#T_SP=webanno.custom.Mention|value\n\n";

struct WriteCase {
  const char* label;
  const char* tree;
  const char* body;  // what follows the header
};
void PrintTo(const WriteCase& k, std::ostream* out) { *out << k.label; }

class WebAnnoWriterCases : public ::testing::TestWithParam<WriteCase> {};

TEST_P(WebAnnoWriterCases, WritesTheDocument) {
  const auto layout = parseLayout(GetParam().tree);
  EXPECT_EQ(WebAnnoWriter().write(*layout), kHeader + GetParam().body);
}

INSTANTIATE_TEST_SUITE_P(
    Rules, WebAnnoWriterCases,
    ::testing::Values(
        WriteCase{"OneSentenceWithAMarkedWord",
                  "Content:node{Page{Line{Word\"Hello\",Word\"world\"(sens=1,entity=\"person 12\")}}}",
                  "\n#Text=Hello world\n1-1\t0-5\tHello\t_\n1-2\t6-11\tworld\tsensitive[12]\n"},
        WriteCase{"NoLinesGiveTheHeaderAlone", "Content:node{Page{Image\"p.png\"}}", ""},
        WriteCase{"LineWithoutWordsGivesAnEmptySentence", "Content:node{Page{Line}}",
                  "\n#Text=\n"},
        WriteCase{"OffsetsRunOnAcrossLines", "Content:node{Page{Line{Word\"a\"},Line{Word\"bb\"}}}",
                  "\n#Text=a\n1-1\t0-1\ta\t_\n\n#Text=bb\n2-1\t2-4\tbb\t_\n"},
        WriteCase{"OffsetsRunOnAcrossPages",
                  "Content:node{Page{Line{Word\"ab\"}},Page{Box{Line{Word\"c\",Word\"d\"}}}}",
                  "\n#Text=ab\n1-1\t0-2\tab\t_\n\n#Text=c d\n2-1\t3-4\tc\t_\n2-2\t5-6\td\t_\n"},
        WriteCase{"OffsetsCountUtf8Bytes",
                  "Line{Word\"Gr\xC3\xB6\xC3\x9F" "e\",Word\"\xE2\x82\xAC\",Word\"\xF0\x9F\x98\x80\"}",
                  "\n#Text=Gr\xC3\xB6\xC3\x9F" "e \xE2\x82\xAC \xF0\x9F\x98\x80\n"
                  "1-1\t0-7\tGr\xC3\xB6\xC3\x9F" "e\t_\n1-2\t8-11\t\xE2\x82\xAC\t_\n"
                  "1-3\t12-16\t\xF0\x9F\x98\x80\t_\n"},
        WriteCase{"SensitiveWithoutEntityGivesEmptyBrackets", "Line{Word\"a\"(sens=0.5)}",
                  "\n#Text=a\n1-1\t0-1\ta\tsensitive[]\n"},
        WriteCase{"InsensitiveIgnoresItsEntity",
                  "Line{Word\"a\"(entity=\"person 1\"),Word\"b\"(sens=-1,entity=\"x 2\")}",
                  "\n#Text=a b\n1-1\t0-1\ta\t_\n1-2\t2-3\tb\t_\n"},
        WriteCase{"EntityIdIsTheLastToken",
                  "Line{Word\"a\"(sens=1,entity=\"place\"),Word\"b\"(sens=1,entity=\"  org\\t7  \"),"
                  "Word\"c\"(sens=1,entity=\"  \")}",
                  "\n#Text=a b c\n1-1\t0-1\ta\tsensitive[place]\n1-2\t2-3\tb\tsensitive[7]\n"
                  "1-3\t4-5\tc\tsensitive[]\n"},
        WriteCase{"EntityAttributeServesWhenTheFieldIsEmpty",
                  "Line{Word\"a\"(sens=1,@x_entity=\"person 3\"),"
                  "Word\"b\"(sens=1,entity=\"org 4\",@x_entity=\"person 5\")}",
                  "\n#Text=a b\n1-1\t0-1\ta\tsensitive[3]\n1-2\t2-3\tb\tsensitive[4]\n"},
        WriteCase{"TrailingWhiteSpaceLeavesTheSentenceNotTheRow",
                  "Line{Word\"a\",Word\"b \\t\"}",
                  "\n#Text=a b\n1-1\t0-1\ta\t_\n1-2\t2-5\tb \t\t_\n"},
        WriteCase{"TextsAreNotEscaped", "Line{Word\"x\\ty[1]\\nz\"}",
                  "\n#Text=x\ty[1]\nz\n1-1\t0-8\tx\ty[1]\nz\t_\n"},
        WriteCase{"WordWithoutTextReadsAsItsGlyphs",
                  "Line{Word{Glyph\"a\",Glyph\"b\"},Word\"cd\"{Glyph\"x\"}}",
                  "\n#Text=ab cd\n1-1\t0-2\tab\t_\n1-2\t3-5\tcd\t_\n"},
        WriteCase{"EmptyWordsStillTakeASeparator", "Line{Word,Word\"a\",Word}",
                  "\n#Text= a\n1-1\t0-0\t\t_\n1-2\t1-2\ta\t_\n1-3\t3-3\t\t_\n"},
        WriteCase{"WordsOutsideLinesBelongToSentenceZeroOrTheLastOne",
                  "Page{Word\"a\",Line{Word\"b\"},Box{Word\"c\"}}",
                  "0-1\t0-1\ta\t_\n\n#Text=b\n1-1\t2-3\tb\t_\n1-2\t4-5\tc\t_\n"},
        WriteCase{"WordsBelowBoxesInsideALineCount", "Line{Box{Word\"a\"},Content:x{Word\"b\"}}",
                  "\n#Text=a b\n1-1\t0-1\ta\t_\n1-2\t2-3\tb\t_\n"},
        WriteCase{"PicturesAndFieldsWriteNoRows",
                  "Line{Word\"a\",Picture{Word\"p\"},Field{Word\"f\"}}",
                  "\n#Text=a p f\n1-1\t0-1\ta\t_\n"},
        // The outer word numbers its row after its children have counted theirs.
        WriteCase{"NestedWordsWriteTheirRowsFirst", "Line{Word\"a\"{Word\"b\"}}",
                  "\n#Text=a b\n1-2\t0-1\tb\t_\n1-2\t2-3\ta\t_\n"}));

TEST(WebAnnoWriterTest, LayoutWithoutRootGivesTheHeader) {
  EXPECT_EQ(WebAnnoWriter().write(Layout()), kHeader);
}

TEST(WebAnnoWriterTest, EveryWriteStartsCountingAfresh) {
  auto tree = parseDump("Page{Line{Word\"a\"},Line{Word\"b\"}}");
  WebAnnoWriter writer;
  const std::string first = writer.write(*tree);
  EXPECT_EQ(writer.write(*tree), first);
  Node& secondLine = tree->child(1);
  EXPECT_EQ(writer.write(secondLine), kHeader + "\n#Text=b\n1-1\t0-1\tb\t_\n");
}

TEST(WebAnnoWriterTest, TextThatIsNotUnicodeIsRefusedNamingTheWord) {
  const auto layout = layoutOf(root(page(line(
      Rect{}, word(u"ok"), with(word(std::u16string(1, u'\xD800')), [](Word& w) { w.setId(u"w7"); })))));
  try {
    WebAnnoWriter().write(*layout);
    FAIL() << "wrote a lone surrogate";
  } catch (const std::invalid_argument& e) {
    EXPECT_NE(std::string(e.what()).find("word \"w7\""), std::string::npos) << e.what();
  }
}

// Two pages of an invoice as the layout readers make it: boxes, lines, glyph-only words,
// marked names and amounts, non-ASCII text, an empty line and a picture.
const char* const kRichLayout =
    "Content:node{"
    "Page#p1(w=2480,h=3508){"
    "Image\"scan-1.png\","
    "Box#b1[100,100,900,200]{"
    "Line#l1[100,100,900,40]{Word#w1\"Rechnung\",Word#w2\"Nr.\",Word#w3\"2024-117\"(sens=0.9,"
    "entity=\"invoice 3\")},"
    "Line#l2[100,150,900,40]{Word#w4\"Herrn\",Word#w5\"J\xC3\xBCrgen\"(sens=1,entity=\"person 1\"),"
    "Word#w6\"M\xC3\xBCller\"(sens=1,entity=\"person 1\")},"
    "Line#l3[100,200,900,40]"
    "},"
    "Picture[1200,100,400,400]{Word\"logo\"}"
    "},"
    "Page#p2(w=2480,h=3508){"
    "Line#l4{Word#w7{Glyph\"1\",Glyph\".\",Glyph\"234\"},Word#w8\"EUR\",Word#w9\"\xE2\x82\xAC\"(sens=0.2)}"
    "}}";

TEST(WebAnnoWriterGoldenTest, RichLayout) {
  expectGolden("webanno/rich-layout.tsv", WebAnnoWriter().write(*parseLayout(kRichLayout)));
}

// A cloud-OCR answer, whose words hold their text only in their glyphs.
TEST(WebAnnoWriterGoldenTest, FromCloudOcr) {
  const auto layout =
      CloudOcrReader().read(readTestData("cloud-ocr/hand-made.json"));
  expectGolden("webanno/from-cloud-ocr.tsv", WebAnnoWriter().write(*layout));
}

}  // namespace
}  // namespace qent::test
