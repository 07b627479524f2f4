// HocrJobTest.cpp - hOCR through the C interface: a file read as hOCR comes out as hOCR (the
// default) and plain text (the writers' output, written as UTF-8). Bad hOCR is in
// ExecutionTest's table of bad inputs.
#include "ormida/ormida.h"

#include "base/Unicode.h"
#include "hocr/HocrWriter.h"
#include "hocr/PugiHocrReader.h"
#include "layout/Layout.h"
#include "layout/Node.h"
#include "layout/format/PlainTextWriter.h"
#include "support/JobApi.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

using qent::test::Job;
using qent::test::readAll;
using qent::test::TempDir;

const std::filesystem::path kTesseractSample =
    std::filesystem::path(ORMIDA_SOURCE_DIR) / "data" / "samples" / "hocr-letter-deu-tesseract.hocr";

TEST(HocrJobTest, HocrInputWrittenAsHocrByDefaultAndAsPlainText) {
  TempDir dir;
  const std::string input = readAll(kTesseractSample);
  dir.write("page.hocr", input);
  const auto layout = qent::text::hocr::PugiHocrReader().read(input);
  Job job;
  job.set("WorkSpace", dir.path().string());
  job.set("InputFilename", "page.hocr");
  job.set("OutputFilename", "out.hocr");
  ASSERT_EQ(job.execute(), ORMIDA_OK) << job.errorText();
  EXPECT_EQ(readAll(dir / "out.hocr"), qent::text::hocr::HocrWriter().write(*layout));

  job.set("OutputFilename", "out.txt");
  job.set("OutputFilename.Format", "txtutf8");
  ASSERT_EQ(job.execute(), ORMIDA_OK) << job.errorText();
  const std::string text = readAll(dir / "out.txt");
  EXPECT_EQ(text, qent::base::utf16ToUtf8(
                      qent::text::layout::format::PlainTextWriter().write(*layout)));
  EXPECT_NE(text.find("block_1_1"), std::string::npos) << "a box writes its id: " << text;
}

}  // namespace
