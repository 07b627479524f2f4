// CompareSummaryTest.cpp - the ormida tool's --summary of a comparison, from the shell.
#include "support/TempDir.h"

#include <gtest/gtest.h>

#if !defined(_WIN32)

#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <filesystem>

namespace {

using qent::test::readAll;
using qent::test::TempDir;

struct ToolRun {
  int status;
  std::string out;
  std::string err;
};

ToolRun runTool(const std::string& arguments, const TempDir& dir) {
  const auto errFile = dir / "stderr.txt";
  const std::string command = "cd '" + dir.path().string() + "' && '" ORMIDA_CLI_PATH "' " +
                              arguments + " 2>'" + errFile.string() + "'";
  ToolRun run{};
  FILE* pipe = popen(command.c_str(), "r");
  std::array<char, 4096> buffer{};
  size_t n = 0;
  while ((n = fread(buffer.data(), 1, buffer.size(), pipe)) > 0) run.out.append(buffer.data(), n);
  const int status = pclose(pipe);
  run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  run.err = readAll(errFile);
  return run;
}

const std::filesystem::path kData = std::filesystem::path(ORMIDA_TEST_DATA_DIR) / "comparison";

TEST(CompareSummaryTest, PrintsRatesErrorsAndF1PerPageAndWhereTheResultIs) {
  TempDir dir;
  dir.write("ocr.json", readAll(kData / "pages.left.json"));
  dir.write("truth.json", readAll(kData / "pages.right.json"));
  const ToolRun run = runTool("WorkSpace=. InputFilename=ocr.json Compare=true "
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
  const ToolRun run = runTool("InputFilename=ocr.json --summary", dir);
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err, "ormida: --summary: no comparison result (set Compare=true)\n");
}

}  // namespace

#endif
