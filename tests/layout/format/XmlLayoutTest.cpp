// XmlLayoutTest.cpp - ALTO and PAGE XML: telling them by their root element, the writers'
// golden documents, and conversion and comparison across formats through the C interface.
#include "io/DocumentReader.h"
#include "layout/Layout.h"
#include "layout/Node.h"
#include "layout/format/Document.h"
#include "layout/format/alto/AltoWriter.h"
#include "layout/format/page/PageXmlWriter.h"
#include "layout/format/xml/XmlInput.h"
#include "support/Golden.h"
#include "support/JobApi.h"
#include "support/LayoutDump.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <string>

namespace qent::test {
namespace {

using text::layout::format::xml::rootElementName;

TEST(XmlLayoutTest, FindsTheRootElementBehindAnyProlog) {
  const std::pair<std::string_view, std::string_view> cases[] = {
      {"<alto xmlns='x'>", "alto"},
      {"<?xml version='1.0'?>\n<!-- <html> -->\n<pc:PcGts>", "PcGts"},
      {"<!DOCTYPE a [<!ENTITY b '>'>]><alto/>", "alto"},
      {"<!DOCTYPE html><html><body/></html>", "html"},
      {"<?xml version='1.0'?><!-- never closed", ""},
      {"{\"root\": 1}", ""},
  };
  for (const auto& [text, name] : cases) EXPECT_EQ(rootElementName(text), name) << text;
}

// Of several readings the lowest index wins wherever it is listed; regions follow the
// ReadingOrder, and those it leaves out follow in document order.
TEST(XmlLayoutTest, ReadsTheLowestIndexInTheReadingOrder) {
  const std::string region =
      "<TextRegion id='%'><Coords points='0,0 9,9'/><TextLine id='l%'><Coords points='0,0 9,9'/>"
      "<TextEquiv index='1'><Unicode>raw%</Unicode></TextEquiv>"
      "<TextEquiv index='0'><Unicode>%</Unicode></TextEquiv></TextLine></TextRegion>";
  std::string regions;
  for (const char* id : {"a", "b", "c"}) {
    std::string one = region;
    for (std::size_t at = one.find('%'); at != std::string::npos; at = one.find('%')) {
      one.replace(at, 1, id);
    }
    regions += one;
  }
  const std::string page =
      "<PcGts xmlns='http://schema.primaresearch.org/PAGE/gts/pagecontent/2019-07-15'><Page>"
      "<ReadingOrder><OrderedGroup id='g'><RegionRefIndexed index='2' regionRef='a'/>"
      "<RegionRefIndexed index='1' regionRef='c'/></OrderedGroup></ReadingOrder>" +
      regions + "</Page></PcGts>";
  const auto document = io::readDocument(page, "page", {});
  EXPECT_EQ(dump(*document->layout()).find("raw"), std::string::npos);
  std::string order;
  for (const auto& child : document->layout()->root()->child(0).children()) {
    order += u8(child->id());
  }
  EXPECT_EQ(order, "cab");
}

// Both formats hold at least one page: a layout without one becomes a page of size 0.
TEST(XmlLayoutTest, WritesALayoutWithoutPagesAsOnePage) {
  const auto empty = io::readDocument(readTestData("hocr/empty-layout.hocr"), "empty", {});
  for (const std::string& written : {text::layout::format::AltoWriter().write(*empty->layout()),
                                     text::layout::format::PageXmlWriter().write(*empty->layout())}) {
    const auto again = io::readDocument(written, "again", {});
    EXPECT_EQ(again->layout()->root()->childCount(), 1u) << written;
  }
}

TEST(XmlLayoutTest, GoldenDocuments) {
  // PAGE words with glyphs and confidences at three levels, written as ALTO.
  const auto page = io::readDocument(
      readTestData("third_party/page/doculib-page2018-glyph-conf-levels.xml"), "page", {});
  expectGolden("alto/doculib-glyph-conf-levels.alto.xml",
               text::layout::format::AltoWriter().write(*page->layout()));
  // ALTO lines with baselines and polygons, written as PAGE; the dates come from the layout
  // so that the document does not change with the clock.
  const auto alto = io::readDocument(
      readTestData("third_party/alto/escriptorium-alto4.2-export-minimal.xml"), "alto", {});
  alto->layout()->root()->setAttribute(u"Created", u"2024-01-02T03:04:05");
  alto->layout()->root()->setAttribute(u"LastChange", u"2024-01-02T03:04:05");
  expectGolden("page/escriptorium-export-minimal.page.xml",
               text::layout::format::PageXmlWriter().write(*alto->layout()));
}

// A PAGE file and its ALTO conversion hold the same words at the same places, so comparing
// one with the other finds every character; without the opt-in "alto" is no output format.
TEST(XmlLayoutTest, ConvertsThroughTheJobAndComparesAcrossFormats) {
  TempDir dir;
  dir.write("gt.page.xml", readTestData("third_party/page/doculib-page2018-glyph-conf-levels.xml"));
  for (const char* optIn : {"false", "true"}) {
    Job job;
    job.set("WorkSpace", dir.path().string());
    job.set("InputFilename", "gt.page.xml");
    job.set("OutputFilename", "ocr.alto.xml");
    job.set("OutputFilename.Format", "alto");
    job.set("XmlLayoutFormats", optIn);
    EXPECT_EQ(job.execute(), std::string(optIn) == "true" ? ORMIDA_OK : ORMIDA_FAILED)
        << job.errorText();
  }
  Job job;
  job.set("WorkSpace", dir.path().string());
  job.set("InputFilename", "gt.page.xml;ocr.alto.xml");
  job.set("Compare", "true");
  job.set("Compare.TransformStrategy", "None");
  ASSERT_EQ(job.execute(), ORMIDA_OK) << job.errorText();
  const std::string result = job.get("Compare.Result").second;
  EXPECT_NE(result.find(R"("diff":{"edits":0,"error_count_left":0,"error_count_right":0)"),
            std::string::npos)
      << result;
}

}  // namespace
}  // namespace qent::test
