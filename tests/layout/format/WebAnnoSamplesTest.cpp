// WebAnnoSamplesTest.cpp - WebAnno TSV written by WebAnno itself: every file loads with the
// sentences and tokens stated here, and what the writer makes of it reads back unchanged.
#include "layout/format/WebAnnoReader.h"
#include "layout/format/WebAnnoWriter.h"

#include "base/Unicode.h"
#include "layout/IteratorTemplate.h"
#include "layout/Layout.h"
#include "layout/Nodes.h"
#include "support/LayoutDump.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

namespace {

using namespace qent::text::layout;
using qent::text::layout::format::WebAnnoReader;
using qent::text::layout::format::WebAnnoWriter;

struct SampleCase {
  const char* file;
  int lines, words;
  const char* firstWord;
  const char* lastWord;
};
void PrintTo(const SampleCase& k, std::ostream* out) { *out << k.file; }

class WebAnnoSamplesTest : public ::testing::TestWithParam<SampleCase> {};

TEST_P(WebAnnoSamplesTest, LoadsAndSurvivesTheWriter) {
  const SampleCase& k = GetParam();
  const auto path =
      std::filesystem::path(ORMIDA_TEST_DATA_DIR) / "third_party" / "webanno" / k.file;
  std::ifstream in(path, std::ios::binary);
  ASSERT_TRUE(in) << path;
  std::stringstream bytes;
  bytes << in.rdbuf();

  const auto layout = WebAnnoReader().read(bytes.str());
  std::vector<std::string> words;
  for (IteratorTemplate<Word> it(layout->root()); !it.atEnd(); ++it) {
    words.push_back(qent::base::utf16ToUtf8((*it).text()));
    EXPECT_LE((*it).xSensibility(), 0) << "no sample uses the sensitive layer";
  }
  int lines = 0;
  for (IteratorTemplate<Line> it(layout->root()); !it.atEnd(); ++it) ++lines;
  EXPECT_EQ(lines, k.lines);
  ASSERT_EQ(static_cast<int>(words.size()), k.words);
  EXPECT_EQ(words.front(), k.firstWord);
  EXPECT_EQ(words.back(), k.lastWord);

  const auto again = WebAnnoReader().read(WebAnnoWriter().write(*layout));
  EXPECT_EQ(qent::test::dump(*again), qent::test::dump(*layout));
}

INSTANTIATE_TEST_SUITE_P(
    ThirdParty, WebAnnoSamplesTest,
    ::testing::Values(
        // Three columns and a trailing tab: trimming leaves the text as the last column.
        SampleCase{"webanno-brat-multiline-no-layers.tsv", 3, 15, "This", "."},
        // Span labels such as PERSON[1] are not sensitive marks.
        SampleCase{"webanno-cross-sentence-span.tsv", 2, 9, "He", "."},
        SampleCase{"webanno-curation-relationLabel-user1-german.tsv", 1, 26, "Heutzutage", "."},
        SampleCase{"webanno-emoji-utf16-offsets.tsv", 1, 5, "I", "."},
        SampleCase{"webanno-example2-pos-ne-dep.tsv", 7, 86, "Ms.", "."},
        // Two "#Text=" rows of one sentence give one line.
        SampleCase{"webanno-sentence-with-linebreak.tsv", 1, 5, "This", "."},
        SampleCase{"webanno-simple-chain.tsv", 1, 5, "This", "."},
        SampleCase{"webanno-slot-feature-cross-sentence.tsv", 2, 9, "He", "."},
        // Label columns that begin with "#" do not hide their rows.
        SampleCase{"webanno-special-symbols-escaping.tsv", 1, 5, "This", "."},
        // Sub-token rows (1-1.1, ...) are parts of the tokens before them.
        SampleCase{"webanno-sub-multitoken-span.tsv", 1, 3, "aaaaaa", "cccccc"}));

}  // namespace
