// SamplesTest.cpp - real documents from other engines and projects, in every input format:
// each is recognised by its content and either loads with the structure stated here (and
// survives its writer unchanged) or fails with the reader's documented error.
#include "hocr/HocrStructure.h"
#include "hocr/HocrWriter.h"
#include "io/DocumentReader.h"
#include "layout/format/WebAnnoWriter.h"

#include "base/QentException.h"
#include "base/Unicode.h"
#include "layout/IteratorTemplate.h"
#include "layout/Layout.h"
#include "layout/LayoutFormat.h"
#include "layout/NodeText.h"
#include "layout/Nodes.h"
#include "layout/format/Document.h"
#include "support/Golden.h"
#include "support/LayoutDump.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <tuple>

namespace qent::test {
namespace {

using namespace qent::text::layout;
using io::readDocument;

struct Sample {
  const char* file;
  int pages = 0, boxes = 0, lines = 0, words = 0;
  const char* firstText = "";  // the first word with text, else the first line with text
  int glyphs = -1;             // -1: not stated
  const char* error = nullptr;  // nullptr: the file loads
};
void PrintTo(const Sample& k, std::ostream* out) { *out << k.file; }

// A sample lives in the repository's third-party samples, in the samples made by the
// repository's tools, or in the shared samples beside the repository (skipped where absent).
std::filesystem::path locate(const Sample& k) {
  const std::filesystem::path source(ORMIDA_SOURCE_DIR);
  for (const auto& folder : {testData("third_party"), source / "data" / "samples",
                             source / ".." / "shared" / "samples"}) {
    if (std::filesystem::exists(folder / k.file)) return folder / k.file;
  }
  return {};
}

template <class T>
int countOf(Node* root) {
  int count = 0;
  for (IteratorTemplate<T> it(root); !it.atEnd(); ++it) ++count;
  return count;
}

// A word without text of its own (a cloud-OCR word) reads as its glyphs.
template <class T>
std::string firstTextOf(Node* root) {
  for (IteratorTemplate<T> it(root); !it.atEnd(); ++it) {
    const std::u16string text = (*it).text().empty() ? nodeText(*it) : (*it).text();
    if (!text.empty()) return base::utf16ToUtf8(text);
  }
  return "";
}

// What the writer of the sample's own format makes of it reads back to the same tree; a
// cloud-OCR answer has no writer, but its ids are creation numbers that grow in document
// order, and each of its words has a box.
void expectSurvivesItsWriter(const Layout& layout) {
  Node* root = layout.root();
  switch (layout.format()) {
    case kFormatHocr: {
      const std::string written = text::hocr::HocrWriter().write(layout);
      EXPECT_EQ(hocrStructureProblems(written), std::vector<std::string>());
      const auto again = readDocument(written, "again", {});
      EXPECT_TRUE(dump(*again->layout()) == dump(layout)) << "tree changed";
      EXPECT_EQ(again->layout()->versions(), layout.versions());
      break;
    }
    case kFormatWebAnno: {
      const auto again = readDocument(format::WebAnnoWriter().write(layout), "again", {});
      EXPECT_EQ(dump(*again->layout()), dump(layout));
      break;
    }
    default: {
      long previous = 0;
      for (IteratorTemplate<Node> it(root); !it.atEnd(); ++it) {
        if (&*it == root) continue;
        const long id = std::stol(base::utf16ToUtf8((*it).id()));
        EXPECT_GT(id, previous);
        previous = id;
      }
      for (IteratorTemplate<Word> it(root); !it.atEnd(); ++it) {
        EXPECT_TRUE((*it).rect().hasGeometry()) << "word " << base::utf16ToUtf8((*it).id());
      }
    }
  }
}

class SamplesTest : public ::testing::TestWithParam<Sample> {};

TEST_P(SamplesTest, LoadsOrFailsAsDocumented) {
  const Sample& k = GetParam();
  const std::filesystem::path path = locate(k);
  if (path.empty()) GTEST_SKIP() << "no shared samples beside the repository: " << k.file;
  const std::string bytes = readAll(path);
  if (k.error != nullptr) {
    try {
      readDocument(bytes, k.file, {});
      FAIL() << "loaded, but should fail with " << k.error;
    } catch (const base::QentException& e) {
      EXPECT_EQ(e.code(), 20001u);
      EXPECT_STREQ(e.what(), k.error);
    }
    return;
  }
  const auto document = readDocument(bytes, k.file, {});
  ASSERT_NE(document->layout(), nullptr);
  Node* root = document->layout()->root();
  EXPECT_EQ(std::tuple(countOf<Page>(root), countOf<Box>(root), countOf<Line>(root), countOf<Word>(root)),
            std::tuple(k.pages, k.boxes, k.lines, k.words));
  EXPECT_EQ(k.glyphs < 0 ? -1 : countOf<Glyph>(root), k.glyphs);
  EXPECT_EQ(k.words > 0 ? firstTextOf<Word>(root) : firstTextOf<Line>(root), k.firstText);
  expectSurvivesItsWriter(*document->layout());
}

INSTANTIATE_TEST_SUITE_P(
    Hocr, SamplesTest,
    ::testing::Values(
        Sample{"hocr/tesseract3.03-hocrtools-alice.hocr", 1, 10, 37, 503, "1"},
        Sample{"hocr/tesseract4.00alpha-hocrjs-deu.hocr", 1, 37, 41, 388, "202"},
        Sample{"hocr/ocropy1.0-hocrtools-german-lines.hocr", 1, 0, 105, 0, 
               "(Hrsg.). B\xC3\xBCrgerbegehren und B\xC3\xBCrgerentscheid - Situation, "
               "Analysen, Erfordermisse. Mi\xC3\xBCnchen. S."},
        Sample{"hocr/hocrtools-split-two-pages-minimal.hocr", 2, 0, 0, 0},
        // Malformed upstream (a line outside its page), yet well-formed XML: it loads.
        Sample{"hocr/hocrtools-check-notok-line-outside-page.hocr", 1, 0, 1, 0, 
               "Wenn ist das Nunst\xC3\xBC"
               "ck git und Slotermeyer? Ja! Beiherhund das Oder die Flipperwaldt gersput!"},
        // An unescaped "&" in text: pugixml keeps it as it is.
        Sample{"hocr/kraken-legacy-hocrjs-cuts-xconfs.hocr", 1, 0, 30, 392, "s14"},
        Sample{"hocr/gcv2hocr-sample1.hocr", 1, 42, 43, 237, "/"},
        Sample{"hocr/googlebooks-gocr-openpecha-tibetan-p1.hocr", 1, 54, 41, 146, "\xE0\xBC\x84"},
        // Made by tools/make-hocr-samples: Tesseract 5.3's recognition of a rendered page and
        // the ground truth written from the rendering.
        Sample{"hocr-letter-eng-tesseract.hocr", 1, 6, 6, 53, "Notice"},
        Sample{"hocr-letter-deu-truth.hocr", 1, 4, 7, 57, "Mitteilung"},
        Sample{"hocr/tesseract5.5.1-ocrmypdf-deu-french-text.hocr", 1, 2, 12, 61, "Portez"},
        Sample{"hocr/tesseract5.5.1-ocrmypdf-photo-only.hocr", 1, 1, 0, 0},
        Sample{"hocr/tesseract5.5.1-ocrmypdf-separators.hocr", 1, 18, 8, 35, "600"},
        Sample{"hocr/ocropus0.3.1-ocrodjvu-alice-charboxes.hocr",
               1, 0, 37, 0, "1 Down the Rabbit-Hole"},
        // Tesseract 5 writes header, caption and floating-text lines as spans with classes
        // outside the reader's dispatch; an hOCR class other than ocr_par must sit on a div.
        Sample{"hocr/tesseract5.5.1-ocrmypdf-caption-photo.hocr", 0, 0, 0, 0, "", -1,
               "Unsupported node name with class ocr_caption for HOCRReader: span"},
        // HTML 4.01, not XML (unclosed meta, unquoted attributes): pugixml refuses it.
        Sample{"hocr/cuneiform1.0-ocrodjvu-non-ascii.hocr", 0, 0, 0, 0, "", -1,
               "HOCR parsing error"}));

INSTANTIATE_TEST_SUITE_P(
    CloudOcr, SamplesTest,
    ::testing::Values(
        Sample{"cloud-ocr/googlevision-openpecha-english-titlepage.json",
               1, 2, 2, 14, "SA", 57},
        // Twelve blocks of one word each, without any break: a line per paragraph.
        Sample{"cloud-ocr/googlevision-openpecha-telugu.json", 1, 12, 12, 12, "2018", 43},
        Sample{"cloud-ocr/googlevision-openpecha-tibetan-page.json",
               1, 12, 17, 39, "\xE0\xBC\x8B", 169},
        // The annotation inside "responses"; no confidences at all, a paragraph without
        // bounding box, vertices that leave out a zero "x".
        Sample{"cloud-ocr/googlevision-robotoff-french-responses.min.json",
               1, 5, 21, 145, "pour", 693}));

INSTANTIATE_TEST_SUITE_P(
    WebAnno, SamplesTest,
    ::testing::Values(
        // Three columns and a trailing tab: trimming leaves the text as the last column.
        Sample{"webanno/webanno-brat-multiline-no-layers.tsv", 1, 0, 3, 15, "This"},
        // Span labels such as PERSON[1] are not sensitive marks.
        Sample{"webanno/webanno-cross-sentence-span.tsv", 1, 0, 2, 9, "He"},
        Sample{"webanno/webanno-emoji-utf16-offsets.tsv", 1, 0, 1, 5, "I"},
        Sample{"webanno/webanno-example2-pos-ne-dep.tsv", 1, 0, 7, 86, "Ms."},
        // Two "#Text=" rows of one sentence give one line.
        Sample{"webanno/webanno-sentence-with-linebreak.tsv", 1, 0, 1, 5, "This"},
        // Label columns that begin with "#" do not hide their rows.
        Sample{"webanno/webanno-special-symbols-escaping.tsv", 1, 0, 1, 5, "This"},
        // Sub-token rows (1-1.1, ...) are parts of the tokens before them.
        Sample{"webanno/webanno-sub-multitoken-span.tsv", 1, 0, 1, 3, "aaaaaa"}));

}  // namespace
}  // namespace qent::test
