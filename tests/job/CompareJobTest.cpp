// CompareJobTest.cpp - the layout comparison and the layout transformation through the C
// interface: options, the second document, results, files and errors.
#include "ormida/ormida.h"

#include "support/JobApi.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <ostream>
#include <string>

namespace {

using qent::test::Job;
using qent::test::readAll;
using qent::test::TempDir;

const std::filesystem::path kData = std::filesystem::path(ORMIDA_TEST_DATA_DIR) / "comparison";

std::string golden(const std::string& name) { return readAll(kData / name); }

// A directory holding the two-page invoice recognition and its one-page ground truth.
class CompareJobTest : public ::testing::Test {
protected:
  void SetUp() override {
    dir_.write("ocr.json", golden("pages.left.json"));
    dir_.write("truth.json", golden("pages.right.json"));
    job_.set("WorkSpace", dir_.path().string());
    job_.set("InputFilename", "ocr.json");
    job_.set("Compare", "true");
    job_.set("Compare.With", "truth.json");
    job_.set("Compare.TransformStrategy", "None");
  }

  std::string result() {
    const auto [code, value] = job_.get("Compare.Result");
    EXPECT_EQ(code, ORMIDA_OK);
    return value;
  }

  TempDir dir_;
  Job job_;
};

TEST_F(CompareJobTest, StoresTheResultWritesItAndAnnotatesTheOutput) {
  job_.set("Compare.OutputFilename", "result/compare.json");
  job_.set("OutputFilename", "annotated.json");
  job_.set("OutputFilename.Format", "json");
  std::filesystem::create_directories(dir_ / "result");
  ASSERT_EQ(job_.execute(), ORMIDA_OK) << job_.errorText();
  EXPECT_EQ(result(), golden("pages-word.result.json"));
  EXPECT_EQ(readAll(dir_ / "result" / "compare.json"), golden("pages-word.result.json"));
  EXPECT_EQ(readAll(dir_ / "annotated.json"), golden("pages-word.annotated.json"));
}

TEST_F(CompareJobTest, ReadsTheOptionsInTheOrderSet) {
  job_.set("Compare.Level", "Glyph");
  job_.set("Compare.Level", "line");  // the later value wins; names ignore case
  job_.set("Compare.EditDistance", "false");
  ASSERT_EQ(job_.execute(), ORMIDA_OK) << job_.errorText();
  const std::string text = result();
  EXPECT_NE(text.find(R"("compare":"line")"), std::string::npos) << text;
  // Whole lines: page 1 has two lines and only the first is identical.
  EXPECT_NE(text.find(R"("error":1,"error_rate":0.5)"), std::string::npos) << text;
}

TEST_F(CompareJobTest, TheSecondMainDocumentIsTheDefaultReference) {
  job_.set("InputFilename", "ocr.json;truth.json");
  job_.set("Compare.With", "");  // empty counts as not set
  job_.set("Compare.EditDistance", "no");  // whole words
  ASSERT_EQ(job_.execute(), ORMIDA_OK) << job_.errorText();
  EXPECT_EQ(result(), golden("pages-word-whole.result.json"));
}

TEST_F(CompareJobTest, EntityModeComparesAnnotations) {
  dir_.write("a.json", R"({"root":{"type":"node","children":[{"type":"page","children":[
    {"type":"word","text":"Anna","left":0,"top":0,"width":40,"height":10,"attributes":{"x_entity":"PER B"}},
    {"type":"word","text":"Bonn","left":50,"top":0,"width":40,"height":10,"attributes":{"x_entity":"ORG"}}]}]}})");
  dir_.write("b.json", R"({"root":{"type":"node","children":[{"type":"page","children":[
    {"type":"word","text":"Anna","left":0,"top":0,"width":40,"height":10,"attributes":{"x_entity":"PER I"}},
    {"type":"word","text":"Bonn","left":50,"top":0,"width":40,"height":10,"attributes":{"x_entity":"LOC"}}]}]}})");
  job_.set("InputFilename", "a.json");
  job_.set("Compare.With", "b.json");
  job_.set("Compare.Mode", "Entity");
  ASSERT_EQ(job_.execute(), ORMIDA_OK) << job_.errorText();
  EXPECT_NE(result().find(R"("diff":{"edits":1,"error_count_left":1,"error_count_right":1)"),
            std::string::npos)
      << result();
}

struct FailureCase {
  const char* name;
  const char* value;
  uint32_t code;
  const char* error;  // how the error text starts
};

void PrintTo(const FailureCase& c, std::ostream* out) { *out << c.name << "=" << c.value; }

class CompareJobFailureTest : public CompareJobTest,
                              public ::testing::WithParamInterface<FailureCase> {};

TEST_P(CompareJobFailureTest, FailsWithAClearError) {
  const FailureCase& c = GetParam();
  dir_.write("flat.json", R"({"root":{"type":"node","children":[{"type":"page","children":[
    {"type":"word","text":"no box"}]}]}})");
  dir_.write("notes.txt", "plain text, no layout\n");
  job_.set(c.name, c.value);
  EXPECT_EQ(job_.execute(), c.code);
  const std::string text = job_.errorText();
  EXPECT_EQ(text.substr(0, std::string(c.error).size()), c.error) << text;
  EXPECT_EQ(job_.get("Compare.Result").first, ORMIDA_UNKNOWN_PROPERTY) << "no result stored";
}

INSTANTIATE_TEST_SUITE_P(
    Errors, CompareJobFailureTest,
    ::testing::Values(
        FailureCase{"Compare.Mode", "Spelling", 20020,
                    "error in OrmidaJobExecute: the comparison mode names no comparison; use "
                    "Text or Entity"},
        FailureCase{"InputFilename", "flat.json", 20020,
                    "error in OrmidaJobExecute: Width or Height of Rectangle must be > 0"},
        // A reference that does not load falls back to the main document, the only one.
        FailureCase{"Compare.With", "missing.json", ORMIDA_FAILED,
                    "error in OrmidaJobExecute: No CompareWidth document loaded"},
        FailureCase{"Compare.With", "notes.txt", ORMIDA_FAILED,
                    "error in OrmidaJobExecute: Layout comparison needs two layouts; "}),
    [](const auto& param) { return "Case" + std::to_string(param.index); });

TEST_F(CompareJobTest, TransformLayoutMovesTheMainLayoutOntoTheReference) {
  dir_.write("shifted.json", R"({"root":{"type":"node","children":[{"type":"page","children":[
    {"type":"word","text":"x","left":150,"top":120,"width":40,"height":30}]}]}})");
  job_.set("Compare", "false");
  ASSERT_EQ(job_.execute(), ORMIDA_OK) << job_.errorText();
  job_.set("TransformLayout.With", "shifted.json");
  job_.set("TransformLayout.OutputFilename", "moved.json");
  const auto [code, moved] = job_.get("TransformLayout");
  ASSERT_EQ(code, ORMIDA_OK) << job_.errorText();
  // The first page's content starts at (100, 100); the reference's at (150, 120).
  EXPECT_NE(moved.find(R"("height":30,"id":"l1w1","left":150,"text":"Invoice","top":120)"),
            std::string::npos)
      << moved;
  EXPECT_EQ(readAll(dir_ / "moved.json"), moved);
  std::filesystem::remove(dir_ / "moved.json");
  EXPECT_EQ(job_.get("TransformLayout").second, moved) << "reading again gives the same text";
  EXPECT_FALSE(std::filesystem::exists(dir_ / "moved.json")) << "computed once, not per read";

  job_.set("TransformLayout.With", "missing.json");
  EXPECT_NE(job_.get("TransformLayout").first, ORMIDA_OK);
  EXPECT_EQ(job_.errorText(), "error in OrmidaJobGetProperty: Document for comparison is not found!");
}

}  // namespace
