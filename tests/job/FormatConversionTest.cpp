// FormatConversionTest.cpp - hOCR, WebAnno TSV and cloud-OCR answers through the C
// interface: conversions between the formats (the readers' errors are in ExecutionTest's
// table).
#include "ormida/ormida.h"

#include "base/Unicode.h"
#include "hocr/HocrWriter.h"
#include "hocr/PugiHocrReader.h"
#include "layout/Layout.h"
#include "layout/Node.h"
#include "layout/format/PlainTextWriter.h"
#include "layout/format/html/HtmlWriter.h"
#include "support/JobApi.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

namespace {

using qent::test::Job;
using qent::test::readAll;
using qent::test::TempDir;

const std::string kDataDir = ORMIDA_TEST_DATA_DIR;

// Collects the texts given to the output callback; a call with a non-zero reserved argument
// is recorded as such.
extern "C" void collectText(const char* bytes, size_t count, uint64_t userdata,
                            uint32_t reserved) {
  reinterpret_cast<std::vector<std::string>*>(static_cast<uintptr_t>(userdata))
      ->push_back(reserved == 0 ? std::string(bytes, count) : "reserved is not 0");
}

// Runs one job over `input` (a file in `dir`) with the given output formats (none: the
// default) delivered to the memory callback; returns the texts in format order.
std::vector<std::string> convert(const TempDir& dir, const std::string& input,
                                 const std::string& formats) {
  std::vector<std::string> texts;
  Job job;
  job.set("WorkSpace", dir.path().string());
  job.set("InputFilename", input);
  job.set("MemoryOutputCallback", std::to_string(reinterpret_cast<uintptr_t>(&collectText)));
  job.set("MemoryOutputUserdata", std::to_string(reinterpret_cast<uintptr_t>(&texts)));
  if (!formats.empty()) job.set("OutputFilename.Format", formats);
  EXPECT_EQ(job.execute(), ORMIDA_OK) << job.errorText();
  return texts;
}

TEST(FormatConversionTest, HocrInputToHocrByDefaultToPlainTextAndToHtml) {
  TempDir dir;
  const std::string input = readAll(ORMIDA_SOURCE_DIR "/data/samples/hocr-letter-deu-tesseract.hocr");
  dir.write("page.hocr", input);
  const auto layout = qent::text::hocr::PugiHocrReader().read(input);
  EXPECT_EQ(convert(dir, "page.hocr", ""),
            std::vector<std::string>{qent::text::hocr::HocrWriter().write(*layout)});
  EXPECT_EQ(convert(dir, "page.hocr", "txtutf8"),
            std::vector<std::string>{qent::base::utf16ToUtf8(
                qent::text::layout::format::PlainTextWriter().write(*layout))});
  EXPECT_EQ(convert(dir, "page.hocr", "HTML"),
            std::vector<std::string>{qent::text::layout::format::html::HtmlWriter().write(*layout)});
}

TEST(FormatConversionTest, CloudOcrAnswerToSeveralFormatsWithTheirExtensions) {
  TempDir dir;
  dir.write("answer.json", readAll(kDataDir + "/cloud-ocr/hand-made.json"));
  Job job;
  job.set("WorkSpace", dir.path().string());
  job.set("InputFilename", "answer.json");
  job.set("OutputFilename", "out.hocr");
  job.set("OutputFilename.Format", "webanno;txtutf8");
  ASSERT_EQ(job.execute(), ORMIDA_OK) << job.errorText();
  EXPECT_EQ(readAll(dir / "out.webAnno"), readAll(kDataDir + "/webanno/from-cloud-ocr.tsv"));
  EXPECT_EQ(readAll(dir / "out.txt"),
            "Rechnung Nr. 117\nDatum: 17.05.2024\nGr\xC3\xB6\xC3\x9F" "e\nok\n\fSeite 2\n");
}

TEST(FormatConversionTest, WhyACloudOcrTextIsNotJsonGoesToTheTrace) {
  TempDir dir;
  dir.write("in.json", R"({"fullTextAnnotation": {"pages": [}})");
  {
    Job job;
    ASSERT_EQ(job.set("TraceFilename", (dir / "trace.log").string()), ORMIDA_OK);
    job.set("WorkSpace", dir.path().string());
    job.set("InputFilename", "in.json");
    EXPECT_EQ(job.execute(), 20039u);
  }
  const std::string trace = readAll(dir / "trace.log");
  EXPECT_NE(trace.find("[ERROR]"), std::string::npos) << trace;
  EXPECT_NE(trace.find("cloud-OCR JSON: Invalid value. at byte 34"), std::string::npos) << trace;
}

// The opt-in modes through the C interface: a Tesseract heading read tolerantly, and WebAnno
// offsets in UTF-16 code units. Without them the same page is refused.
TEST(FormatConversionTest, TolerantHocrAndUtf16WebAnnoOffsets) {
  TempDir dir;
  dir.write("page.hocr",
            "<html><body><div class='ocr_page'><div class='ocr_carea' id='block_1' title='bbox 0 0 "
            "9 9'><span class='ocr_header' title='bbox 0 0 9 9'><span class='ocrx_word'>H\xC3\xA4"
            "</span> <span class='ocrx_word'>x</span></span></div></div></body></html>");
  const std::string tsv = "#FORMAT=WebAnno TSV 3.2\n#T_SP=webanno.custom.Mention|value\n\n\n"
                          "#Text=H\xC3\xA4 x\n1-1\t0-";
  struct Case {
    std::vector<std::pair<const char*, const char*>> properties;
    uint32_t code;
    std::string output;  // the error text when the code is not 0
  } const cases[] = {
      {{{"TolerantHocr", "true"}, {"OutputFilename.Format", "txtutf8"}}, 0, "H\xC3\xA4 x\n"},
      {{{"TolerantHocr", "1"}, {"OutputFilename.Format", "webanno"}, {"WebAnnoOffsets", "UTF16"}},
       0, tsv + "2\tH\xC3\xA4\t_\n1-2\t3-4\tx\t_\n"},
      {{{"TolerantHocr", "no"}}, 20001, "Unsupported node name with class ocr_header"},
      {{{"TolerantHocr", "true"}, {"WebAnnoOffsets", "utf-32"}}, 20020,
       "WebAnnoOffsets must be utf8 or utf16, not \"utf-32\""}};
  for (const Case& c : cases) {
    Job job;
    job.set("WorkSpace", dir.path().string());
    job.set("InputFilename", "page.hocr");
    job.set("OutputFilename", "out");
    for (const auto& [name, value] : c.properties) EXPECT_EQ(job.set(name, value), ORMIDA_OK);
    EXPECT_EQ(job.execute(), c.code);
    const std::string error = job.errorText();
    EXPECT_TRUE(c.code != 0 ? error.find(c.output) != std::string::npos
                            : readAll(dir / "out") == c.output) << error;
  }
}

}  // namespace
