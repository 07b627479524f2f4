// CloudOcrSamplesTest.cpp - real cloud-OCR answers: each loads with the structure stated
// here, its node ids follow document order, and its text reads as stated.
#include "layout/format/CloudOcrReader.h"

#include "base/Unicode.h"
#include "layout/IteratorTemplate.h"
#include "layout/Layout.h"
#include "layout/Nodes.h"
#include "layout/format/PlainTextWriter.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

namespace {

using namespace qent::text::layout;
using qent::text::layout::format::CloudOcrReader;
using qent::text::layout::format::PlainTextWriter;

enum class Source { ThirdParty, Shared };

struct SampleCase {
  const char* file;
  Source source;
  int pages, paragraphs, lines, words, glyphs;
  const char* firstLine;  // the words of the first line, joined by blanks
};
void PrintTo(const SampleCase& k, std::ostream* out) { *out << k.file; }

std::filesystem::path locate(const SampleCase& k) {
  if (k.source == Source::ThirdParty) {
    return std::filesystem::path(ORMIDA_TEST_DATA_DIR) / "third_party" / "cloud-ocr" / k.file;
  }
  return std::filesystem::path(ORMIDA_SOURCE_DIR) / ".." / "shared" / "samples" / "cloud-ocr" /
         k.file;
}

template <class T>
int countOf(Node* root) {
  int count = 0;
  for (IteratorTemplate<T> it(root); !it.atEnd(); ++it) ++count;
  return count;
}

class CloudOcrSamplesTest : public ::testing::TestWithParam<SampleCase> {};

TEST_P(CloudOcrSamplesTest, Loads) {
  const SampleCase& k = GetParam();
  const std::filesystem::path path = locate(k);
  if (!std::filesystem::exists(path)) {
    GTEST_SKIP() << "sample not available here (shared samples are read from ../shared/samples "
                    "beside the repository): "
                 << path.string();
  }
  std::ifstream in(path, std::ios::binary);
  std::stringstream bytes;
  bytes << in.rdbuf();

  const auto layout = CloudOcrReader().read(bytes.str());
  Node* root = layout->root();
  EXPECT_EQ(countOf<Page>(root), k.pages);
  EXPECT_EQ(countOf<Box>(root), k.paragraphs);
  EXPECT_EQ(countOf<Line>(root), k.lines);
  EXPECT_EQ(countOf<Word>(root), k.words);
  EXPECT_EQ(countOf<Glyph>(root), k.glyphs);
  const std::string text = qent::base::utf16ToUtf8(PlainTextWriter().write(*layout));
  EXPECT_EQ(text.substr(0, text.find('\n')), k.firstLine);

  // Ids are the creation numbers, and every node is made before its children and after
  // the nodes before it: in document order they only grow.
  long previous = 0;
  for (IteratorTemplate<Node> it(root); !it.atEnd(); ++it) {
    if (&*it == root) continue;
    const long id = std::stol(qent::base::utf16ToUtf8((*it).id()));
    EXPECT_GT(id, previous);
    previous = id;
  }
  for (IteratorTemplate<Word> it(root); !it.atEnd(); ++it) {
    EXPECT_TRUE((*it).rect().hasGeometry()) << "word " << qent::base::utf16ToUtf8((*it).id());
  }
}

INSTANTIATE_TEST_SUITE_P(
    ThirdParty, CloudOcrSamplesTest,
    ::testing::Values(
        SampleCase{"googlevision-openpecha-english-titlepage.json", Source::ThirdParty, 1, 2, 2,
                   14, 57, "SA - SKYA LAM ' BRAS LITERATURE SERIES : VOLUME 28"},
        // Twelve blocks of one word each, without any break: a line per paragraph.
        SampleCase{"googlevision-openpecha-telugu.json", Source::ThirdParty, 1, 12, 12, 12, 43,
                   "2018"},
        SampleCase{"googlevision-openpecha-tibetan-1line.json", Source::ThirdParty, 1, 1, 1, 2, 20,
                   "\xE0\xBD\x98\xE0\xBD\x82\xE0\xBD\xBC\xE0\xBD\x93\xE0\xBC\x8B\xE0\xBD\x94"
                   "\xE0\xBD\xBC\xE0\xBC\x8B\xE0\xBD\xA0\xE0\xBD\xBC\xE0\xBD\x91\xE0\xBC\x8B"
                   "\xE0\xBD\x91\xE0\xBD\x94\xE0\xBD\x82\xE0\xBC\x8B\xE0\xBD\x98\xE0\xBD\xBA"
                   "\xE0\xBD\x91 \xE0\xBC\x8D"},
        SampleCase{"googlevision-openpecha-tibetan-page.json", Source::ThirdParty, 1, 12, 17, 39,
                   169, "\xE0\xBC\x8B"}));

INSTANTIATE_TEST_SUITE_P(
    Shared, CloudOcrSamplesTest,
    ::testing::Values(
        // The annotation inside "responses"; no confidences at all, a paragraph without
        // bounding box, vertices that leave out a zero "x".
        SampleCase{"googlevision-robotoff-french-responses.min.json", Source::Shared, 1, 5, 21,
                   145, 693, "pour 4 personnes: 400 g de Penne, 2 petites courgettes"}));

}  // namespace
