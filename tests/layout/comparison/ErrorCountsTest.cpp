// ErrorCountsTest.cpp - character and word error counts in the comparison result, through
// the C interface: what a pair, an unpaired node, normalisation and grapheme counting add.
#include "base/TextUnits.h"
#include "support/JobApi.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include <string>
#include <vector>

namespace {

using qent::test::Job;
using qent::test::TempDir;

// One page, one line, one word per text, each word 100 pixels wide at its position; an
// empty text leaves the position without a word.
std::string layout(const std::vector<std::string>& words) {
  std::string out = R"({"root":{"type":"node","children":[{"type":"page","width":2000,)"
                    R"("height":100,"index_in_layout":0,"children":[{"type":"line","left":0,)"
                    R"("top":0,"width":2000,"height":50,"children":[)";
  for (std::size_t i = 0; i < words.size(); ++i) {
    if (words[i].empty()) continue;
    if (out.back() == '}') out += ",";
    out += R"({"type":"word","text":")" + words[i] + R"(","left":)" + std::to_string(i * 150) +
           R"(,"top":0,"width":100,"height":50})";
  }
  return out + "]}]}]}}";
}

struct MetricsCase {
  const char* title;
  std::vector<std::string> truth;
  std::vector<std::string> recognition;
  const char* normalization;
  bool graphemes;
  // characters, character edits, words, word edits
  std::uint64_t want[4];
};

class ErrorCountsTest : public ::testing::TestWithParam<MetricsCase> {};

TEST_P(ErrorCountsTest, CountsEditsAgainstTheGroundTruth) {
  const MetricsCase& c = GetParam();
  TempDir dir;
  const auto truth = dir.write("truth.json", layout(c.truth));
  const auto ocr = dir.write("ocr.json", layout(c.recognition));
  Job job;
  job.set("InputFilename", ocr.string());
  job.set("Compare", "true");
  job.set("Compare.With", truth.string());
  job.set("Compare.TransformStrategy", "None");
  job.set("Compare.Normalization", c.normalization);
  if (c.graphemes) job.set("Compare.Graphemes", "true");
  const bool needsSegmentation = c.graphemes || std::string(c.normalization) != "none";
  if (needsSegmentation && !qent::base::hasUnicodeSegmentation()) {
    // A build without utf8proc refuses instead of counting something else.
    EXPECT_EQ(job.execute(), 20020u) << c.title;
    EXPECT_NE(job.errorText().find("built without utf8proc"), std::string::npos) << c.title;
    return;
  }
  ASSERT_EQ(job.execute(), ORMIDA_OK) << job.errorText();
  const auto [code, result] = job.get("Compare.Result");
  rapidjson::Document document;
  document.Parse(result.c_str());
  const auto& metrics = document["root"]["metrics"];
  EXPECT_EQ(metrics["characters"].GetUint64(), c.want[0]) << c.title;
  EXPECT_EQ(metrics["character_edits"].GetUint64(), c.want[1]) << c.title;
  EXPECT_EQ(metrics["words"].GetUint64(), c.want[2]) << c.title;
  EXPECT_EQ(metrics["word_edits"].GetUint64(), c.want[3]) << c.title;
  // The page's counts are the document's: one page.
  EXPECT_EQ(document["root"]["children"][0]["metrics"], metrics) << c.title;
  if (c.want[0] == 0) {
    EXPECT_TRUE(metrics["cer"].IsNull()) << c.title;
  } else {
    EXPECT_DOUBLE_EQ(metrics["cer"].GetDouble(),
                     static_cast<double>(c.want[1]) / static_cast<double>(c.want[0]));
  }
}

INSTANTIATE_TEST_SUITE_P(
    Cases, ErrorCountsTest,
    ::testing::Values(
        MetricsCase{"identical", {"the", "cat"}, {"the", "cat"}, "none", false, {6, 0, 2, 0}},
        MetricsCase{"one substitution", {"the", "cat"}, {"the", "cot"}, "none", false, {6, 1, 2, 1}},
        // An extra recognised word is inserted wholly; a missing one deleted wholly.
        MetricsCase{"insertion", {"the", "", "cat"}, {"the", "xy", "cat"}, "none", false, {6, 2, 2, 1}},
        MetricsCase{"deletion", {"the", "cat"}, {"the", ""}, "none", false, {6, 3, 2, 1}},
        MetricsCase{"empty truth", {""}, {"ab"}, "none", false, {0, 2, 0, 1}},
        // An astral letter is one character, not two code units.
        MetricsCase{"astral", {"a\xF0\x9D\x90\x80"}, {"ab"}, "none", false, {2, 1, 1, 1}},
        // "e" + combining acute against precomposed "é": two edits as code points, none once
        // both are in NFC, one cluster against one cluster when counting graphemes.
        MetricsCase{"decomposed", {"\xC3\xA9"}, {"e\xCC\x81"}, "none", false, {1, 2, 1, 1}},
        MetricsCase{"nfc", {"\xC3\xA9"}, {"e\xCC\x81"}, "nfc", false, {1, 0, 1, 0}},
        MetricsCase{"graphemes", {"\xC3\xA9"}, {"e\xCC\x81"}, "none", true, {1, 1, 1, 1}},
        // The ligature "ﬁ" is "fi" only in the compatibility form.
        MetricsCase{"nfkc", {"fish"}, {"\xEF\xAC\x81sh"}, "nfkc", false, {4, 0, 1, 0}},
        MetricsCase{"nfc keeps ligatures", {"fish"}, {"\xEF\xAC\x81sh"}, "nfc", false, {4, 2, 1, 1}}));

TEST(ErrorCountsTest, UnknownNormalizationIsAnOptionError) {
  TempDir dir;
  const auto file = dir.write("a.json", layout({"a"}));
  Job job;
  job.set("InputFilename", file.string());
  job.set("Compare", "true");
  job.set("Compare.With", file.string());
  job.set("Compare.Normalization", "nfd");
  EXPECT_EQ(job.execute(), 20020u);
  EXPECT_NE(job.errorText().find("unknown normalization \"nfd\"; use none, nfc or nfkc"),
            std::string::npos)
      << job.errorText();
}

}  // namespace
