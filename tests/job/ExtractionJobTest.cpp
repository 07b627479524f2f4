// ExtractionJobTest.cpp - the extraction comparison through the C interface: the golden form
// sample, the default reference, and the errors.
#include "ormida/ormida.h"

#include "support/Golden.h"
#include "support/JobApi.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>

namespace {

using qent::test::Job;
using qent::test::readAll;
using qent::test::readTestData;
using qent::test::TempDir;

// The recognised form with its separator sheet in front, and the form's reference.
class ExtractionJobTest : public ::testing::Test {
protected:
  void SetUp() override {
    dir_.write("ocr.json", readTestData("extraction/form.ocr.json"));
    dir_.write("form.json", readTestData("extraction/form.reference.json"));
    dir_.write("notes.txt", "plain text, no layout\n");
    job_.set("WorkSpace", dir_.path().string());
    job_.set("InputFilename", "ocr.json");
    job_.set("ExtractFromLayout", "true");
    job_.set("ExtractFromLayout.With", "form.json");
    job_.set("ExtractFromLayout.PageOffset", "-1");
  }

  TempDir dir_;
  Job job_;
};

// The figures computed by hand in tests/data/extraction/README.md: 7/7, 23/80 and 1/33, in
// RapidJSON's notation (which gives 31/120 and 1/33 a seventeenth digit).
TEST_F(ExtractionJobTest, MeasuresTheFormAsComputedByHand) {
  job_.set("ExtractFromLayout.OutputFilename", "zones.json");
  ASSERT_EQ(job_.execute(), ORMIDA_OK) << job_.errorText();
  EXPECT_EQ(job_.get("CompareErrorRate").second,
            R"({"errorRate":0.25833333333333338,"maxErrorRate":1.0,)"
            R"("pageErrorRates":[1.0,0.2875,0.030303030303030305]})");
  qent::test::expectGolden("extraction/form.details.json", readAll(dir_ / "zones.json"));
}

TEST_F(ExtractionJobTest, TheSecondMainDocumentIsTheDefaultReference) {
  job_.set("InputFilename", "ocr.json;form.json");
  job_.set("ExtractFromLayout.With", "");
  job_.set("ExtractFromLayout.EditDistance", "false");
  ASSERT_EQ(job_.execute(), ORMIDA_OK) << job_.errorText();
  // Whole zones: the separator line 1/1; of the form's zones only "date" is right (iban is
  // wrong by its partial node), 3/4; of the lines only the closing, 1/2.
  EXPECT_EQ(job_.get("CompareErrorRate").second,
            R"({"errorRate":0.7142857142857143,"maxErrorRate":1.0,)"
            R"("pageErrorRates":[1.0,0.75,0.5]})");
}

TEST_F(ExtractionJobTest, FailsWithAClearErrorAndStoresNothing) {
  dir_.write("flat.json", R"({"root":{"type":"node","children":[{"type":"page","children":[
    {"type":"line","text":"no box"}]}]}})");
  const std::tuple<const char*, const char*, const char*, uint32_t, const char*> cases[] = {
      // A reference that does not load falls back to the second input, which is missing.
      {"ocr.json", "With", "missing.json", ORMIDA_FAILED,
       "error in OrmidaJobExecute: Source document is not loaded"},
      {"ocr.json", "With", "notes.txt", ORMIDA_FAILED,
       "error in OrmidaJobExecute: Extraction comparison needs two layouts; "},
      {"ocr.json", "PageOffset", "one", ORMIDA_FAILED, "undefined error in OrmidaJobExecute"},
      {"flat.json", "With", "form.json", 20020,
       "error in OrmidaJobExecute: Width or Height of Rectangle must be > 0"}};
  for (const auto& [input, name, value, code, error] : cases) {
    Job job;
    job.set("WorkSpace", dir_.path().string());
    job.set("InputFilename", input);
    job.set("ExtractFromLayout", "true");
    job.set(std::string("ExtractFromLayout.") + name, value);
    EXPECT_EQ(job.execute(), code) << value;
    EXPECT_EQ(job.errorText().rfind(error, 0), 0u) << job.errorText();
    EXPECT_EQ(job.get("CompareErrorRate").first, ORMIDA_UNKNOWN_PROPERTY) << value;
  }
}

}  // namespace
