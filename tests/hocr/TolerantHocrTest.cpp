// TolerantHocrTest.cpp - the tolerant dialect of the hOCR reader: what it reads where the
// strict one refuses or keeps ids as text, HTML read like its XML twin, and deep HTML
// refused before the HTML parser sees it.
#include "hocr/PugiHocrReader.h"

#include "base/QentException.h"
#include "base/Unicode.h"
#include "hocr/GumboMarkup.h"
#include "io/DocumentReader.h"
#include "layout/Layout.h"
#include "layout/format/PlainTextWriter.h"
#include "support/Golden.h"
#include "support/LayoutDump.h"

#include <gtest/gtest.h>
#include <pugixml.hpp>

#include <map>
#include <regex>
#include <set>
#include <string>

namespace {

using qent::base::QentException;
using qent::text::hocr::GumboMarkup;
using Reader = qent::text::hocr::PugiHocrReader;

std::string document(std::string_view body) {
  return "<html xmlns=\"http://www.w3.org/1999/xhtml\"><head><title></title></head><body>" +
         std::string(body) + "</body></html>";
}

std::string readTolerant(const std::string& text) {
  return qent::test::dump(*Reader(Reader::Dialect::Tolerant).read(text));
}

TEST(TolerantHocrTest, ReadsWhatTheStrictReadingRefusesOrHides) {
  const std::pair<const char*, const char*> cases[] = {
      {"<span class='ocr_header' id='line_1' title='bbox 0 0 9 9'>Title</span>",
       "Line#line_1[0,0,9,9]\"Title\"(@bbox=\"0 0 9 9\",@class=ocr_header)"},
      {"<p class='ocr_caption'>c</p><div class='ocr_textfloat'>f</div>",
       "Content:body{Line\"c\"(@class=ocr_caption),Line\"f\"(@class=ocr_textfloat)}"},
      // Character boxes as Tesseract writes them (x_bboxes), or as bbox.
      {"<span class='ocrx_word' title='bbox 0 0 20 10'><span class='ocrx_cinfo' "
       "title='x_bboxes 0 0 10 10; x_conf 98.5'>H</span><em class='ocrx_cinfo' "
       "title='bbox 10 0 20 10'>i</em></span>",
       "Word[0,0,20,10](@bbox=\"0 0 20 10\"){Glyph[0,0,10,10]\"H\"(conf=98.5,"
       "@x_bboxes=\"0 0 10 10\",@x_conf=98.5),Glyph[10,0,10,10]\"i\"(@bbox=\"10 0 20 10\")}"},
      // The first hOCR token of a class decides; the class stays as written.
      {"<span class='custom ocr_line'>l</span><b class='ocrx_word   x'>w</b>",
       "Content:body{Line\"l\"(@class=\"custom ocr_line\"),Word\"w\"(@class=\"ocrx_word   x\")}"},
      // Any hOCR class on any element; no id becomes text; an element named like a class.
      {"<span class='ocr_carea' id='block_1' title='bbox 0 0 5 5'><ocr_line>x</ocr_line></span>",
       "Box#block_1:ocr_carea[0,0,5,5](@bbox=\"0 0 5 5\"){Line\"x\"}"},
      // Text outside any layout class is kept: Tesseract 3's inner spans, bold words.
      {"<span class='ocr_word' title='bbox 0 0 1 1'><span class='xocr_word'>a</span>"
       "</span><span class='ocrx_word'><strong>b</strong></span>",
       "Content:body{Box:ocr_word[0,0,1,1](@bbox=\"0 0 1 1\"){Content:xocr_word\"a\"(@class=xocr_word)},"
       "Word{Content:strong\"b\"}}"}};
  for (const auto& [body, expected] : cases) {
    EXPECT_EQ(readTolerant(document(body)), expected) << body;
  }
}

// The HTML parse gives the tree pugixml gives for the same page written as XML.
TEST(TolerantHocrTest, ReadsHtmlThatIsNotXmlAsItsXmlTwin) {
  if (!GumboMarkup::available()) GTEST_SKIP() << "this build has no HTML parser (gumbo)";
  const std::string html =
      "<!DOCTYPE html PUBLIC \"-//W3C//DTD HTML 4.01//EN\"><HTML><head><title></title>"
      "<meta name=ocr-system content='openocr 1.0'></head><body><div class=ocr_page "
      "id=page_1 title='bbox 0 0 9 9'><p align=justify><span class='ocr_line' title="
      "\"bbox 0 0 9 9\">Tom & Jerry &#8216;x&#8217;<br></span><span class=ocrx_word>w";
  const std::string xml =
      "<html><head><title></title><meta name='ocr-system' content='openocr 1.0'/></head>"
      "<body><div class='ocr_page' id='page_1' title='bbox 0 0 9 9'><p align='justify'>"
      "<span class='ocr_line' title='bbox 0 0 9 9'>Tom &amp; Jerry \xE2\x80\x98x\xE2\x80\x99"
      "<br/></span><span class='ocrx_word'>w</span></p></div></body></html>";
  const auto fromHtml = Reader(Reader::Dialect::Tolerant).read(html);
  const auto fromXml = Reader(Reader::Dialect::Tolerant).read(xml);
  EXPECT_EQ(qent::test::dump(*fromHtml), qent::test::dump(*fromXml));
  EXPECT_EQ(fromHtml->versions(), fromXml->versions());
  EXPECT_THROW(Reader().read(html), QentException);
}

TEST(TolerantHocrTest, RefusesHtmlNestedTooDeepBeforeParsingIt) {
  if (!GumboMarkup::available()) GTEST_SKIP() << "this build has no HTML parser (gumbo)";
  std::string deep = "<html><body>";
  for (int i = 0; i < 990; ++i) deep += "<div><p><br>";
  EXPECT_NO_THROW(Reader(Reader::Dialect::Tolerant).read(deep + "&"));
  for (int i = 0; i < 200000; ++i) deep += "<div><p><br>";
  try {
    Reader(Reader::Dialect::Tolerant).read(deep + "&");
    FAIL() << "read a document nested 200,990 levels deep";
  } catch (const QentException& e) {
    EXPECT_EQ(e.code(), 20001u);
    EXPECT_STREQ(e.what(), "hOCR: element <div> at offset 12012 is nested deeper than 1000 "
                           "levels");
  }
}

std::string withoutSpace(std::string text) {
  std::erase_if(text, [](char c) { return std::isspace(static_cast<unsigned char>(c)); });
  return text;
}

// A deliberately simple reference: the text between the tags of the body, entities
// expanded, white space left out. A reader that loses no text gives the same plain text.
std::string bodyText(const std::string& html) {
  std::string rest = std::regex_replace(html.substr(std::min(html.find("<body"), html.size())),
                                        std::regex("<!--[^]*?-->|<[^>]*>"), "");
  const std::map<std::string, std::string> named = {{"amp", "&"}, {"lt", "<"}, {"gt", ">"},
      {"quot", "\""}, {"apos", "'"}, {"nbsp", "\u00A0"}};
  const std::regex entity("&(#x?)?([0-9a-zA-Z]+);");
  std::string out;
  for (std::smatch m; std::regex_search(rest, m, entity); rest = m.suffix()) {
    out += m.prefix();
    if (m[1].length() == 0) out += named.count(m[2]) != 0 ? named.at(m[2]) : m.str();
    if (m[1].length() != 0) {  // a character reference; the samples' are all in the BMP
      const auto c = static_cast<char16_t>(std::stoul(m[2], nullptr, m[1] == "#x" ? 16 : 10));
      out += qent::base::utf16ToUtf8(std::u16string(1, c));
    }
  }
  return withoutSpace(out + rest);
}

// Every real hOCR file (the shared samples beside the repository, else the copies in the
// repository) loads in the tolerant mode and its plain text holds all its text in order.
TEST(TolerantHocrTest, ReadsEveryRealSampleWithItsWordsInOrder) {
  // Not XML: these load only through the HTML parse.
  const std::set<std::string> htmlOnly = {"cuneiform0.9-ocrodjvu-alice-cinfo.hocr",
      "cuneiform1.0-ocrodjvu-non-ascii.hocr", "tesseract3.00-ocrodjvu-alice-xocr-word.hocr"};
  // Bare text in a page element, where the layout model has no text.
  const std::map<std::string, std::string> notRead = {
      {"hocrtools-split-two-pages-minimal.hocr", "Page1Page2"}};
  const auto files = qent::test::realSamples("hocr");
  if (files.size() < 19) std::cout << "shared samples not found: read " << files.size() << " copies\n";
  qent::io::ReadOptions tolerant;
  tolerant.tolerantHocr = true;
  for (const auto& [name, path] : files) {
    SCOPED_TRACE(name);
    if (htmlOnly.count(name) == 1 && !GumboMarkup::available()) {
      std::cout << "skipped (this build has no HTML parser): " << name << "\n";
      continue;
    }
    const std::string bytes = qent::test::readAll(path);
    EXPECT_EQ(!pugi::xml_document().load_string(bytes.c_str()), htmlOnly.count(name) == 1);
    const auto document = qent::io::readDocument(bytes, name, path, tolerant);
    ASSERT_NE(document->layout(), nullptr);
    const std::string plain = qent::base::utf16ToUtf8(
        qent::text::layout::format::PlainTextWriter().write(*document->layout()));
    EXPECT_EQ(withoutSpace(plain) + (notRead.count(name) != 0 ? notRead.at(name) : ""), bodyText(bytes));
    // ... and no element id in the text of a Tesseract page.
    const std::regex id("id=['\"]([^'\"]+)['\"]");
    for (auto it = std::sregex_iterator(bytes.begin(), bytes.end(), id);
         name.starts_with("tesseract") && it != std::sregex_iterator(); ++it) {
      EXPECT_EQ(plain.find((*it)[1].str()), std::string::npos) << (*it)[1];
    }
  }
}

}  // namespace
