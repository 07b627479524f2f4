// PugiHocrReaderTest.cpp - hOCR documents in, layout trees out (compared by their dump), and
// every kind of malformed document refused with its documented error.
#include "hocr/PugiHocrReader.h"

#include "base/QentException.h"
#include "layout/Layout.h"
#include "layout/LayoutLimits.h"
#include "layout/Nodes.h"
#include "support/LayoutDump.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace {

using qent::base::QentException;
using qent::text::hocr::PugiHocrReader;
using qent::text::layout::Layout;

std::string document(std::string_view body, std::string_view head = "") {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
         "<!DOCTYPE html PUBLIC \"-//W3C//DTD XHTML 1.0 Transitional//EN\" "
         "\"http://www.w3.org/TR/xhtml1/DTD/xhtml1-transitional.dtd\">\n"
         "<html xmlns=\"http://www.w3.org/1999/xhtml\" xml:lang=\"en\" lang=\"en\">\n"
         "<head><title></title>" +
         std::string(head) + "</head>\n<body>" + std::string(body) + "</body></html>\n";
}

std::unique_ptr<Layout> readBody(std::string_view body) {
  return PugiHocrReader().read(document(body));
}

// --- trees -------------------------------------------------------------------------------

TEST(HocrReaderTest, BuildsTheTree) {
  const std::pair<const char*, const char*> cases[] = {
      {"<div class='ocr_page' id='page_1' title='bbox 0 0 800 600; ppageno 0'></div>",
       "Page#page_1(w=800,h=600,@bbox=\"0 0 800 600\",@ppageno=0)"},
      {"<div class='ocr_page'/><div class='ocr_page'/>", "Content:body{Page,Page(index=1)}"},
      {"", "Content:body"},
      {"<span class='ocrx_word' id='w' title='bbox 0 0 100 50; x_wconf 93'>Hi</span>",
       "Word#w[0,0,100,50]\"Hi\"(conf=93,@bbox=\"0 0 100 50\",@x_wconf=93)"},
      {"<span class='ocrx_word' title='bbox 10 20 5 8'/>", "Word[5,8,5,12](@bbox=\"10 20 5 8\")"},
      {"<div class='ocr_page' title='bbox 10 10 5 20'/>",
       "Page(w=4294967291,h=10,@bbox=\"10 10 5 20\")"},
      {"<span class='ocrx_word' title='bbox 5 5 5 9'/>", "Word[5,5,0,4](@bbox=\"5 5 5 9\")"},
      {"<p class='ocr_par' id='par_1' title='bbox 1 2 3 4'>text</p>",
       "Box#par_1:ocr_par[1,2,2,2]\"text\"(@bbox=\"1 2 3 4\")"},
      {"<div class='ocrx_table' id='t1' title='bbox 0 0 9 9'></div>",
       "Box#t1:ocrx_table[0,0,9,9]\"t1\"(kind=25,@bbox=\"0 0 9 9\")"},
      {"<div class='ocr_carea' id='c'><br/></div>", "Content#c:ocr_carea{Content:br}"},
      {"<div class='foo' title='bbox 0 0 1 1'/>", "Box:foo[0,0,1,1](@bbox=\"0 0 1 1\",@class=foo)"},
      {"<span>x</span><em/>", "Content:body{Content:span,Content:em}"},
      {"<span class='ocrx_word' title='bbox 0 0 1 1' style='font-weight: bold; "
       "font-style:italic; font-family: Times; font-size: 12pt; "
       "color: rgb(255, 0, 10); background-color: #fff'>a</span>",
       "Word[0,0,1,1]\"a\"(size=12,family=Times,style=2,weight=3,color=\"255 0 10\","
       "@background-color=\"#fff\",@bbox=\"0 0 1 1\",@color=\"rgb(255, 0, 10)\","
       "@font-family=Times,@font-size=12pt,@font-style=italic,@font-weight=bold,"
       "@style=\"font-weight: bold; font-style:italic; font-family: Times; "
       "font-size: 12pt; color: rgb(255, 0, 10); background-color: #fff\")"},
      {"<span class='ocrx_word' title='font-weight light' style='font-weight:bold'/>",
       "Word(weight=1,@font-weight=light,@style=\"font-weight:bold\")"},
      {"<span class='ocrx_word' style='font-weight:bold'/>",
       "Word(weight=3,@style=\"font-weight:bold\")"},
      {"<span class='ocr_line' title='bbox 0 0 9 9; baseline 0.015 -18; x_size 31.5; "
       "x_descenders 7; x_ascenders 8; x_lconf 88; textangle 90'/>",
       "Line[0,0,9,9](conf=88,angle=90,base=\"0.015 -18\",asc=8,desc=7,gh=31.5,"
       "@baseline=\"0.015 -18\",@bbox=\"0 0 9 9\",@textangle=90,@x_ascenders=8,"
       "@x_descenders=7,@x_lconf=88,@x_size=31.5)"},
      {"<span class='ocrx_word' title='x_checked 3; x_rejected 1; x_sensibility 0.5; "
       "x_entity PER; poly 1 2  3 4'>w</span>",
       "Word\"w\"(sens=0.5,entity=PER,poly=\"1 2;3 4\",checked=3,rejected=1,"
       "@poly=\"1 2  3 4\",@x_checked=3,@x_entity=PER,@x_rejected=1," "@x_sensibility=0.5)"},
      {"<span class='ocr_line'>  head <span class='ocrx_word'>a</span> tail</span>",
       "Line\"head\"{Word\"a\"}"},
      {"<span bbox='raw' title='bbox 0 0 1 1' lang='de' class='ocrx_word'/>",
       "Word[0,0,1,1](@bbox=\"0 0 1 1\",@lang=de)"},
      {"<div class='ocr_page' id='p1' title='image \"a.png\"; bbox 0 0 2 2'/>"
       "<div class='ocr_page' id='p2' title='image \"a.png\"'/>"
       "<div class='ocr_page' id='p3' title='image b.png' lang='deu'/>",
       "Content:body{Page#p1(w=2,h=2,@bbox=\"0 0 2 2\",@image=\"\\\"a.png\\\"\")"
       "{Image#image_p1\"\\\"a.png\\\"\"},Page#p2(index=1,@image=\"\\\"a.png\\\"\"),"
       "Page#p3(lang=deu,index=2,@image=b.png,@lang=deu){Image#image_p3\"b.png\"}}"},
      {"<span class='ocrx_word' title='x_wconf 5;'/>", "Word(conf=5,@\"\"=\"\",@x_wconf=5)"}};
  for (const auto& [body, want] : cases) EXPECT_EQ(qent::test::dump(*readBody(body)), want) << body;
}

TEST(HocrReaderTest, ReadsVersionsAndModules) {
  const std::string text =
      document("<div class='ocr_page'/>",
               "<meta name='ocr-system' content='engine:4.1:b;other; ;x:'/>"
               "<meta name='ocr-modules' content='mod_a mod_b'/>");
  const auto layout = PugiHocrReader().read(text);
  using Versions = Layout::Versions;
  EXPECT_EQ(layout->versions(),
            (Versions{{"engine", "4.1:b"}, {"other", "other"}, {"", ""}, {"x", ""}}));
  EXPECT_EQ(layout->format(), 1u);
  EXPECT_EQ(qent::test::dump(*layout), "Page(@additional_versions=\"mod_a mod_b\")");
  EXPECT_EQ(readBody("")->versions(), (Versions{{"", ""}})) << "no ocr-system meta";
  // HTML 4.01 without an XML declaration reads as well when it is well-formed.
  EXPECT_EQ(PugiHocrReader().read("<html><head><meta name='ocr-system' content='x'/></head>"
                                  "<body><span class='ocr_line'>ab</span></body></html>")
                ->versions(),
            (Versions{{"x", "x"}}));
}

// --- errors ------------------------------------------------------------------------------

// The error as "code: text" for the library's own errors, "invalid: text" and "range: text"
// for the standard conversion errors.
std::string errorOf(const std::string& text) {
  try {
    PugiHocrReader().read(text);
    return "no error";
  } catch (const QentException& e) {
    return std::to_string(e.code()) + ": " + e.what();
  } catch (const std::invalid_argument& e) {
    return std::string("invalid: ") + e.what();
  } catch (const std::out_of_range& e) {
    return std::string("range: ") + e.what();
  }
}

TEST(HocrReaderErrorTest, RefusesWithTheDocumentedError) {
  const std::pair<std::string, const char*> cases[] = {
      {"", "20001: No HOCR file found"},
      {"<xml><body/></xml>", "20001: No HOCR file found"},
      {"<HTML><BODY></BODY></HTML>", "20001: No HOCR file found"},
      {document("<div class='ocr_page'>").substr(0, 300), "20001: HOCR parsing error"},
      {document("<div><span></div></span>"), "20001: HOCR parsing error"},
      {"<html><head><meta name='ocr-system' content='x'></head><body></body></html>",
       "20001: HOCR parsing error"},
      {document("<ocrx_word/>"), "20001: Unsupported node name for HOCRReader: ocrx_word"},
      {document("<span class='ocr_par'/>"),
       "20001: Unsupported node name with class ocr_par for HOCRReader: span"},
      {document("<span class='ocrx_word' title='bbox -2147483648 0 2147483647 1'/>"),
       "invalid: Width or Height of Rectangle must be > 0"},
      {document("<span class='ocrx_word' title='x_wconf high'/>"),
       "invalid: invalid stod argument"},
      {document("<span class='ocrx_word' title='x_wconf 1e999'/>"),
       "range: stod argument out of range"},
      {document("<span class='ocrx_word' title='x_checked yes'/>"),
       "invalid: invalid stoul argument"},
      {document("<span class='ocrx_word' title='x_checked 99999999999'/>"),
       "range: stoul argument out of range"},
      {document("<span class='ocrx_word' title='poly 1 2 x 4'/>"),
       "invalid: invalid stoi argument"},
      {document("<span class='ocrx_word' title='poly 1 2 3 4000000000'/>"),
       "range: stoi argument out of range"},
      {document("<p class='ocr_par' title='bbox 0 0 1 1' style='font-size:x'/>"),
       "invalid: invalid stod argument"},
      {"<html><body><span class='ocrx_word' title='poly 1 2 3'/></body></html>",
       "20001: hOCR: element <span> at offset 12 has a poly with an odd number of values (3)"},
      {"<html><body><span class='ocrx_word'>\xC3\x28</span></body></html>",
       "20001: hOCR: element <span> at offset 12 holds invalid UTF-8 (invalid UTF-8 at byte 0)"}};
  for (const auto& [text, want] : cases) EXPECT_EQ(errorOf(text), want) << text;
}

TEST(HocrReaderErrorTest, NestingDeeperThanTheLimitIsRefused) {
  // pugixml parses any depth without recursion; the reader must refuse before its own walk
  // could exhaust the stack. The body is level 1.
  constexpr std::size_t kLimit = qent::text::layout::kMaxLayoutDepth;
  for (const std::size_t levels : {kLimit - 1, kLimit, std::size_t{1000000}}) {
    std::string body;
    for (std::size_t i = 0; i < levels; ++i) body += "<div>";
    for (std::size_t i = 0; i < levels; ++i) body += "</div>";
    const std::string error = errorOf(document(body));
    if (levels == kLimit - 1) {
      EXPECT_EQ(error, "no error");
    } else {
      EXPECT_EQ(error.rfind("20001: ", 0), 0u) << error;
      EXPECT_NE(error.find("is nested deeper than 1000 levels"), std::string::npos) << error;
    }
  }
}

}  // namespace
