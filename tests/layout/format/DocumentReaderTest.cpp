// DocumentReaderTest.cpp - telling the input formats apart by their bytes.
#include "layout/format/DocumentReader.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

using namespace qent::text::layout::format;

TEST(DocumentReaderTest, DetectsTheFormatByContent) {
  const std::pair<std::string, DocumentFormat> cases[] = {
      {R"({"root":{"type":"node"}})", DocumentFormat::JsonLayout},
      {"  \n {\"root\":1}", DocumentFormat::JsonLayout},
      {R"({"meta":{"root":1,"responses":2},"root":{}})", DocumentFormat::JsonLayout},
      {R"({"responses":[{"fullTextAnnotation":{}}]})", DocumentFormat::CloudOcr},
      {R"({"fullTextAnnotation":{"text":"root"}})", DocumentFormat::CloudOcr},
      {R"({"x":"\"root\"","fullTextAnnotation":{}})", DocumentFormat::CloudOcr},
      {R"({"something":"else"})", DocumentFormat::JsonLayout},
      {"{", DocumentFormat::JsonLayout},
      {"<?xml version=\"1.0\"?><html>", DocumentFormat::Hocr},
      {"<!DOCTYPE html>", DocumentFormat::Hocr},
      {"#FORMAT=WebAnno TSV 3.2\n#T_SP=x", DocumentFormat::WebAnno},
      {"#FORMAT=Other", DocumentFormat::PlainText},
      {"Dear Sir,\n", DocumentFormat::PlainText},
      {"", DocumentFormat::PlainText},
  };
  for (const auto& [text, format] : cases) {
    EXPECT_EQ(detectFormat(text), format) << text;
  }
}

TEST(DocumentReaderTest, NormalisesEncodings) {
  EXPECT_EQ(normaliseEncoding("\xEF\xBB\xBF{}"), "{}");
  EXPECT_EQ(normaliseEncoding(std::string("\xFF\xFE{\0}\0", 6)), "{}");
  EXPECT_EQ(normaliseEncoding(std::string("\xFE\xFF\0{\0}", 6)), "{}");
  EXPECT_EQ(normaliseEncoding(std::string("\xFF\xFE\xAC\x20", 4)), "\xE2\x82\xAC");
  EXPECT_THROW(normaliseEncoding(std::string("\xFF\xFE{", 3)), std::runtime_error);
  EXPECT_THROW(normaliseEncoding(std::string("\xFF\xFE\x00\xD8", 4)), std::invalid_argument);
  EXPECT_EQ(normaliseEncoding("plain"), "plain");
}

TEST(DocumentReaderTest, PlainTextKeepsItsBytesAndPath) {
  const auto document = readDocument("hello\n", "notes.txt", "dir/notes.txt");
  EXPECT_EQ(document->kind(), Document::Kind::PlainText);
  EXPECT_EQ(document->text(), "hello\n");
  EXPECT_EQ(document->file(), std::filesystem::path("dir/notes.txt"));
  EXPECT_EQ(document->layout(), nullptr);
}

}  // namespace
