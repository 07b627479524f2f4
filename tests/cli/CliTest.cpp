// CliTest.cpp - the ormida tool from the shell: properties in order, results and the
// comparison summary printed, errors on standard error with a non-zero exit status.
#include "support/CliRunner.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#if !defined(_WIN32)

#include <tuple>

namespace {

using qent::test::readAll;
using qent::test::TempDir;

using qent::test::CliRun;
using qent::test::runCli;

const std::string kData = ORMIDA_TEST_DATA_DIR "/comparison/";
const char* kLayout =
    R"({"root":{"children":[{"index_in_layout":0,"type":"page"}],"type":"node"}})";

TEST(CliTest, PrintsTheVersionAndConvertsWithAValueReadFromAFile) {
  TempDir dir;
  const CliRun version = runCli("--version", dir);
  EXPECT_EQ(version.status, 0);
  EXPECT_EQ(version.out, "Ormida 1.7.0.170980\n");
  dir.write("x.json", kLayout);
  dir.write("format.txt", "json");
  const CliRun run =
      runCli("InputFilename=x.json OutputFilename=y.json OutputFilename.Format=@format.txt", dir);
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(readAll(dir / "y.json"), kLayout);
}

TEST(CliTest, FailuresGoToStandardErrorWithAStatus) {
  TempDir dir;
  dir.write("x.json", kLayout);
  const std::tuple<const char*, int, const char*> cases[] = {
      {"InputFilename=missing.json", 1, "error in OrmidaJobExecute: stat failed for file "},
      {"InputFilename=missing.json", 1, "(code 9)"},
      {"InputFilename=x.json --get Compare.Result", 1, "ormida: no result Compare.Result\n"},
      {"InputFilename=x.json --summary", 1,
       "ormida: --summary: no comparison result (set Compare=true or ExtractFromLayout=true)\n"},
      {"Nonsense=1", 2, "unknown property Nonsense"},
      {"novalue", 2, ""}, {"WorkSpace=@missing-file", 2, ""}, {"", 2, ""}};
  for (const auto& [arguments, status, error] : cases) {
    const CliRun run = runCli(arguments, dir);
    EXPECT_EQ(run.status, status) << arguments;
    EXPECT_NE(run.err.find(error), std::string::npos) << arguments << ": " << run.err;
  }
}

TEST(CliTest, GetPrintsTheResultAndSummaryTheRatesErrorsAndF1PerPage) {
  TempDir dir;
  dir.write("ocr.json", readAll(kData + "pages.left.json"));
  dir.write("truth.json", readAll(kData + "pages.right.json"));
  const CliRun run = runCli("WorkSpace=. InputFilename=ocr.json Compare=true "
                          "Compare.With=truth.json Compare.TransformStrategy=None "
                          "Compare.OutputFilename=result.json --get Compare.Result --summary",
                          dir);
  ASSERT_EQ(run.status, 0) << run.err;
  // The result as it is, then the figures of the golden result: 12 of 35 wrong on the left,
  // 4 of 27 on the right.
  EXPECT_EQ(run.out,
            readAll(kData + "pages-word.result.json") + "\n" +
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
  EXPECT_EQ(readAll(dir / "result.json"), readAll(kData + "pages-word.result.json"));
}

TEST(CliTest, SummaryShowsTheExtractionFiguresPerPage) {
  TempDir dir;
  dir.write("ocr.json", readAll(ORMIDA_TEST_DATA_DIR "/extraction/form.ocr.json"));
  dir.write("form.json", readAll(ORMIDA_TEST_DATA_DIR "/extraction/form.reference.json"));
  const CliRun run = runCli("InputFilename=ocr.json ExtractFromLayout=true "
                            "ExtractFromLayout.With=form.json ExtractFromLayout.PageOffset=-1 "
                            "--summary",
                            dir);
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out,
            "Extraction comparison: error rate inside the reference zones\n"
            "  document     25.83 %\n"
            "  worst page  100.00 %\n"
            "\n"
            "  page  error rate\n"
            "     1   100.00 %\n"
            "     2    28.75 %\n"
            "     3     3.03 %\n"
            "\n"
            "Zone by zone: set ExtractFromLayout.OutputFilename\n");
}

}  // namespace

#endif
