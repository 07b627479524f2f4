// HocrWriterTest.cpp - layouts to hOCR: golden files, element-level cases checked by XPath,
// the structural check, and the reader giving every written tree back.
#include "hocr/HocrWriter.h"

#include "hocr/HocrStructure.h"
#include "hocr/PugiHocrReader.h"
#include "layout/Layout.h"
#include "layout/Nodes.h"
#include "support/LayoutDump.h"
#include "support/Golden.h"
#include "support/RandomDump.h"

#include <gtest/gtest.h>
#include <pugixml.hpp>

#include <cstdlib>
#include <fstream>
#include <random>
#include <sstream>

namespace {

using qent::test::dump;
using qent::test::expectGolden;
using qent::test::hocrStructureProblems;
using qent::test::parseLayout;
using qent::text::hocr::HocrWriter;
using qent::text::hocr::PugiHocrReader;
using namespace qent::text::layout;

// The tree of the golden file: most of what the writer has to decide, on two pages.
std::unique_ptr<Layout> richLayout() {
  auto layout = parseLayout(
      "Content:node(@additional_versions=\"mod_a mod_b\"){"
      "Page#p1(w=800,h=600,lang=eng){"
      "Image#image_p1\"scan 1.png\","
      "Box:content_area[10,10,500,200]{"
      "Box#par_a:ocr_par[10,10,500,90]{"
      "Line#l1[10,10,400,30](base=\"0.01 -5\",asc=8,desc=4,gh=22){"
      "Word#w1[10,10,50,30]\"Hello\"(conf=96),"
      "Word[70,10,60,30]\"w\xC3\xB6rld\"(conf=88.5,size=11,family=\"DejaVu Sans\",style=2,"
      "weight=3,color=\"255 0 0\",bg=\"0 0 255\"),"
      "Word#1[140,10,30,30]{Glyph[140,10,10,30]\"a\"(conf=90),Glyph[150,10,20,30]\"b\"}"
      "},"
      "Line#l1[10,50,400,30](angle=90){"
      "Word#w9[10,50,40,30]\"x;y\"(sens=0.5,entity=\"PER;LOC\",checked=1,rejected=2,"
      "poly=\"10 50;50 50;50 80\",@dir=rtl,@lang=ara,@x_foo=\"1 2\",@semi=\"a;b\","
      "@\"bad key\"=gone)"
      "}},"
      "Box#t1:ocrx_table[20,120,300,60]\"t1\","
      "Box#b7:ocr_photo[20,190,100,10]\"caption\""
      "},"
      "Picture[500,300,100,100](src=\"fig.png\"),"
      "Field[600,400,50,20]\"field\","
      "Content:em{Content:br},"
      "Content:node\"loose text\""
      "},"
      "Page#p2(w=800,h=600,index=1,pnum=1){Line{Word\"b\",Word}}}");
  Layout::Versions versions{{"tesseract", "5.3.0"}, {"custom", "custom"}};
  layout->setVersions(versions);
  return layout;
}

TEST(HocrWriterGoldenTest, RichAndEmptyLayouts) {
  // The empty layout's file names this library as its system.
  const std::pair<std::string, const char*> cases[] = {
      {HocrWriter().write(*richLayout()), "hocr/rich-layout.hocr"},
      {HocrWriter().write(Layout()), "hocr/empty-layout.hocr"}};
  for (const auto& [written, golden] : cases) {
    EXPECT_EQ(hocrStructureProblems(written), std::vector<std::string>()) << golden;
    expectGolden(golden, written);
  }
}

// --- single decisions, checked on the written document by XPath --------------------------

struct XPathCase {
  const char* label;
  const char* tree;
  const char* xpath;  // evaluated as a string
  const char* want;
  std::uint32_t format = 0;  // of the layout; 3: cloud OCR, whose confidences are fractions
};
TEST(HocrWriterTest, WritesEachDecision) {
  const XPathCase cases[] = {
      {"GeneratedIdAvoidsLaterId", "Page{Word#1,Word#word_1_1}",
       "(//span[@class='ocrx_word'])[1]/@id", "word_1_2"},
      {"BoxTextWrittenWhenIdReplaced", "Page{Box#9:ocr_carea[0,0,1,1]\"9\"}",
       "concat(//div[@class='ocr_carea']/@id,' ',//div[@class='ocr_carea'])", "block_1_1 9"},
      {"PlainBoxNameIsElement", "Box:span[0,0,5,5]", "name(//body/*)", "span"},
      {"BoxNamedLikeAWordStaysABox", "Content:node{Box:ocrx_word[0,0,5,5]}", "//body/div/@class",
       "ocrx_box"},
      {"CleanedKeyDoesNotShadowAnother", "Word(conf=5,@\"\\x06x_wconf\"=bad,@x_wconf=5)",
       "//span/@title", "x_wconf 5"},
      {"UnknownContentIsDivWithClass", "Content:node{Content:region}", "//body/div/@class",
       "region"},
      {"ClassReadBackStaysClass", "Content:node{Content:em(@class=em)}",
       "concat(name(//body/*),' ',//body/*/@class)", "div em"},
      {"RootWithOwnDataKeepsItsElement", "Content#r:node{Page}",
       "concat(//body/div/@class,' ',//body/div/@id)", "node r"},
      {"OddBboxSpellingReplaced", "Word[5,8,5,12](@bbox=\"5 8 +10 20 7\")", "//span/@title",
       "bbox 5 8 10 20"},
      {"ContentBboxOutsideTitle", "Content:node{Content:x(@bbox=\"1 2 3 4\")}",
       "concat(//div[@class='x']/@bbox,'|',count(//div[@class='x']/@title))", "1 2 3 4|0"},
      {"ReversedBboxNormalised", "Word[5,8,5,12](@bbox=\"10 20 5 8\")", "//span/@title",
       "bbox 5 8 10 20"},
      {"EditedRectWins", "Word[5,8,5,13](@bbox=\"10 20 5 8\")", "//span/@title", "bbox 5 8 10 21"},
      {"StoredConfidenceSpellingKept", "Word(conf=93,@x_wconf=93.0)", "//span/@title",
       "x_wconf 93.0"},
      {"GlyphMeanConfidence", "Word{Glyph\"a\"(conf=80),Glyph\"b\"(conf=90),Glyph\"c\"}",
       "//span/@title", "x_wconf 85; x_bboxes 0 0 0 0 0 0 0 0 0 0 0 0; x_confs 80 90 -1"},
      // The reader splits a style at ";", so a family must not bring one.
      {"SemicolonInFontFamilyReplaced", "Word(family=\"A;B\")", "//span/@style",
       "font-family: A,B"},
      {"StoredStyleKept", "Word(weight=3,@style=\"font-weight:bold\")", "//span/@style",
       "font-weight:bold"},
      {"EditedStyleRegenerated", "Word(weight=2,@style=\"font-weight:bold\")", "//span/@style",
       "font-weight: normal"},
      {"UnknownPropertyInTitle", "Word(@x_foo=\"1 2\",@hardbreak=\"\")", "//span/@title",
       "hardbreak; x_foo 1 2"},
      {"ForbiddenControlCharactersRemoved", "Word\"a\\x01b\\x1f\"", "string(//span)", "ab"},
      {"PageTitleOrder", "Page(w=10,h=20,angle=1.5,pnum=3){Image\"i.png\"}", "//div/@title",
       "image i.png; bbox 0 0 10 20; ppageno 3; textangle 1.5"},
      {"HugePageSizeClamped", "Page(w=4294967291,h=5)", "//div/@title", "bbox 0 0 2147483647 5"},
      {"GlyphOutsideWord", "Line{Glyph[1,1,1,1]\"g\"(conf=50)}",
       "//div[@class='ocrx_cinfo']/@title", "bbox 1 1 2 2; x_conf 50"},
      {"BodyRootTakesItsAttributes", "Content#b:body(@x_foo=1){Page,Page}",
       "concat(//body/@id,' ',//body/@title,' ',count(//body/div))", "b x_foo 1 2"},
      {"CloudOcrConfidencesScaledToPercent", "Line(conf=0.5){Word(conf=0.93){Glyph(conf=0.25)}}",
       "concat(//span[@class='ocr_line']/@title,'|',//span[@class='ocrx_word']/@title)",
       "x_lconf 50|x_wconf 93; x_bboxes 0 0 0 0; x_confs 25", 3}};
  for (const XPathCase& k : cases) {
    const auto layout = parseLayout(k.tree);
    layout->setFormat(k.format);
    const std::string written = HocrWriter().write(*layout);
    pugi::xml_document document;
    ASSERT_TRUE(document.load_string(written.c_str())) << k.label << "\n" << written;
    EXPECT_EQ(pugi::xpath_query(k.xpath).evaluate_string(document), k.want)
        << k.label << "\n" << written;
    EXPECT_EQ(hocrStructureProblems(written), std::vector<std::string>()) << k.label;
  }
}

TEST(HocrWriterRoundTripTest, WrittenRandomTreesReadBackToThemselves) {
  // A tree made in code may hold what hOCR cannot say; once read from hOCR it must survive
  // every further write and read unchanged, text and tree alike.
  static const char* const kNames[] = {"tess", "5.0", "", "a b", "x;y"};
  std::mt19937 random(1);
  for (int round = 1; round <= 500; ++round) {
    const std::string tree = qent::test::randomDump(random);
    const auto original = parseLayout(tree);
    Layout::Versions versions;
    for (int i = random() % 3; i > 0; --i) {
      versions.emplace_back(kNames[random() % 5], kNames[random() % 5]);
    }
    original->setVersions(versions);
    if (random() % 4 == 0) original->setFormat(3);
    const std::string first = HocrWriter().write(*original);
    ASSERT_EQ(hocrStructureProblems(first), std::vector<std::string>()) << tree;
    const auto once = PugiHocrReader().read(first);
    const std::string second = HocrWriter().write(*once);
    const auto twice = PugiHocrReader().read(second);
    ASSERT_EQ(dump(*twice), dump(*once)) << tree << "\n" << first << "\n" << second;
    ASSERT_EQ(twice->versions(), once->versions()) << tree;
    ASSERT_EQ(HocrWriter().write(*twice), second) << tree;
  }
}

}  // namespace
