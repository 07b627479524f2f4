// SamplesTest.cpp - real documents from other engines and projects, in every input format:
// each is recognised by its content and either loads with the structure stated here (and
// survives its writer unchanged) or fails with the reader's documented error.
#include "hocr/HocrStructure.h"
#include "hocr/HocrWriter.h"
#include "io/DocumentReader.h"
#include "layout/format/WebAnnoWriter.h"
#include "layout/format/alto/AltoWriter.h"
#include "layout/format/page/PageXmlWriter.h"

#include "base/NumberConversion.h"
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

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <optional>
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

// What ALTO and PAGE can carry of a layout: pages with their sizes, lines and words with
// their texts, rectangles and confidences, in order.
std::string xmlProjection(const Layout& layout) {
  std::string text;
  for (IteratorTemplate<Node> it(layout.root()); !it.atEnd(); ++it) {
    const Node& node = *it;
    if (node.nodeClass() == NodeClass::Page) {
      const Page& page = static_cast<const Page&>(node);
      text.append("page ").append(std::to_string(page.width())).append("x");
      text.append(std::to_string(page.height())).append("\n");
    }
    if (node.nodeClass() != NodeClass::Line && node.nodeClass() != NodeClass::Word) continue;
    const Fragment& fragment = static_cast<const Fragment&>(node);
    const Rect& r = fragment.rect();
    text.append(node.nodeClass() == NodeClass::Line ? "line " : " word ");
    for (const std::int32_t v : {r.left, r.top, r.width, r.height}) text.append(std::to_string(v)).append(" ");
    text.append(base::formatFixed6(fragment.storedConfidence())).append(" ");
    text.append(base::utf16ToUtf8(nodeText(node))).append("\n");
  }
  return text;
}

// Whether the written document is valid by its schema (from the shared samples); nullopt
// when xmllint or the schemas are not there to tell.
std::optional<bool> validates(const std::string& xml, const char* schema) {
  const std::filesystem::path schemas =
      std::filesystem::path(ORMIDA_SOURCE_DIR) / ".." / "shared" / "samples" / "schemas";
  if (!std::filesystem::exists(schemas / schema)) return std::nullopt;
  if (std::system("xmllint --version > /dev/null 2>&1") != 0) return std::nullopt;
  TempDir dir;
  dir.write("out.xml", xml);
  const std::string command = "xmllint --nonet --noout --schema \"" + (schemas / schema).string() +
                              "\" \"" + (dir / "out.xml").string() + "\" 2> \"" +
                              (dir / "log").string() + "\"";
  const bool valid = std::system(command.c_str()) == 0;
  if (!valid) ADD_FAILURE() << readAll(dir / "log");
  return valid;
}

// Both XML writers make valid documents of every ALTO and PAGE sample, and the writer of
// the sample's own format gives back what the format can carry.
void expectSurvivesXmlWriters(const Layout& layout) {
  const std::string alto = format::AltoWriter().write(layout);
  const std::optional<bool> altoValid = validates(alto, "alto-4-4.xsd");
  if (!altoValid) std::printf("[ SKIPPED  ] schema check: xmllint or the schemas are absent\n");
  EXPECT_NE(altoValid, std::optional<bool>(false)) << "ALTO output is not valid";
  std::string page;
  try {
    page = format::PageXmlWriter().write(layout);
    EXPECT_NE(validates(page, "pagecontent-2019-07-15.xsd"), std::optional<bool>(false))
        << "PAGE output is not valid";
  } catch (const std::runtime_error& e) {
    EXPECT_GT(countOf<Page>(layout.root()), 1) << e.what();
  }
  const std::string& own = layout.format() == kFormatAlto ? alto : page;
  const auto again = readDocument(own, "again", {});
  EXPECT_EQ(xmlProjection(*again->layout()), xmlProjection(layout));
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
    case kFormatAlto:
    case kFormatPageXml:
      expectSurvivesXmlWriters(layout);
      break;
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
    } catch (const std::exception& e) {
      FAIL() << e.what();
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

INSTANTIATE_TEST_SUITE_P(
    Alto, SamplesTest,
    ::testing::Values(
        Sample{"alto/abbyy-fr10-docworks-alto1.4-nonamespace-cc-french.xml", 1, 17, 16, 62, "Le", 0},
        // Soft-hyphen HYP elements join their word; no glyphs.
        Sample{"alto/abbyy-fre11-alto2-german-hyp-bom.xml", 1, 13, 30, 244, "142", 0},
        // inch1200 would be converted at 300 dpi, but one String is 4 units wide the wrong way.
        Sample{"alto/abbyy-rs3-alto2-inch1200-danish-cc.xml", 0, 0, 0, 0, "", -1,
               "ALTO: element <String> at offset 109543 has the negative WIDTH -4"},
        Sample{"alto/abbyy-rs4-alto4-spanish-hyp.xml", 1, 40, 77, 432, "6", 0},
        Sample{"alto/dinglehopper-alto3-trimmed-no-description.xml", 1, 4, 3, 16, "\xC3\xBC" "ber", 0},
        Sample{"alto/escriptorium-alto4.2-export-minimal.xml", 1, 4, 5, 5, "A simple test for eScriptorium", 0},
        Sample{"alto/escriptorium-alto4.2-medieval-abbrev.xml", 1, 2, 2, 2, "\xEA\x9D\x98" "es\xC3\xA3s\xCD\xA5", 0},
        Sample{"alto/escriptorium-alto4.3-hebrew-readingorder-tags.xml", 1, 6, 31, 86,
               "\xD7\x91\xD7\xA9\xD7\x90\xD7\x95\xD7\x9C \xD7\x95\xD7\x92\xD7\x95' \xCB\x99 \xD7\x90\xD7\x9D \xD7\x99\xD7\x97\xD7\x91\xD7\x90\xD7\x95 \xD7\x91\xD7\xA8\xD7\x90\xD7\xA9 \xD7\x94\xD7\x9B\xD7\xA8\xD7\x9E\xD7\x9C \xD7\x95\xD7\x92\xD7\x95' \xD7\x90\xD7\x9D \xD7\x99\xD7\x9C\xD7\x9B\xD7\x95 \xD7\x91\xD7\xA9\xD7\x91\xD7\x99 \xD7\x95\xD7\x92\xD7\x95' \xD7\x90\xD7\x99\xD7\x9F \xD7\x97\xD7\xA9\xD7\x9A \xD7\x95\xD7\x90\xD7\x99\xD7\x9F [\xD7\xA6\xD7\x9C']", 0},
        // Two pages; the glyphs spell their words, so the text lives on the glyphs.
        Sample{"alto/jochre-alto4-yiddish-2pages-glyph.xml", 2, 15, 52, 420, "I", 2084},
        Sample{"alto/ocrd-page2alto-alto4-polygons-german.xml", 1, 11, 41, 171, "E", 0},
        Sample{"alto/tesseract3.03-alto2-german-no-sp.xml", 1, 12, 31, 212, "..-15-.", 0},
        // Right to left: SP with negative widths are no nodes and harm nothing.
        Sample{"alto/tesseract4.1.1-alto3-arabic-negative-sp.xml", 1, 17, 29, 176, "\xD9\x84\xD8\xB3\xD9\x92", 0},
        Sample{"alto/tesseract4.1rc4-alto3-lorem-ocr.xml", 1, 2, 7, 100, "Lorem", 0},
        Sample{"alto/tesseract5.1-alto3-newspaper-frk-ocr.xml", 1, 201, 231, 1313, "\xE2\x80\x94", 0},
        Sample{"alto/tesseract5.2-alto3-truncated-not-wellformed.xml", 0, 0, 0, 0, "", -1,
               "ALTO: malformed XML (Start-end tags mismatch) at offset 124840"},
        Sample{"alto/ulb-alto3-gt-english-bare-sp.xml", 1, 2, 1, 13, "themselves", 0},
        Sample{"alto/ulb-alto4.2-dictmetric-3lines.xml", 1, 2, 3, 10, "Die\xC5\xBF" "e", 0}));

INSTANTIATE_TEST_SUITE_P(
    Page, SamplesTest,
    ::testing::Values(
        // Text only on a region; its lines are empty.
        Sample{"page/dinglehopper-page2018-gt-lorem.xml", 1, 2, 7, 0, "", 0},
        Sample{"page/dinglehopper-page2019-table-region-ro.xml", 1, 10, 9, 0, "1", 0},
        Sample{"page/doculib-page2018-glyph-conf-levels.xml", 1, 1, 2, 16, "Hand,", 73},
        Sample{"page/escriptorium-page2019-export-minimal.xml", 1, 3, 5, 0, "A simple test for eScriptorium", 0},
        Sample{"page/kraken-page2013-unordered-ro.xml", 1, 3, 3, 0, "Line 1", 0},
        // Of two TextEquivs the one of index 0 (listed second at times) is the reading.
        Sample{"page/larex-page2017-gt-indexed-textequiv.xml", 1, 2, 35, 0, "\xE2\x80\x94 Vl \xE2\x80\x94", 0},
        Sample{"page/ocrd-tesserocr-page2019-ocr-larexpair.xml", 1, 2, 35, 271, "\xE2\x80\x94", 0},
        Sample{"page/ocrd-tesserocr-page2019-ocr-p0042.xml", 1, 5, 26, 142, "Sa", 0},
        Sample{"page/ocrd-tesserocr5.4-page2019-table-words.xml", 1, 14, 19, 82, "|", 0},
        Sample{"page/ocrd1.0-page2018-mixed-regions-medieval.xml", 1, 1, 35, 0,
               "phari\xC5\xBF" "ei hypocrit\xC3\xA6, qui comeditis domos uiduar\xC3\xA3 \xC5\xBF" "ub", 0},
        // The 2010 schema (Point elements) is older than any the reader takes.
        Sample{"page/prima-page2010-points-layout-only.xml", 0, 0, 0, 0, "", -1,
               "PAGE: element <PcGts> at offset 39 is in the namespace "
               "\"http://schema.primaresearch.org/PAGE/gts/pagecontent/2010-03-19\", not in that "
               "of PAGE 2013, 2017, 2018 or 2019"},
        // Glyph texts only in PlainText, Unicode left empty.
        Sample{"page/prima-page2013-regiontypes-glyph.xml", 1, 13, 4, 12, "This", 53},
        Sample{"page/prima-page2017-simplepage-table.xml", 1, 14, 1, 0, "", 0},
        Sample{"page/transkribus-citlab-page2013-devanagari.xml", 1, 14, 24, 0,
               "\xE0\xA5\x8D\xE0\xA4\xAF\xE0\xA4\xAA\xE0\xA5\x8D\xE0\xA4\xAE\xE0\xA4\xB0\xE0\xA4\x83 \xE0\xA4\xB8\xE0\xA5\x82\xE0\xA4\xB0\xE0\xA5\x8D\xE0\xA4\xAF\xE0\xA4\x82\xE0\xA4\xB6", 0},
        Sample{"page/transkribus-page2013-handwriting-words.xml", 1, 2, 8, 58, "Am", 0},
        Sample{"page/transkribus-trp-page2013-spanish-baselines.xml", 1, 4, 44, 0, "$pag:39", 0},
        Sample{"page/ulb-page2013-dictmetric-3lines.xml", 1, 1, 3, 10, "Die\xC5\xBF" "e", 0},
        Sample{"page/ulb-page2013-gt-newspaper-frk.xml", 1, 11, 97, 765, "vertritt.", 0},
        Sample{"page/ulb-page2013-gt-p0042.xml", 1, 1, 23, 139, "und", 0},
        Sample{"page/ulb-page2019-dictmetric-3lines.xml", 1, 1, 3, 10, "Die\xC5\xBF" "e", 0}));

}  // namespace
}  // namespace qent::test
