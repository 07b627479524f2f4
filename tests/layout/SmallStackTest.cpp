// SmallStackTest.cpp - the deepest documents the readers accept go through every reader,
// writer, copier and walk, and through both comparisons, on a thread with a small stack.
#include "hocr/GumboMarkup.h"
#include "hocr/HocrWriter.h"
#include "io/DocumentReader.h"
#include "layout/DeepCopier.h"
#include "layout/IteratorTemplate.h"
#include "layout/Layout.h"
#include "layout/LayoutLimits.h"
#include "layout/NodeText.h"
#include "layout/format/CloudOcrReader.h"
#include "layout/format/JSONWriter.h"
#include "layout/format/PlainTextWriter.h"
#include "layout/format/WebAnnoWriter.h"
#include "layout/format/alto/AltoWriter.h"
#include "layout/format/page/PageXmlWriter.h"
#include "layout/format/html/HtmlWriter.h"
#include "support/JobApi.h"
#include "support/SmallStack.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>

namespace {

using namespace qent::text::layout;

// Smaller than the stacks callers' threads commonly have (512 KB on macOS, 1 MB on Windows).
constexpr std::size_t kStack = 128 * 1024;

// `open` repeated, the innermost text, then `close` as often.
std::string nest(std::size_t times, const std::string& open, const std::string& inner,
                 const std::string& close) {
  std::string out;
  for (std::size_t i = 0; i < times; ++i) out += open;
  out += inner;
  for (std::size_t i = 0; i < times; ++i) out += close;
  return out;
}

// Root, page, content areas, a line and its words: as many levels as a reader accepts.
const std::size_t kAreas = kMaxLayoutDepth - 4;

std::string deepJson() {
  const std::string word = R"({"type":"word","top":1,"width":4,"height":8,"left":)";
  return R"({"root":{"type":"node","children":[{"type":"page","width":99,"height":99,)"
         R"("children":[)" +
         nest(kAreas, R"({"type":"content_area","left":1,"top":1,"width":9,"height":9,"children":[)",
              R"({"type":"line","left":1,"top":1,"width":9,"height":8,"children":[)" + word +
                  R"(1,"text":"deep"},)" + word + R"(6,"text":"tree"}]})",
              "]}") +
         "]}]}}";
}

std::string deepHocr() {
  return R"(<html xmlns="http://www.w3.org/1999/xhtml"><head><title/></head><body>)"
         R"(<div class="ocr_page" title="bbox 0 0 99 99">)" +
         nest(kAreas, R"(<div class="ocr_carea" title="bbox 1 1 10 10">)",
              R"(<span class="ocr_line" title="bbox 1 1 10 9">)"
              R"(<span class="ocrx_word" title="bbox 1 1 5 9">deep</span> )"
              R"(<span class="ocrx_word" title="bbox 6 1 10 9">tree</span></span>)",
              "</div>") +
         "</div></body></html>";
}

// The same, but not XML (an unquoted attribute): only the tolerant mode's HTML parse reads it.
// A title must be closed in HTML, or all that follows is its text.
std::string deepHtml() {
  std::string html = deepHocr();
  html.replace(html.find("<title/>"), 8, "<title></title>");
  return html.replace(html.find("<body>"), 6, "<body lang=en>");
}

// A page of two words, with a foreign member nested as deep as the reader accepts.
std::string deepCloudOcr() {
  auto word = [](const char* left, const char* right, const char* text, const char* end) {
    return std::string(R"({"boundingBox":{"vertices":[{"x":)") + left + R"(,"y":1},{"x":)" +
           right + R"(,"y":9}]},"symbols":[{"text":")" + text +
           R"(","property":{"detectedBreak":{"type":")" + end + R"("}}}]})";
  };
  const std::size_t arrays = format::CloudOcrReader::kMaxJsonDepth - 1;
  return R"({"fullTextAnnotation":{"pages":[{"width":99,"height":99,"blocks":[{"paragraphs":[)"
         R"({"words":[)" + word("1", "5", "deep", "SPACE") + "," + word("6", "10", "tree", "LINE_BREAK") +
         R"(]}]}]}]},"extra":)" + nest(arrays, "[", "", "]") + "}";
}

// A PrintSpace of ComposedBlocks around a TextBlock: as many levels as ALTO is read with.
std::string deepAlto() {
  return "<alto><Layout><Page WIDTH='99' HEIGHT='99'><PrintSpace>" +
         nest(kAreas - 2, "<ComposedBlock HPOS='1' VPOS='1' WIDTH='9' HEIGHT='9'>",
              "<TextBlock><TextLine><String HPOS='1' VPOS='1' WIDTH='4' HEIGHT='8' CONTENT='deep'/>"
              "<SP/><String HPOS='6' VPOS='1' WIDTH='4' HEIGHT='8' CONTENT='tree'/></TextLine>"
              "</TextBlock>",
              "</ComposedBlock>") +
         "</PrintSpace></Page></Layout></alto>";
}

// PAGE regions nested in regions, as deep as the reader accepts.
std::string deepPage() {
  auto word = [](const char* points, const char* text) {
    return std::string("<Word id='w'><Coords points='") + points +
           "'/><TextEquiv><Unicode>" + text + "</Unicode></TextEquiv></Word>";
  };
  return "<PcGts xmlns='http://schema.primaresearch.org/PAGE/gts/pagecontent/2019-07-15'>"
         "<Page imageWidth='99' imageHeight='99'>" +
         nest(kAreas, "<TextRegion id='r'><Coords points='1,1 10,10'/>",
              "<TextLine id='l'><Coords points='1,1 10,9'/>" + word("1,1 5,9", "deep") +
                  word("6,1 10,9", "tree") + "</TextLine>",
              "</TextRegion>") +
         "</Page></PcGts>";
}

const std::string kSentence = "#Text=deep tree\n1-1\t0-4\tdeep\t_\n1-2\t5-9\ttree\t_\n";

struct DeepCase {
  const char* name;
  std::string document;
  std::size_t depth;  // levels of the tree read, the root counting as one
  // Whether reading the JSON written gives the same tree: other formats' class names (such
  // as ocr_carea) mean something else to the JSON reader.
  bool jsonRoundTrip = false;
  bool tolerantHocr = false;
};
void PrintTo(const DeepCase& c, std::ostream* out) { *out << c.name; }

// What the small-stack thread found; checked on the test's own thread.
struct Outcome {
  std::size_t depth = 0;
  std::string json, jsonAgain, copyJson, pageJson, hocr, hocrAgain, webAnno, html;
  std::string alto, altoAgain, pageXml;
  std::u16string plainText, nodeText;
  std::size_t words = 0;
};

std::unique_ptr<Layout> read(const std::string& bytes, bool tolerantHocr = false) {
  qent::io::ReadOptions options;
  options.tolerantHocr = tolerantHocr;
  return qent::io::readDocument(bytes, "deep", {}, options)->takeLayout();
}

class SmallStackTest : public ::testing::TestWithParam<DeepCase> {};

TEST_P(SmallStackTest, ReadsWritesCopiesAndWalksTheDeepestDocument) {
  if (GetParam().tolerantHocr && !qent::text::hocr::GumboMarkup::available()) {
    GTEST_SKIP() << "this build has no HTML parser (gumbo)";
  }
  Outcome o;
  qent::test::runWithStack(kStack, [&] {
    auto layout = read(GetParam().document, GetParam().tolerantHocr);
    Node& root = *layout->root();
    for (IteratorTemplate<Node> it(&root); !it.atEnd(); ++it) {
      o.depth = std::max(o.depth, it.cursor().depth() + 1);
      if (isA<Word>(*it)) ++o.words;
    }
    o.json = format::JSONWriter().write(*layout);
    o.jsonAgain = format::JSONWriter().write(*read(o.json));
    o.hocr = qent::text::hocr::HocrWriter().write(*layout);
    o.hocrAgain = qent::text::hocr::HocrWriter().write(*read(o.hocr));
    o.plainText = format::PlainTextWriter().write(*layout);
    o.html = format::html::HtmlWriter().write(*layout);
    o.webAnno = format::WebAnnoWriter().write(*layout);
    o.alto = format::AltoWriter().write(*layout);
    // A tree as deep as the readers accept gains a PrintSpace in ALTO, a level too many to
    // read back, unless it had one.
    if (std::string_view(GetParam().name) == "Alto") {
      o.altoAgain = format::AltoWriter().write(*read(o.alto));
    }
    o.pageXml = format::PageXmlWriter().write(*layout);
    o.nodeText = nodeText(root);
    DeepCopier copier;
    root.accept(copier);
    o.copyJson = format::JSONWriter().write(Layout(copier.takeResult()));
    auto pages = layout->splitIntoPages();
    if (pages.size() == 1) o.pageJson = format::JSONWriter().write(*pages.front());
  });
  EXPECT_EQ(o.depth, GetParam().depth);
  EXPECT_EQ(o.words, 2u);
  // Deep documents are long: compare them without printing them.
  EXPECT_TRUE(!GetParam().jsonRoundTrip || o.jsonAgain == o.json) << o.jsonAgain.size();
  EXPECT_TRUE(o.copyJson == o.json) << o.copyJson.size() << " bytes, not " << o.json.size();
  EXPECT_TRUE(o.pageJson == o.json) << "the layout's only page split off";
  EXPECT_TRUE(o.hocrAgain == o.hocr) << o.hocrAgain.size() << " bytes, not " << o.hocr.size();
  EXPECT_EQ(o.plainText, u"deep tree\n");
  EXPECT_NE(o.webAnno.find(kSentence), std::string::npos) << o.webAnno;
  EXPECT_EQ(o.nodeText, u"deeptree");
  EXPECT_NE(o.html.find("deep tree"), std::string::npos) << o.html.size() << " bytes";
  EXPECT_TRUE(o.altoAgain.empty() || o.altoAgain == o.alto) << o.altoAgain.size() << " bytes";
  EXPECT_NE(o.alto.find("CONTENT=\"tree\""), std::string::npos) << o.alto.size() << " bytes";
  EXPECT_NE(o.pageXml.find("<Unicode>tree</Unicode>"), std::string::npos) << o.pageXml.size();
}

INSTANTIATE_TEST_SUITE_P(
    Formats, SmallStackTest,
    ::testing::Values(DeepCase{"JsonLayout", deepJson(), kMaxLayoutDepth, true},
                      // The reader unwraps the body around the single page.
                      DeepCase{"Hocr", deepHocr(), kMaxLayoutDepth - 1},
                      DeepCase{"HocrAsHtml", deepHtml(), kMaxLayoutDepth - 1, false, true},
                      DeepCase{"CloudOcr", deepCloudOcr(), 6},
                      DeepCase{"Alto", deepAlto(), kMaxLayoutDepth},
                      DeepCase{"PageXml", deepPage(), kMaxLayoutDepth},
                      DeepCase{"WebAnno", "#FORMAT=WebAnno TSV 3.2\n#T_SP=webanno.custom.Mention|"
                                          "value\n\n\n" + kSentence, 4}),
    [](const ::testing::TestParamInfo<DeepCase>& c) { return std::string(c.param.name); });

TEST(SmallStackJobTest, ComparesTheDeepestDocuments) {
  const std::string left = deepJson(), right = deepHocr();
  auto address = [](const std::string& bytes) {
    return std::to_string(reinterpret_cast<std::uintptr_t>(bytes.data())) + ":" +
           std::to_string(bytes.size());
  };
  std::uint32_t code = 0;
  std::string result, extraction;
  qent::test::runWithStack(kStack, [&] {
    qent::test::Job job;
    job.set("InputMemoryAddress", address(left) + ";" + address(right));
    job.set("Compare", "true");
    job.set("ExtractFromLayout", "true");
    code = job.execute();
    result = code == ORMIDA_OK ? job.get("Compare.Result").second : job.errorText();
    extraction = job.get("CompareErrorRate").second;
  });
  ASSERT_EQ(code, ORMIDA_OK) << result;
  EXPECT_EQ(extraction, R"({"errorRate":0.0,"maxErrorRate":0.0,"pageErrorRates":[0.0]})");
  EXPECT_NE(result.find(R"("edits":0,"f1_measure":1.0,"good":8,)"), std::string::npos)
      << result.substr(0, 400);
}

}  // namespace
