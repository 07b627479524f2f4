// CompareSummaryTest.cpp - the ormida tool's --summary of a comparison, from the shell.
#include "support/CliRunner.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#if !defined(_WIN32)

#include <filesystem>

namespace {

using qent::test::readAll;
using qent::test::TempDir;

using qent::test::CliRun;
using qent::test::runCli;

const std::filesystem::path kData = std::filesystem::path(ORMIDA_TEST_DATA_DIR) / "comparison";

TEST(CompareSummaryTest, PrintsRatesErrorsAndF1PerPageAndWhereTheResultIs) {
  TempDir dir;
  dir.write("ocr.json", readAll(kData / "pages.left.json"));
  dir.write("truth.json", readAll(kData / "pages.right.json"));
  const CliRun run = runCli("WorkSpace=. InputFilename=ocr.json Compare=true "
                          "Compare.With=truth.json Compare.TransformStrategy=None "
                          "Compare.OutputFilename=result.json --summary",
                          dir);
  ASSERT_EQ(run.status, 0) << run.err;
  // The figures of the golden result: 12 of 35 wrong on the left, 4 of 27 on the right.
  EXPECT_EQ(run.out,
            "Comparison at word level: recognition (left) against reference (right)\n"
            "  recognition rate   65.71 % left,  85.19 % right\n"
            "  errors            12 of 35 left, 4 of 27 right\n"
            "  edits             12 (good 23)\n"
            "  f1 measure        0.7419\n"
            "\n"
            "  page  rate left  rate right  errors left  errors right      f1\n"
            "     1    85.19 %     85.19 %            4             4  0.8519\n"
            "     2     0.00 %     missing            8             0  0.0000\n"
            "\n"
            "Full result: ./result.json\n");
  EXPECT_EQ(readAll(dir / "result.json"), readAll(kData / "pages-word.result.json"));
}

TEST(CompareSummaryTest, WithoutAComparisonSaysSo) {
  TempDir dir;
  dir.write("ocr.json", readAll(kData / "pages.left.json"));
  const CliRun run = runCli("InputFilename=ocr.json --summary", dir);
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err, "ormida: --summary: no comparison result (set Compare=true)\n");
}

}  // namespace

#endif
