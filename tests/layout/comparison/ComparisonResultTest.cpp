// ComparisonResultTest.cpp - pair summaries and the result document.
#include "base/QentException.h"
#include "layout/comparison/ComparisonFixture.h"
#include "layout/comparison/ComparisonResultWriter.h"
#include "layout/comparison/PairSummary.h"

#include <gtest/gtest.h>

namespace qent::test {
namespace {

using namespace qent::text::layout::comparison;

CompareOptions wordOptions() {
  CompareOptions options;
  options.alignment = Alignment::None;
  return options;
}

std::string resultOf(const ComparisonRun& run) {
  return writeComparisonResult(run.comparator->level(), summarizeRoots(*run.comparator),
                               summarizePages(*run.comparator));
}

TEST(ComparisonResultTest, WritesTheWholeDocumentInKeyOrder) {
  ComparisonRun run(
      "Content:node{Image\"scan.png\",Page(w=800,h=600){Word#a[0,0,10,10]\"abc\"(checked=1),"
      "Word#b[20,0,10,10]\"x\"(rejected=1)},Page{Word#c[0,0,10,10]\"zz\"}}",
      "Content:node{Page(w=810,h=610){Word#d[0,0,10,10]\"abd\"}}", wordOptions());
  EXPECT_EQ(
      resultOf(run),
      R"({"root":{"children":[)"
      // Page 1: left 4 units, 2 errors (one substitution, one unpaired "x"); right 3, 1.
      R"({"edits":2,"f1_measure":0.5714285714285715,"good":2,)"
      R"("left":{"checked":1,"rejected":1,"statistic":{"error":2,"error_rate":0.5,)"
      R"("f1_measure":0.5714285714285715,"good":2,"length":4,"recognition_rate":0.5}},)"
      R"("max_count":4,)"
      R"("right":{"statistic":{"error":1,"error_rate":0.3333333333333333,)"
      R"("f1_measure":0.5714285714285715,"good":2,"length":3,)"
      R"("recognition_rate":0.6666666666666667}}},)"
      // Page 2 has no counterpart.
      R"({"edits":0,"f1_measure":0.0,"good":0,"left":{"statistic":{"error":2,"error_rate":1.0,)"
      R"("f1_measure":0.0,"good":0,"length":2,"recognition_rate":0.0}},"max_count":0,)"
      R"("right":null}],)"
      R"("compare":"word",)"
      R"("diff":{"edits":4,"error_count_left":4,"error_count_right":1,)"
      R"("f1_measure":0.44444444444444455,"good":2,"recognition_rate_left":0.33333333333333339,)"
      R"("recognition_rate_right":0.6666666666666667},)"
      R"("left":{"height":600,"image":"scan.png","stats":{"error":4,"error_rate":0.6666666666666666,)"
      R"("f1_measure":0.44444444444444455,"good":2,"length":6,"recognition_rate":0.33333333333333339},)"
      R"("width":800},)"
      R"("right":{"height":610,"stats":{"error":1,"error_rate":0.3333333333333333,)"
      R"("f1_measure":0.44444444444444455,"good":2,"length":3,"recognition_rate":0.6666666666666667},)"
      R"("width":810}}})");
}

TEST(ComparisonResultTest, IdenticalLayoutsScorePerfectly) {
  const std::string tree =
      "Content:node{Page{Line[0,0,99,20]{Word#a[0,0,10,10]\"one\",Word#b[20,0,10,10]\"two\"}},"
      "Page{Word#c[0,0,10,10]\"three\"}}";
  ComparisonRun run(tree, tree, wordOptions());
  const PairSummary root = summarizeRoots(*run.comparator);
  EXPECT_TRUE(root.complete);
  EXPECT_EQ(root.edits(), 0u);
  EXPECT_EQ(root.good(), 11u);
  EXPECT_EQ(root.f1(), 1.0);
  EXPECT_EQ(root.leftStats.recognitionRate, 1.0);
  for (const PairSummary& page : summarizePages(*run.comparator)) {
    EXPECT_EQ(page.edits(), 0u);
    EXPECT_EQ(page.f1(), 1.0);
  }
}

TEST(ComparisonResultTest, DerivedValuesOfASummary) {
  PairSummary summary;
  summary.leftStats.count = 10;
  summary.leftStats.errors = 6;   // 4 good
  summary.rightStats.count = 7;
  summary.rightStats.errors = 2;  // 5 good
  EXPECT_EQ(summary.maxCount(), 0u) << "incomplete pairs derive nothing";
  summary.complete = true;
  EXPECT_EQ(summary.maxCount(), 10u);
  EXPECT_EQ(summary.good(), 5u);
  EXPECT_EQ(summary.edits(), 5u);  // fewer than the left side's 6 errors
  // Without a stored f1 it is computed from the recognition rates.
  summary.leftStats.recognitionRate = 0.4;
  summary.rightStats.recognitionRate = 0.6;
  EXPECT_DOUBLE_EQ(summary.f1(), 0.48);
  summary.rightStats.f1Measure = 0.25;
  EXPECT_EQ(summary.f1(), 0.25);
  summary.leftStats.f1Measure = 0.75;
  EXPECT_EQ(summary.f1(), 0.75);
  summary.leftStats.f1Measure = summary.rightStats.f1Measure = 0.0;
  summary.leftStats.recognitionRate = summary.rightStats.recognitionRate = 0.0;
  EXPECT_EQ(summary.f1(), 0.0);
}

TEST(ComparisonResultTest, LevelNamesInTheDocument) {
  for (const auto& [level, name] :
       {std::pair{CompareLevel::Glyph, "\"compare\":\"glyph\""},
        std::pair{CompareLevel::Line, "\"compare\":\"line\""},
        std::pair{CompareLevel::None, "\"compare\":\"node\""}}) {
    CompareOptions options = wordOptions();
    options.level = level;
    ComparisonRun run("Content:node{Page}", "Content:node{Page}", options);
    EXPECT_NE(resultOf(run).find(name), std::string::npos) << name;
  }
}

TEST(ComparisonResultTest, ALoneSideClaimingAPartnerIsAnInternalError) {
  ComparisonRun run("Content:node{Page{Word#a[0,0,5,5]\"a\"},Page{Word#b[0,0,5,5]\"b\"}}",
                    "Content:node{Page{Word#c[0,0,5,5]\"a\"}}", wordOptions());
  // A page without counterpart that names a partner contradicts the pairing.
  const auto& pairs = run.comparator->pagePairs();
  const text::layout::Node* wordA = &run.left->root()->child(0).child(0);
  EXPECT_NO_THROW(summarizePair(*run.comparator, pairs[1].first, pairs[1].second));
  try {
    summarizePair(*run.comparator, wordA, nullptr);
    ADD_FAILURE() << "no error";
  } catch (const base::QentException& e) {
    EXPECT_STREQ(e.what(), "internal error: wrong matching is set");
  }
}

}  // namespace
}  // namespace qent::test
