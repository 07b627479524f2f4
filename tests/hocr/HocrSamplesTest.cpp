// HocrSamplesTest.cpp - real hOCR from other engines and projects: each file either loads
// (with the structure stated here, and survives writing and reading back unchanged) or fails
// with the reader's documented error.
#include "hocr/HocrStructure.h"
#include "hocr/HocrWriter.h"
#include "hocr/PugiHocrReader.h"

#include "base/QentException.h"
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
using qent::text::hocr::HocrWriter;
using qent::text::hocr::PugiHocrReader;

enum class Source { ThirdParty, Shared, Generated };

struct SampleCase {
  const char* file;
  Source source;
  const char* error;  // nullptr: the file loads
  int pages = 0, boxes = 0, lines = 0, words = 0;
  const char* firstText = "";  // the first word with text, else the first line with text
};
void PrintTo(const SampleCase& k, std::ostream* out) { *out << k.file; }

std::filesystem::path locate(const SampleCase& k) {
  switch (k.source) {
    case Source::ThirdParty:
      return std::filesystem::path(ORMIDA_TEST_DATA_DIR) / "third_party" / "hocr" / k.file;
    case Source::Shared:
      return std::filesystem::path(ORMIDA_SOURCE_DIR) / ".." / "shared" / "samples" / "hocr" /
             k.file;
    case Source::Generated:
      return std::filesystem::path(ORMIDA_SOURCE_DIR) / "data" / "samples" / k.file;
  }
  return {};
}

template <class T>
int countOf(Node* root) {
  int count = 0;
  for (IteratorTemplate<T> it(root); !it.atEnd(); ++it) ++count;
  return count;
}

template <class T>
std::string firstTextOf(Node* root) {
  for (IteratorTemplate<T> it(root); !it.atEnd(); ++it) {
    if (!(*it).text().empty()) return qent::base::utf16ToUtf8((*it).text());
  }
  return "";
}

class HocrSamplesTest : public ::testing::TestWithParam<SampleCase> {};

TEST_P(HocrSamplesTest, LoadsOrFailsAsDocumented) {
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

  if (k.error != nullptr) {
    try {
      PugiHocrReader().read(bytes.str());
      FAIL() << "loaded, but should fail with " << k.error;
    } catch (const qent::base::QentException& e) {
      EXPECT_EQ(e.code(), 20001u);
      EXPECT_STREQ(e.what(), k.error);
    }
    return;
  }

  const auto layout = PugiHocrReader().read(bytes.str());
  Node* root = layout->root();
  EXPECT_EQ(countOf<Page>(root), k.pages);
  EXPECT_EQ(countOf<Box>(root), k.boxes);
  EXPECT_EQ(countOf<Line>(root), k.lines);
  EXPECT_EQ(countOf<Word>(root), k.words);
  const std::string first = k.words > 0 ? firstTextOf<Word>(root) : firstTextOf<Line>(root);
  EXPECT_EQ(first, k.firstText);

  const std::string written = HocrWriter().write(*layout);
  EXPECT_EQ(qent::test::hocrStructureProblems(written), std::vector<std::string>());
  const auto again = PugiHocrReader().read(written);
  EXPECT_TRUE(qent::test::dump(*again) == qent::test::dump(*layout)) << "tree changed";
  EXPECT_EQ(again->versions(), layout->versions());
}

INSTANTIATE_TEST_SUITE_P(
    ThirdParty, HocrSamplesTest,
    ::testing::Values(
        SampleCase{"tesseract3.03-hocrtools-alice.hocr", Source::ThirdParty, nullptr, 1, 10, 37,
                   503, "1"},
        SampleCase{"tesseract4.00alpha-hocrjs-deu.hocr", Source::ThirdParty, nullptr, 1, 37, 41,
                   388, "202"},
        SampleCase{"ocropy1.0-hocrtools-german-lines.hocr", Source::ThirdParty, nullptr, 1, 0, 105,
                   0,
                   "(Hrsg.). B\xC3\xBCrgerbegehren und B\xC3\xBCrgerentscheid - Situation, "
                   "Analysen, Erfordermisse. Mi\xC3\xBCnchen. S."},
        SampleCase{"hocrtools-split-two-pages-minimal.hocr", Source::ThirdParty, nullptr, 2, 0, 0,
                   0, ""},
        // Malformed upstream (a line outside its page), yet well-formed XML: it loads.
        SampleCase{"hocrtools-check-notok-line-outside-page.hocr", Source::ThirdParty, nullptr, 1,
                   0, 1, 0,
                   "Wenn ist das Nunst\xC3\xBC"
                   "ck git und Slotermeyer? Ja! Beiherhund das Oder die Flipperwaldt gersput!"},
        // An unescaped "&" in text: pugixml keeps it as it is.
        SampleCase{"kraken-legacy-hocrjs-cuts-xconfs.hocr", Source::ThirdParty, nullptr, 1, 0, 30,
                   392, "s14"},
        SampleCase{"gcv2hocr-sample1.hocr", Source::ThirdParty, nullptr, 1, 42, 43, 237, "/"},
        SampleCase{"googlebooks-gocr-openpecha-tibetan-p1.hocr", Source::ThirdParty, nullptr, 1,
                   54, 41, 146, "\xE0\xBC\x84"}));

// Made here by tools/make-hocr-samples: Tesseract 5.3's recognition of a rendered page and
// the ground truth written from the rendering.
INSTANTIATE_TEST_SUITE_P(
    Generated, HocrSamplesTest,
    ::testing::Values(
        SampleCase{"hocr-letter-eng-tesseract.hocr", Source::Generated, nullptr, 1, 6, 6, 53,
                   "Notice"},
        SampleCase{"hocr-letter-eng-truth.hocr", Source::Generated, nullptr, 1, 4, 6, 54,
                   "Notice"},
        SampleCase{"hocr-letter-deu-tesseract.hocr", Source::Generated, nullptr, 1, 6, 7, 57,
                   "Mitteilung"},
        SampleCase{"hocr-letter-deu-truth.hocr", Source::Generated, nullptr, 1, 4, 7, 57,
                   "Mitteilung"}));

INSTANTIATE_TEST_SUITE_P(
    Shared, HocrSamplesTest,
    ::testing::Values(
        SampleCase{"tesseract5.5.1-ocrmypdf-deu-french-text.hocr", Source::Shared, nullptr, 1, 2,
                   12, 61, "Portez"},
        SampleCase{"tesseract5.5.1-ocrmypdf-empty-page.hocr", Source::Shared, nullptr, 1, 0, 0, 0,
                   ""},
        SampleCase{"tesseract5.5.1-ocrmypdf-photo-only.hocr", Source::Shared, nullptr, 1, 1, 0, 0,
                   ""},
        SampleCase{"tesseract5.5.1-ocrmypdf-separators.hocr", Source::Shared, nullptr, 1, 18, 8, 35,
                   "600"},
        SampleCase{"ocropus0.2-ocrodjvu-alice.hocr", Source::Shared, nullptr, 1, 0, 37, 0,
                   "1 Down the Rabbit-Hole"},
        SampleCase{"ocropus0.3.1-ocrodjvu-alice-charboxes.hocr", Source::Shared, nullptr, 1, 0, 37,
                   0, "1 Down the Rabbit-Hole"},
        // Tesseract 5 writes header, caption and floating-text lines as spans with classes
        // outside the reader's dispatch; an hOCR class other than ocr_par must sit on a div.
        SampleCase{"tesseract5.5.1-ocrmypdf-caption-photo.hocr", Source::Shared,
                   "Unsupported node name with class ocr_caption for HOCRReader: span"},
        SampleCase{"tesseract5.5.1-ocrmypdf-header-textfloat.hocr", Source::Shared,
                   "Unsupported node name with class ocr_header for HOCRReader: span"},
        // HTML 4.01, not XML (unclosed meta, unquoted attributes): pugixml refuses them.
        SampleCase{"cuneiform0.9-ocrodjvu-alice-cinfo.hocr", Source::Shared, "HOCR parsing error"},
        SampleCase{"cuneiform1.0-ocrodjvu-non-ascii.hocr", Source::Shared, "HOCR parsing error"},
        SampleCase{"tesseract3.00-ocrodjvu-alice-xocr-word.hocr", Source::Shared,
                   "HOCR parsing error"}));

}  // namespace
