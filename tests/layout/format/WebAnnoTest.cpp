// WebAnnoTest.cpp - WebAnno TSV: what the reader builds and refuses, what the writer emits,
// golden documents and round trips.
#include "layout/format/WebAnnoReader.h"
#include "layout/format/WebAnnoWriter.h"

#include "base/QentException.h"
#include "base/Unicode.h"
#include "layout/IteratorTemplate.h"
#include "layout/Layout.h"
#include "layout/Nodes.h"
#include "layout/format/CloudOcrReader.h"
#include "support/Golden.h"
#include "support/LayoutDump.h"

#include <gtest/gtest.h>

#include <random>
#include <stdexcept>
#include <string>
#include <vector>

namespace qent::test {
namespace {

using namespace qent::text::layout;
using qent::text::layout::format::CloudOcrReader;
using qent::text::layout::format::WebAnnoReader;
using qent::text::layout::format::WebAnnoWriter;

const std::string kHeader = "#FORMAT=WebAnno TSV 3.2\n#T_SP=webanno.custom.Mention|value\n\n";

struct Case {
  std::string input;
  std::string expected;
};

TEST(WebAnnoReaderTest, BuildsThePage) {
  const std::string h = kHeader;
  const Case cases[] = {
      {h, "Page#page_1"},
      {h + "\n#Text=\n\n#Text=b\n2-1\t0-1\tb\t_\n",
       "Page#page_1{Line#line_1,Line#line_2{Word#word_2_1\"b\"}}"},
      {h + "#Text=This is\n#Text=a test .\n1-1\t0-4\tThis\t*\n1-2\t5-7\tis\t_\n",
       "Page#page_1{Line#line_1{Word#word_1_1\"This\",Word#word_1_2\"is\"}}"},
      {h + "1-1\t0-1\ta\n1-2\t2-3\tb\n2-1\t4-5\tc\n",
       "Page#page_1{Line#line_1{Word#word_1_1\"a\",Word#word_1_2\"b\"},"
       "Line#line_2{Word#word_2_1\"c\"}}"},
      {h + "#Text=a b\n1-1\t0-1\ta\n2-1\t2-3\tb\n",
       "Page#page_1{Line#line_1{Word#word_1_1\"a\"},Line#line_2{Word#word_2_1\"b\"}}"},
      {h + "0-1\t0-1\ta\t_\n\n#Text=b\n1-1\t2-3\tb\t_\n",
       "Page#page_1{Line#line_1{Word#word_0_1\"a\"},Line#line_2{Word#word_1_1\"b\"}}"},
      {h + "#Text=x\n1-1\t0-1\ta\tSENSITIVE[Person 7]\n1-2\t0-1\tb\tsensitive\n"
           "1-3\t0-1\tc\tinsensitive[]\n1-4\t0-1\td\tPER[2]\n1-5\t0-1\te\t_\n"
           "1-6\t0-1\tf\tsensitive[a]b]\n1-7\t0-1\tg\tsensitive][\n1-8\t0-1\th\tsensitive[  ]\n",
       "Page#page_1{Line#line_1{Word#word_1_1\"a\"(sens=1,entity=\"other Person 7\"),"
       "Word#word_1_2\"b\"(sens=1),Word#word_1_3\"c\"(sens=1),Word#word_1_4\"d\","
       "Word#word_1_5\"e\",Word#word_1_6\"f\"(sens=1,entity=\"other a]b\"),"
       "Word#word_1_7\"g\"(sens=1),Word#word_1_8\"h\"(sens=1)}}"},
      // Only a fourth of four columns is a label.
      {h + "#Text=x\n1-1\t0-1\ta\tsensitive[1]\tmore\n1-2\t0-1\tb\n",
       "Page#page_1{Line#line_1{Word#word_1_1\"a\",Word#word_1_2\"b\"}}"},
      {h + "#Text=x\n1-1\t0-0\t\t\n1-2\t1-1\t\t_\n",
       "Page#page_1{Line#line_1{Word#word_1_1,Word#word_1_2}}"},
      {h + "#Text=x\n1-1\t0-6\t a #b \t_\n1-2\t7-9\t\xC3\xBC\t_\n",
       "Page#page_1{Line#line_1{Word#word_1_1\" a #b \",Word#word_1_2\"\xC3\xBC\"}}"},
      // Sub-tokens are skipped.
      {h + "#Text=aaaaaa bb\n1-1\t0-6\taaaaaa\t_\n1-1.1\t3-6\taaa\t_\n1-2\t7-9\tbb\t_\n",
       "Page#page_1{Line#line_1{Word#word_1_1\"aaaaaa\",Word#word_1_2\"bb\"}}"},
      {h + "#T_CH=x|y\r\n\r\n#Text=a\r\n1-1\t0-1\ta\tsensitive[4]\r\n",
       "Page#page_1{Line#line_1{Word#word_1_1\"a\"(sens=1,entity=\"other 4\")}}"},
      {"\xEF\xBB\xBF#FORMAT=WebAnno TSV 3.3\n\n#Text=a\n1-1\t0-1\ta\n",
       "Page#page_1{Line#line_1{Word#word_1_1\"a\"}}"},
      // Rows without a text column are skipped; escapes in feature columns split nothing.
      {h + "#Text=a b\n1-1\t0-1\n1-2\n1-3\t2-3\tb\tx\\|y\\tz\t\\_\n",
       "Page#page_1{Line#line_1{Word#word_1_3\"b\"}}"}};
  for (const Case& c : cases) {
    const auto layout = WebAnnoReader().read(c.input);
    EXPECT_EQ(layout->format(), 2u);
    ASSERT_EQ(layout->root()->childCount(), 1u) << c.input;
    EXPECT_EQ(dump(layout->root()->child(0)), c.expected) << c.input;
  }
}

TEST(WebAnnoReaderTest, RefusesBadInputNamingTheRow) {
  const std::string noHeader =
      "WebAnno TSV: the text does not begin with a #FORMAT=WebAnno TSV header";
  const std::string notToken =
      "is not a token row (a token id such as 1-3, a tab and offsets such as 0-5 must begin it)";
  const Case cases[] = {
      {"1-1\t0-1\ta\t_\n", noHeader},
      {"", noHeader},
      {kHeader + "#Text=a\nhello\n", "WebAnno TSV: row 5 " + notToken + ": \"hello\""},
      {kHeader + "1\t0-1\ta\n", "WebAnno TSV: row 4 " + notToken + ": \"1\t0-1\ta\""},
      {kHeader + "1-1.x\t0-1\ta\n", "WebAnno TSV: row 4 " + notToken + ": \"1-1.x\t0-1\ta\""},
      {kHeader + "1-1\t0:1\ta\n", "WebAnno TSV: row 4 " + notToken + ": \"1-1\t0:1\ta\""},
      // A line break inside a text is not escaped by the format.
      {kHeader + "\n#Text=a\nb\n1-1\t0-3\ta\nb\t_\n", "WebAnno TSV: row 6 " + notToken + ": \"b\""},
      {kHeader + std::string(100, 'x'),
       "WebAnno TSV: row 4 " + notToken + ": \"" + std::string(60, 'x') + "...\""},
      {kHeader + "#Text=a\n1-1\t0-1\t\xC3\t_\n", "WebAnno TSV: row 5 is not valid UTF-8"}};
  for (const Case& c : cases) {
    try {
      WebAnnoReader().read(c.input);
      ADD_FAILURE() << "read without error: " << c.input;
    } catch (const base::QentException& e) {
      EXPECT_EQ(e.code(), 20001u);
      EXPECT_EQ(e.what(), c.expected);
    }
  }
}

// The golden documents show offsets across lines and pages, UTF-8 byte counts, empty lines,
// entity ids and glyph-only words; these are the rules they cannot show.
TEST(WebAnnoWriterTest, WritesTheDocument) {
  const Case cases[] = {
      {"Content:node{Page{Image\"p.png\"}}", ""},
      {"Line{Word\"a\"(entity=\"person 1\"),Word\"b\"(sens=-1,entity=\"x 2\")}",
       "\n#Text=a b\n1-1\t0-1\ta\t_\n1-2\t2-3\tb\t_\n"},
      {"Line{Word\"a\"(sens=1,entity=\"place\"),Word\"b\"(sens=1,entity=\"  org\\t7  \"),"
       "Word\"c\"(sens=1,entity=\"  \")}",
       "\n#Text=a b c\n1-1\t0-1\ta\tsensitive[place]\n1-2\t2-3\tb\tsensitive[7]\n"
       "1-3\t4-5\tc\tsensitive[]\n"},
      // The entity attribute serves when the field is empty.
      {"Line{Word\"a\"(sens=1,@x_entity=\"person 3\"),"
       "Word\"b\"(sens=1,entity=\"org 4\",@x_entity=\"person 5\")}",
       "\n#Text=a b\n1-1\t0-1\ta\tsensitive[3]\n1-2\t2-3\tb\tsensitive[4]\n"},
      // Trailing white space leaves the sentence, not the row; texts are not escaped.
      {"Line{Word\"a\",Word\"b \\t\"}", "\n#Text=a b\n1-1\t0-1\ta\t_\n1-2\t2-5\tb \t\t_\n"},
      {"Line{Word\"x\\ty[1]\\nz\"}", "\n#Text=x\ty[1]\nz\n1-1\t0-8\tx\ty[1]\nz\t_\n"},
      {"Line{Word,Word\"a\",Word}", "\n#Text= a\n1-1\t0-0\t\t_\n1-2\t1-2\ta\t_\n1-3\t3-3\t\t_\n"},
      // Words outside lines belong to sentence zero or to the last sentence.
      {"Page{Word\"a\",Line{Word\"b\"},Box{Word\"c\"}}",
       "0-1\t0-1\ta\t_\n\n#Text=b\n1-1\t2-3\tb\t_\n1-2\t4-5\tc\t_\n"},
      {"Line{Box{Word\"a\"},Content:x{Word\"b\"}}", "\n#Text=a b\n1-1\t0-1\ta\t_\n1-2\t2-3\tb\t_\n"},
      {"Line{Word\"a\",Picture{Word\"p\"},Field{Word\"f\"}}", "\n#Text=a p f\n1-1\t0-1\ta\t_\n"},
      // The outer word numbers its row after its children have counted theirs.
      {"Line{Word\"a\"{Word\"b\"}}", "\n#Text=a b\n1-2\t0-1\tb\t_\n1-2\t2-3\ta\t_\n"}};
  for (const Case& c : cases) {
    EXPECT_EQ(WebAnnoWriter().write(*parseLayout(c.input)), kHeader + c.expected) << c.input;
  }
  EXPECT_EQ(WebAnnoWriter().write(Layout()), kHeader);
  // Every write counts afresh, also when it starts below the root.
  auto tree = parseDump("Page{Line{Word\"a\"},Line{Word\"b\"}}");
  WebAnnoWriter writer;
  EXPECT_EQ(writer.write(*tree), writer.write(*tree));
  EXPECT_EQ(writer.write(tree->child(1)), kHeader + "\n#Text=b\n1-1\t0-1\tb\t_\n");
}

TEST(WebAnnoWriterTest, TextThatIsNotUnicodeIsRefusedNamingTheWord) {
  auto line = parseDump("Line{Word\"ok\",Word#w7}");
  static_cast<Word&>(line->child(1)).setText(std::u16string(1, u'\xD800'));
  try {
    WebAnnoWriter().write(*line);
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

TEST(WebAnnoGoldenTest, RichLayoutAndCloudOcrAnswer) {
  const std::string rich = WebAnnoWriter().write(*parseLayout(kRichLayout));
  expectGolden("webanno/rich-layout.tsv", rich);
  EXPECT_EQ(WebAnnoWriter().write(*WebAnnoReader().read(rich)), rich);
  // A cloud-OCR answer's words hold their text only in their glyphs.
  expectGolden("webanno/from-cloud-ocr.tsv",
               WebAnnoWriter().write(*CloudOcrReader().read(readTestData("cloud-ocr/hand-made.json"))));
}

// Layout -> TSV -> layout -> TSV gives the same text: every row the writer makes reads back
// to a word with the same text and mark in the same sentence.
TEST(WebAnnoRoundTripTest, RandomLayoutsSurviveTheRoundTrip) {
  // Texts from an alphabet with the characters that could confuse a reader: blanks,
  // brackets, "#", "_", "-", digits and non-ASCII letters (tabs and line breaks are not
  // escaped by the format, so they are left out).
  const std::u16string alphabet = u"ab #_-[]1\u00fc\u20ac";
  std::mt19937 random(20240517);
  auto pick = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
  for (int round = 0; round < 200; ++round) {
    auto rootNode = parseDump("Content:node");
    for (int p = pick(3); p >= 0; --p) {
      auto& pageNode = rootNode->appendChild(std::make_unique<Page>());
      for (int l = pick(4); l > 0; --l) {
        auto& lineNode = pageNode.appendChild(std::make_unique<Line>());
        for (int w = pick(5); w > 0; --w) {
          auto& wordNode = lineNode.appendChild(std::make_unique<Word>());
          std::u16string text;
          for (int c = pick(6); c > 0; --c) text += alphabet[static_cast<std::size_t>(pick(11))];
          wordNode.setText(text);
          if (pick(3) == 0) wordNode.setXSensibility(0.25 * pick(5));
          if (pick(2) == 0) wordNode.setXEntity(pick(2) == 0 ? "person 1" : "org [x]");
          if (pick(8) == 0) wordNode.appendChild(parseDump("Glyph\"g\""));
        }
      }
    }
    const std::string tsv = WebAnnoWriter().write(*rootNode);
    ASSERT_EQ(WebAnnoWriter().write(*WebAnnoReader().read(tsv)), tsv) << "round " << round;
  }
}

std::vector<std::string> split(std::string_view text, char at) {
  std::vector<std::string> pieces;
  for (std::size_t start = 0;;) {
    const std::size_t end = text.find(at, start);
    pieces.emplace_back(text.substr(start, end - start));
    if (end == std::string_view::npos) return pieces;
    start = end + 1;
  }
}

// In UTF-16 mode every token's offsets, counted in code units, slice exactly its text out of
// the document text as the writer counts it: each word followed by one separator.
TEST(WebAnnoWriterTest, Utf16OffsetsSliceEveryTokenOutOfTheText) {
  const std::u16string pieces[] = {u"a", u"\u00fc", u"\u20ac", u"\U0001F60A", u"\U0001D11E", u" "};
  std::mt19937 random(7);
  auto pick = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
  for (int round = 0; round < 100; ++round) {
    auto page = parseDump("Page");
    std::u16string document;
    std::size_t words = 0, rows = 0;
    for (int l = pick(4); l > 0; --l) {
      auto& line = page->appendChild(std::make_unique<Line>());
      for (int w = pick(5); w > 0; --w) {
        std::u16string text;
        for (int c = pick(5); c > 0; --c) text += pieces[static_cast<std::size_t>(pick(6))];
        line.appendChild(std::make_unique<Word>()).setText(text);
        document += text + u" ";
        ++words;
      }
    }
    const std::string tsv = WebAnnoWriter(WebAnnoWriter::Offsets::Utf16CodeUnits).write(*page);
    for (const std::string& row : split(tsv, '\n')) {
      if (row.empty() || row[0] == '#') continue;
      const std::vector<std::string> columns = split(row, '\t');
      const std::vector<std::string> offsets = split(columns[1], '-');
      const std::size_t begin = std::stoul(offsets[0]), end = std::stoul(offsets[1]);
      ASSERT_LE(end, document.size()) << row;
      EXPECT_EQ(base::utf16ToUtf8(document.substr(begin, end - begin)), columns[2]) << row;
      ++rows;
    }
    EXPECT_EQ(rows, words);
  }
}

// Every real WebAnno file (the shared samples, else the copies in the repository) reads with
// its tokens in order, and writing them in either offset mode reads back the same tokens.
TEST(WebAnnoReaderTest, ReadsEveryRealSampleWithItsTokensInOrder) {
  const auto files = realSamples("webanno");
  EXPECT_GE(files.size(), 10u);
  auto wordsOf = [](const Layout& layout) {
    std::vector<std::string> words;
    for (IteratorTemplate<Word> it(layout.root()); !it.atEnd(); ++it) {
      words.push_back(base::utf16ToUtf8((*it).text()));
    }
    return words;
  };
  for (const auto& [name, path] : files) {
    const std::string text = readAll(path);
    std::vector<std::string> tokens;  // column 3 of each row that is not a sub-token
    for (std::string row : split(text, '\n')) {
      if (!row.empty() && row.back() == '\r') row.pop_back();
      const std::vector<std::string> columns = split(row, '\t');
      if (!row.empty() && row[0] != '#' && columns[0].find('.') == std::string::npos) {
        tokens.push_back(columns[2]);
      }
    }
    const auto layout = WebAnnoReader().read(text);
    EXPECT_EQ(wordsOf(*layout), tokens) << name;
    for (const auto offsets : {WebAnnoWriter::Offsets::Utf8Bytes, WebAnnoWriter::Offsets::Utf16CodeUnits}) {
      EXPECT_EQ(wordsOf(*WebAnnoReader().read(WebAnnoWriter(offsets).write(*layout))), tokens) << name;
    }
    if (name != "webanno-emoji-utf16-offsets.tsv") continue;
    // The emoji is two UTF-16 code units, as WebAnno counts, or four bytes.
    const std::string row = "1-4\t10-12\t\xF0\x9F\x98\x8A\t";
    EXPECT_NE(WebAnnoWriter(WebAnnoWriter::Offsets::Utf16CodeUnits).write(*layout).find(row),
              std::string::npos);
    EXPECT_NE(WebAnnoWriter().write(*layout).find("1-4\t10-14\t"), std::string::npos);
  }
}

}  // namespace
}  // namespace qent::test
