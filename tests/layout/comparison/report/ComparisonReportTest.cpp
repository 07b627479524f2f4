// ComparisonReportTest.cpp - the visual report as a caller gets it through the C interface:
// its markup for a small pair, page images found or left out, failures that keep an
// earlier report.
#include "support/Golden.h"
#include "support/JobApi.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace {

using qent::test::TempDir;

const std::filesystem::path kSamples =
    std::filesystem::path(ORMIDA_SOURCE_DIR) / "data" / "samples";

// Runs a comparison with a report; returns "" on success, else the code and error text.
std::string compareWithReport(const std::filesystem::path& recognition,
                              const std::filesystem::path& truth,
                              const std::filesystem::path& report, std::string_view level = "Word",
                              std::string_view mode = "Text") {
  qent::test::Job job;
  job.set("TolerantHocr", "true");
  job.set("InputFilename", recognition.string());
  job.set("Compare", "true");
  job.set("Compare.With", truth.string());
  job.set("Compare.Level", level);
  job.set("Compare.Mode", mode);
  job.set("ComparisonReportFilename", report.string());
  const uint32_t code = job.execute();
  return code == 0 ? "" : std::to_string(code) + ": " + job.errorText();
}

TEST(ComparisonReportTest, WritesTheGoldenReportOfASmallPair) {
  const TempDir dir;
  for (const std::string level : {"word", "line"}) {
    const auto report = dir / ("notice-" + level + ".html");
    ASSERT_EQ(compareWithReport(kSamples / "notice-ocr.json", kSamples / "notice-truth.json",
                                report, level),
              "");
    qent::test::expectGolden("comparison/report/notice-" + level + ".html",
                             qent::test::readAll(report));
  }
}

TEST(ComparisonReportTest, EmbedsThePageImageOnlyWhenTheNamedFileExists) {
  const TempDir dir;
  const auto withImage = dir / "with.html";
  ASSERT_EQ(compareWithReport(kSamples / "hocr-letter-eng-tesseract.hocr",
                              kSamples / "hocr-letter-eng-truth.hocr", withImage),
            "");
  // The PNG signature and the first bytes of its header, as base64.
  EXPECT_NE(qent::test::readAll(withImage).find("<img src=\"data:image/png;base64,iVBORw0KGgo"),
            std::string::npos);

  // The same layouts where no image lies beside them.
  for (const char* name : {"hocr-letter-eng-tesseract.hocr", "hocr-letter-eng-truth.hocr"}) {
    std::filesystem::copy_file(kSamples / name, dir / name);
  }
  const auto withoutImage = dir / "without.html";
  ASSERT_EQ(compareWithReport(dir / "hocr-letter-eng-tesseract.hocr",
                              dir / "hocr-letter-eng-truth.hocr", withoutImage),
            "");
  const std::string bare = qent::test::readAll(withoutImage);
  EXPECT_EQ(bare.find("<img"), std::string::npos);
  EXPECT_NE(bare.find("class=\"box bad\""), std::string::npos) << "the boxes are drawn anyway";
}

TEST(ComparisonReportTest, AFailedExecutionKeepsTheEarlierReport) {
  const TempDir dir;
  const auto report = dir.write("report.html", "earlier report");
  // A comparison that cannot run, and a report that cannot be written (named in the error).
  EXPECT_EQ(compareWithReport(kSamples / "notice-ocr.json", kSamples / "notice-truth.json", report,
                              "Word", "None")
                .substr(0, 5),
            "20020");
  EXPECT_EQ(qent::test::readAll(report), "earlier report");
  EXPECT_NE(compareWithReport(kSamples / "notice-ocr.json", kSamples / "notice-truth.json",
                              dir / "missing" / "report.html")
                .find("report.html"),
            std::string::npos);
  EXPECT_FALSE(std::filesystem::exists(dir / "missing"));
}

}  // namespace
