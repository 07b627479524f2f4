// WebAnnoReaderTest.cpp - WebAnno TSV to trees: sentences and lines, token rows, labels,
// errors, and round trips through the writer.
#include "layout/format/WebAnnoReader.h"

#include "base/QentException.h"
#include "layout/Layout.h"
#include "layout/Nodes.h"
#include "layout/format/WebAnnoWriter.h"
#include "support/LayoutBuilders.h"
#include "support/LayoutDump.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace qent::test {
namespace {

using namespace qent::text::layout;
using qent::text::layout::format::WebAnnoReader;
using qent::text::layout::format::WebAnnoWriter;

const std::string kHeader = "#FORMAT=WebAnno TSV 3.2\n#T_SP=webanno.custom.Mention|value\n\n";

// The page of the read tree, stated as its dump.
std::string readPage(const std::string& body) {
  const auto layout = WebAnnoReader().read(kHeader + body);
  EXPECT_EQ(layout->format(), 2u);
  const Node& root = *layout->root();
  EXPECT_EQ(dump(root).rfind("Content:node{Page#page_1", 0), 0u) << dump(root);
  return dump(root.child(0));
}

struct ReadCase {
  const char* label;
  const char* body;  // what follows the header
  const char* page;  // dump of the page read
};
void PrintTo(const ReadCase& k, std::ostream* out) { *out << k.label; }

class WebAnnoReaderCases : public ::testing::TestWithParam<ReadCase> {};

TEST_P(WebAnnoReaderCases, BuildsTheTree) {
  EXPECT_EQ(readPage(GetParam().body), GetParam().page);
}

INSTANTIATE_TEST_SUITE_P(
    Rules, WebAnnoReaderCases,
    ::testing::Values(
        ReadCase{"SensitiveWordGetsSensibilityAndEntity",
                 "\n#Text=Hello world\n1-1\t0-5\tHello\t_\n1-2\t6-11\tworld\tsensitive[12]\n",
                 "Page#page_1{Line#line_1{Word#word_1_1\"Hello\","
                 "Word#word_1_2\"world\"(sens=1,entity=\"other 12\")}}"},
        ReadCase{"HeaderAloneGivesAnEmptyPage", "", "Page#page_1"},
        ReadCase{"EverySentenceIsALineEvenWithoutTokens",
                 "\n#Text=\n\n#Text=b\n2-1\t0-1\tb\t_\n",
                 "Page#page_1{Line#line_1,Line#line_2{Word#word_2_1\"b\"}}"},
        ReadCase{"ConsecutiveTextRowsAreOneSentence",
                 "#Text=This is\n#Text=a test .\n1-1\t0-4\tThis\t*\n1-2\t5-7\tis\t_\n",
                 "Page#page_1{Line#line_1{Word#word_1_1\"This\",Word#word_1_2\"is\"}}"},
        ReadCase{"TokensWithoutSentenceRowsAreLinedUpBySentenceNumber",
                 "1-1\t0-1\ta\n1-2\t2-3\tb\n2-1\t4-5\tc\n",
                 "Page#page_1{Line#line_1{Word#word_1_1\"a\",Word#word_1_2\"b\"},"
                 "Line#line_2{Word#word_2_1\"c\"}}"},
        ReadCase{"ANewSentenceNumberStartsALineEvenInsideOneText",
                 "#Text=a b\n1-1\t0-1\ta\n2-1\t2-3\tb\n",
                 "Page#page_1{Line#line_1{Word#word_1_1\"a\"},Line#line_2{Word#word_2_1\"b\"}}"},
        ReadCase{"SentenceZeroTokensComeFirst", "0-1\t0-1\ta\t_\n\n#Text=b\n1-1\t2-3\tb\t_\n",
                 "Page#page_1{Line#line_1{Word#word_0_1\"a\"},Line#line_2{Word#word_1_1\"b\"}}"},
        ReadCase{"LabelRules",
                 "#Text=x\n1-1\t0-1\ta\tSENSITIVE[Person 7]\n1-2\t0-1\tb\tsensitive\n"
                 "1-3\t0-1\tc\tinsensitive[]\n1-4\t0-1\td\tPER[2]\n1-5\t0-1\te\t_\n"
                 "1-6\t0-1\tf\tsensitive[a]b]\n1-7\t0-1\tg\tsensitive][\n1-8\t0-1\th\tsensitive[  ]\n",
                 "Page#page_1{Line#line_1{Word#word_1_1\"a\"(sens=1,entity=\"other Person 7\"),"
                 "Word#word_1_2\"b\"(sens=1),Word#word_1_3\"c\"(sens=1),Word#word_1_4\"d\","
                 "Word#word_1_5\"e\",Word#word_1_6\"f\"(sens=1,entity=\"other a]b\"),"
                 "Word#word_1_7\"g\"(sens=1),Word#word_1_8\"h\"(sens=1)}}"},
        ReadCase{"OnlyAFourthOfFourColumnsIsALabel",
                 "#Text=x\n1-1\t0-1\ta\tsensitive[1]\tmore\n1-2\t0-1\tb\n",
                 "Page#page_1{Line#line_1{Word#word_1_1\"a\",Word#word_1_2\"b\"}}"},
        ReadCase{"TrimmingTakesAnEmptyTextColumn",
                 "#Text=x\n1-1\t0-0\t\t\n1-2\t1-1\t\t_\n",
                 "Page#page_1{Line#line_1{Word#word_1_1,Word#word_1_2}}"},
        ReadCase{"TextKeepsInnerBlanksAndSymbols",
                 "#Text=x\n1-1\t0-6\t a #b \t_\n1-2\t7-9\t\xC3\xBC\t_\n",
                 "Page#page_1{Line#line_1{Word#word_1_1\" a #b \",Word#word_1_2\"\xC3\xBC\"}}"},
        ReadCase{"SubTokensAreSkipped",
                 "#Text=aaaaaa bb\n1-1\t0-6\taaaaaa\t_\n1-1.1\t3-6\taaa\t_\n1-2\t7-9\tbb\t_\n",
                 "Page#page_1{Line#line_1{Word#word_1_1\"aaaaaa\",Word#word_1_2\"bb\"}}"},
        ReadCase{"WindowsLineEndsAndOtherHeaderRows",
                 "#T_CH=x|y\r\n\r\n#Text=a\r\n1-1\t0-1\ta\tsensitive[4]\r\n",
                 "Page#page_1{Line#line_1{Word#word_1_1\"a\"(sens=1,entity=\"other 4\")}}"}));

TEST(WebAnnoReaderTest, ByteOrderMarkAndOtherVersionsAreAccepted) {
  const auto layout = WebAnnoReader().read("\xEF\xBB\xBF#FORMAT=WebAnno TSV 3.3\n\n#Text=a\n1-1\t0-1\ta\n");
  EXPECT_EQ(dump(*layout), "Content:node{Page#page_1{Line#line_1{Word#word_1_1\"a\"}}}");
}

struct BadCase {
  const char* label;
  std::string text;
  std::string message;
};
void PrintTo(const BadCase& k, std::ostream* out) { *out << k.label; }

class WebAnnoReaderErrors : public ::testing::TestWithParam<BadCase> {};

TEST_P(WebAnnoReaderErrors, FailWithCode20001) {
  try {
    WebAnnoReader().read(GetParam().text);
    FAIL() << "read without error";
  } catch (const qent::base::QentException& e) {
    EXPECT_EQ(e.code(), 20001u);
    EXPECT_EQ(e.what(), GetParam().message);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Inputs, WebAnnoReaderErrors,
    ::testing::Values(
        BadCase{"NoHeader", "1-1\t0-1\ta\t_\n",
                "WebAnno TSV: the text does not begin with a #FORMAT=WebAnno TSV header"},
        BadCase{"Empty", "", "WebAnno TSV: the text does not begin with a #FORMAT=WebAnno TSV header"},
        BadCase{"OneColumn", kHeader + "#Text=a\nhello\n",
                "WebAnno TSV: row 5 is not a token row (a token id such as 1-3, a tab and offsets "
                "such as 0-5 must begin it): \"hello\""},
        BadCase{"TokenIdWithoutDash", kHeader + "1\t0-1\ta\n",
                "WebAnno TSV: row 4 is not a token row (a token id such as 1-3, a tab and offsets "
                "such as 0-5 must begin it): \"1\t0-1\ta\""},
        BadCase{"BadSubTokenId", kHeader + "1-1.x\t0-1\ta\n",
                "WebAnno TSV: row 4 is not a token row (a token id such as 1-3, a tab and offsets "
                "such as 0-5 must begin it): \"1-1.x\t0-1\ta\""},
        BadCase{"BadOffsets", kHeader + "1-1\t0:1\ta\n",
                "WebAnno TSV: row 4 is not a token row (a token id such as 1-3, a tab and offsets "
                "such as 0-5 must begin it): \"1-1\t0:1\ta\""},
        BadCase{"LineBreakInsideAWrittenText", kHeader + "\n#Text=a\nb\n1-1\t0-3\ta\nb\t_\n",
                "WebAnno TSV: row 6 is not a token row (a token id such as 1-3, a tab and offsets "
                "such as 0-5 must begin it): \"b\""},
        BadCase{"LongRowIsCut", kHeader + std::string(100, 'x'),
                "WebAnno TSV: row 4 is not a token row (a token id such as 1-3, a tab and offsets "
                "such as 0-5 must begin it): \"" + std::string(60, 'x') + "...\""},
        BadCase{"InvalidUtf8", kHeader + "#Text=a\n1-1\t0-1\t\xC3\t_\n",
                "WebAnno TSV: row 5 is not valid UTF-8"}));

// Layout -> TSV -> layout -> TSV gives the same text: every row the writer makes reads back
// to a word with the same text and mark in the same sentence.
std::string roundTrip(const std::string& tsv) {
  return WebAnnoWriter().write(*WebAnnoReader().read(tsv));
}

TEST(WebAnnoRoundTripTest, WriterOutputReadsBackToTheSameText) {
  const char* const trees[] = {
      "Content:node",
      "Content:node{Page{Line}}",
      "Content:node{Page{Line{Word\"Hello\",Word\"world\"(sens=1,entity=\"person 12\")}}}",
      "Content:node{Page{Line,Line{Word\"a\"},Line,Line}}",
      "Content:node{Page{Box{Line{Word\"a\"(sens=0.5),Word\"b\"(sens=2,entity=\"x [y]\")}}},"
      "Page{Line{Word{Glyph\"g\"},Word,Word\" \",Word\"#\",Word\"_\",Word\"sensitive[1]\"}}}",
  };
  for (const char* tree : trees) {
    const std::string tsv = WebAnnoWriter().write(*parseLayout(tree));
    EXPECT_EQ(roundTrip(tsv), tsv) << tree;
  }
}

TEST(WebAnnoRoundTripTest, SeededRandomLayoutsSurviveTheRoundTrip) {
  // Texts from an alphabet with the characters that could confuse a reader: blanks,
  // brackets, "#", "_", "-", digits and non-ASCII letters (tabs and line breaks are not
  // escaped by the format, so they are left out).
  const std::u16string alphabet = u"ab #_-[]1\u00fc\u20ac";
  std::mt19937 random(20240517);
  auto pick = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
  for (int round = 0; round < 200; ++round) {
    auto rootNode = root();
    for (int p = pick(3); p >= 0; --p) {
      auto& pageNode = rootNode->appendChild(page());
      for (int l = pick(4); l > 0; --l) {
        auto& lineNode = pageNode.appendChild(line(Rect{}));
        for (int w = pick(5); w > 0; --w) {
          std::u16string text;
          for (int c = pick(6); c > 0; --c) text += alphabet[static_cast<std::size_t>(pick(11))];
          auto& wordNode = lineNode.appendChild(word(text));
          if (pick(3) == 0) wordNode.setXSensibility(0.25 * pick(5));
          if (pick(2) == 0) wordNode.setXEntity(pick(2) == 0 ? "person 1" : "org [x]");
        }
      }
    }
    const auto layout = layoutOf(std::move(rootNode));
    const std::string tsv = WebAnnoWriter().write(*layout);
    const auto read = WebAnnoReader().read(tsv);
    ASSERT_EQ(WebAnnoWriter().write(*read), tsv) << "round " << round;
  }
}

}  // namespace
}  // namespace qent::test
