// ComparisonGoldenTest.cpp - whole documents read from JSON layout files, compared, and the
// result document and the annotated recognition checked against golden files.
#include "base/FileIo.h"
#include "layout/Layout.h"
#include "layout/comparison/LayoutComparison.h"
#include "layout/format/JSONReader.h"
#include "layout/format/JSONWriter.h"

#include "support/Golden.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <ostream>

namespace qent::test {
namespace {

using namespace qent::text::layout;
using comparison::Alignment;
using comparison::CompareLevel;
using comparison::CompareMode;

const std::filesystem::path kData = std::filesystem::path(ORMIDA_TEST_DATA_DIR) / "comparison";
const std::filesystem::path kSamples = std::filesystem::path(ORMIDA_SOURCE_DIR) / "data" / "samples";

struct GoldenCase {
  const char* name;
  std::filesystem::path left;
  std::filesystem::path right;
  CompareLevel level;
  bool characterwise;
  Alignment alignment;
  CompareMode mode;
};

void PrintTo(const GoldenCase& c, std::ostream* out) { *out << c.name; }

class ComparisonGoldenTest : public ::testing::TestWithParam<GoldenCase> {};

TEST_P(ComparisonGoldenTest, GivesTheGoldenResultAndAnnotations) {
  const GoldenCase& c = GetParam();
  auto left = format::JSONReader().read(base::readFile(c.left));
  auto right = format::JSONReader().read(base::readFile(c.right));
  comparison::CompareOptions options;
  options.level = c.level;
  options.characterwise = c.characterwise;
  options.alignment = c.alignment;
  options.mode = c.mode;
  expectGolden("comparison/" + std::string(c.name) + ".result.json", comparison::compareLayouts(options, *left, *right));
  expectGolden("comparison/" + std::string(c.name) + ".annotated.json", format::JSONWriter().write(*left));
}

INSTANTIATE_TEST_SUITE_P(
    Documents, ComparisonGoldenTest,
    ::testing::Values(
        GoldenCase{"notice-word", kSamples / "notice-ocr.json", kSamples / "notice-truth.json",
                   CompareLevel::Word, true, Alignment::Corner, CompareMode::Text},
        GoldenCase{"notice-line", kSamples / "notice-ocr.json", kSamples / "notice-truth.json",
                   CompareLevel::Line, true, Alignment::Corner, CompareMode::Text},
        GoldenCase{"pages-word", kData / "pages.left.json", kData / "pages.right.json",
                   CompareLevel::Word, true, Alignment::None, CompareMode::Text},
        GoldenCase{"pages-word-whole", kData / "pages.left.json", kData / "pages.right.json",
                   CompareLevel::Word, false, Alignment::None, CompareMode::Text},
        GoldenCase{"glyphs-glyph", kData / "glyphs.left.json", kData / "glyphs.right.json",
                   CompareLevel::Glyph, true, Alignment::None, CompareMode::Text}),
    [](const auto& param) {
      std::string name = param.param.name;
      for (char& ch : name) {
        if (ch == '-') ch = '_';
      }
      return name;
    });

}  // namespace
}  // namespace qent::test
