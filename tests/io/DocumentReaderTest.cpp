// DocumentReaderTest.cpp - telling the input formats apart by their bytes.
#include "io/DocumentReader.h"
#include "io/FormatTable.h"
#include "layout/Layout.h"
#include "layout/LayoutFormat.h"
#include "layout/format/JSONWriter.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace {

using namespace qent::text::layout;
using qent::io::formatOfContent;

// The code of the format chosen for the text; kFormatNone for plain text.
std::uint32_t chosen(std::string_view text) {
  const qent::io::Format* format = formatOfContent(text);
  return format == nullptr ? kFormatNone : format->code;
}

TEST(DocumentReaderTest, DetectsTheFormatByContent) {
  const std::pair<std::string, std::uint32_t> cases[] = {
      {R"({"root":{"type":"node"}})", kFormatJsonLayout},
      {"  \n {\"root\":1}", kFormatJsonLayout},
      {R"({"meta":{"root":1,"responses":2},"root":{}})", kFormatJsonLayout},
      {R"({"responses":[{"fullTextAnnotation":{}}]})", kFormatCloudOcr},
      {R"({"fullTextAnnotation":{"text":"root"}})", kFormatCloudOcr},
      {R"({"x":"\"root\"","fullTextAnnotation":{}})", kFormatCloudOcr},
      {R"({"something":"else"})", kFormatJsonLayout},
      {"{", kFormatJsonLayout},
      {"<?xml version=\"1.0\"?><html>", kFormatHocr},
      {"<!DOCTYPE html>", kFormatHocr},
      {"#FORMAT=WebAnno TSV 3.2\n#T_SP=x", kFormatWebAnno},
      {"#FORMAT=Other", kFormatNone},
      {"Dear Sir,\n", kFormatNone},
      {"", kFormatNone},
  };
  for (const auto& [text, format] : cases) EXPECT_EQ(chosen(text), format) << text;
}

// Real files of other projects: each is claimed by its own format's entry.
TEST(DocumentReaderTest, EverySampleIsClaimedByItsFormat) {
  const std::filesystem::path samples =
      std::filesystem::path(ORMIDA_SOURCE_DIR) / ".." / "shared" / "samples";
  if (!std::filesystem::exists(samples)) GTEST_SKIP() << "no shared samples beside the repository";
  const std::pair<const char*, std::uint32_t> folders[] = {
      {"hocr", kFormatHocr}, {"cloud-ocr", kFormatCloudOcr}, {"webanno", kFormatWebAnno}};
  for (const auto& [folder, code] : folders) {
    for (const auto& entry : std::filesystem::directory_iterator(samples / folder)) {
      std::ifstream in(entry.path(), std::ios::binary);
      std::stringstream bytes;
      bytes << in.rdbuf();
      EXPECT_EQ(chosen(qent::io::normaliseEncoding(bytes.str())), code) << entry.path();
    }
  }
}

TEST(DocumentReaderTest, NormalisesEncodings) {
  using qent::io::normaliseEncoding;
  EXPECT_EQ(normaliseEncoding("\xEF\xBB\xBF{}"), "{}");
  EXPECT_EQ(normaliseEncoding(std::string("\xFF\xFE{\0}\0", 6)), "{}");
  EXPECT_EQ(normaliseEncoding(std::string("\xFE\xFF\0{\0}", 6)), "{}");
  EXPECT_EQ(normaliseEncoding(std::string("\xFF\xFE\xAC\x20", 4)), "\xE2\x82\xAC");
  EXPECT_THROW(normaliseEncoding(std::string("\xFF\xFE{", 3)), std::runtime_error);
  EXPECT_THROW(normaliseEncoding(std::string("\xFF\xFE\x00\xD8", 4)), std::invalid_argument);
  EXPECT_EQ(normaliseEncoding("plain"), "plain");
}

TEST(DocumentReaderTest, PlainTextKeepsItsBytesAndPath) {
  const auto document = qent::io::readDocument("hello\n", "notes.txt", "dir/notes.txt");
  EXPECT_EQ(document->kind(), format::Document::Kind::PlainText);
  EXPECT_EQ(document->text(), "hello\n");
  EXPECT_EQ(document->file(), std::filesystem::path("dir/notes.txt"));
  EXPECT_EQ(document->layout(), nullptr);
}

// A file too large to hold whole is parsed piece by piece; that must give what the whole text
// gives, layout or error, also when a character, an escape or a fault lies across a piece's
// edge or far behind the beginning that decided the format.
TEST(DocumentReaderTest, LargeFilesReadPieceByPieceAsTheWholeText) {
  std::string words;
  for (int i = 0; i < 9000; ++i) {
    words += R"({"type":"word","left":)" + std::to_string(i % 900 + 1) +
             R"(,"top":5,"width":7,"height":9,"text":"a\"\u00df\uD834\uDD1E€)" +
             std::string(i % 5, 'x') + "\\\\\"},";
  }
  words.pop_back();
  const std::string layout = R"({"root":{"type":"page","children":[)" + words + "]}}";
  const std::string late = R"({"meta":")" + std::string(70000, 'm') + R"(","root":{"type":"node"}})";
  std::string hocr = "<html><body><div class='ocr_page' title='bbox 0 0 9 9'>";
  for (int i = 0; i < 3000; ++i) {
    hocr += "<span class='ocrx_word' title='bbox 1 2 3 4; x_wconf " + std::to_string(i % 100) +
            "'>w&amp;\xC3\x9F" + std::string(i % 4, 'x') + "</span>\r\n";
  }
  hocr += "</div></body></html>";
  const std::string html = "<html><body><p class=ocr_par title='bbox 0 0 1 1'>" +
                           std::string(70000, 'h') + "&</body></html>";
  const std::string cases[] = {
      hocr,
      "\xEF\xBB\xBF  " + hocr,
      hocr.substr(0, 90000) + "<" + hocr.substr(90000),
      hocr.substr(0, 80000) + "\xFF" + hocr.substr(80000),
      hocr.substr(0, hocr.size() - 3),
      "<x>" + std::string(70000, ' ') + "</x>",
      html,
      layout,
      "\xEF\xBB\xBF  " + layout + "\n\t ",
      late,
      layout + " x",
      layout + std::string(1, '\0') + " ",
      layout.substr(0, layout.size() - 1),
      layout.substr(0, 80000) + "\xFF" + layout.substr(80000),
      layout.substr(0, 90000) + "\\uDC00" + layout.substr(90000),
  };
  qent::test::TempDir dir;
  auto outcome = [](auto read) {
    try {
      return qent::text::layout::format::JSONWriter().write(*read()->layout());
    } catch (const std::exception& e) {
      return std::string("error: ") + e.what();
    }
  };
  for (const std::string& text : cases) {
    const auto file = dir.write("large", text);
    for (const bool tolerant : {false, true}) {
      qent::io::ReadOptions options;
      options.tolerantHocr = tolerant;
      const std::string whole =
          outcome([&] { return qent::io::readDocument(text, "large", {}, options); });
      const std::string pieces =
          outcome([&] { return qent::io::readDocumentFile(file, "large", options); });
      EXPECT_TRUE(pieces == whole) << pieces.substr(0, 60) << " instead of " << whole.substr(0, 60)
                                   << " for the text ending " << text.substr(text.size() - 20);
    }
  }
}

}  // namespace
