// CliTest.cpp - the ormida tool from the shell: properties in order, results printed,
// errors on standard error with a non-zero exit status.
#include "support/CliRunner.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#if !defined(_WIN32)

namespace {

using qent::test::readAll;
using qent::test::TempDir;

using qent::test::CliRun;
using qent::test::runCli;

const char* kLayout =
    R"({"root":{"children":[{"index_in_layout":0,"type":"page"}],"type":"node"}})";

TEST(CliTest, PrintsTheVersion) {
  TempDir dir;
  const CliRun run = runCli("--version", dir);
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, "Ormida 1.7.0.170980\n");
}

TEST(CliTest, ConvertsAJsonLayoutWithAValueReadFromAFile) {
  TempDir dir;
  dir.write("x.json", kLayout);
  dir.write("format.txt", "json");
  const CliRun run =
      runCli("InputFilename=x.json OutputFilename=y.json OutputFilename.Format=@format.txt", dir);
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(readAll(dir / "y.json"), kLayout);
}

TEST(CliTest, FailureGoesToStandardErrorWithTheCode) {
  TempDir dir;
  const CliRun run = runCli("InputFilename=missing.json", dir);
  EXPECT_EQ(run.status, 1);
  EXPECT_NE(run.err.find("error in OrmidaJobExecute: stat failed for file "), std::string::npos)
      << run.err;
  EXPECT_NE(run.err.find("(code 9)"), std::string::npos) << run.err;
}

TEST(CliTest, UsageErrors) {
  TempDir dir;
  EXPECT_EQ(runCli("Nonsense=1", dir).status, 2);
  EXPECT_NE(runCli("Nonsense=1", dir).err.find("unknown property Nonsense"), std::string::npos);
  EXPECT_EQ(runCli("novalue", dir).status, 2);
  EXPECT_EQ(runCli("WorkSpace=@missing-file", dir).status, 2);
  EXPECT_EQ(runCli("", dir).status, 2);
}

TEST(CliTest, HelpListsPropertiesWithDefaults) {
  TempDir dir;
  const CliRun run = runCli("--help", dir);
  EXPECT_EQ(run.status, 0);
  for (const char* text : {"InputFilename", "OutputFilename.Format", "HOCR", "Compare.Level",
                           "--get", "Compare.Result"}) {
    EXPECT_NE(run.out.find(text), std::string::npos) << text;
  }
}

TEST(CliTest, GetPrintsTheResultOrFails) {
  TempDir dir;
  dir.write("x.json", kLayout);
  const CliRun missing = runCli("InputFilename=x.json --get Compare.Result", dir);
  EXPECT_EQ(missing.status, 1);
  EXPECT_NE(missing.err.find("no result Compare.Result"), std::string::npos) << missing.err;

  const std::string data = ORMIDA_TEST_DATA_DIR "/comparison/";
  dir.write("ocr.json", readAll(data + "pages.left.json"));
  dir.write("truth.json", readAll(data + "pages.right.json"));
  const CliRun found = runCli("InputFilename=ocr.json Compare=true Compare.With=truth.json "
                              "Compare.TransformStrategy=None --get Compare.Result",
                              dir);
  EXPECT_EQ(found.status, 0) << found.err;
  EXPECT_EQ(found.out, readAll(data + "pages-word.result.json") + "\n");
}

}  // namespace

#endif
