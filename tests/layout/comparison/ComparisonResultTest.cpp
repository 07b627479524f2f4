// ComparisonResultTest.cpp - pair summaries (the result document itself is golden-tested).
#include "base/QentException.h"
#include "layout/comparison/ComparisonFixture.h"
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
