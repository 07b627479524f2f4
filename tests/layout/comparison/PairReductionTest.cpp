// PairReductionTest.cpp - reciprocity, narrowing and tie breaking on explicit candidate lists.
#include "layout/comparison/PairReduction.h"

#include <gtest/gtest.h>

#include <ostream>

namespace qent::text::layout::comparison {
namespace {

using Lists = std::vector<std::vector<std::uint32_t>>;

struct ReductionCase {
  const char* name;
  Lists leftToRight;
  Lists rightToLeft;
  std::vector<std::u16string> leftTexts;
  std::vector<std::u16string> rightTexts;
  std::vector<IndexPair> want;
};

void PrintTo(const ReductionCase& c, std::ostream* out) { *out << c.name; }

class PairReductionTest : public ::testing::TestWithParam<ReductionCase> {};

TEST_P(PairReductionTest, ReducesToTheExpectedPairs) {
  const ReductionCase& c = GetParam();
  CandidateLists lists{c.leftToRight, c.rightToLeft};
  EXPECT_EQ(reduceToPairs(lists, c.leftTexts, c.rightTexts), c.want);
  // Afterwards every list holds at most one candidate.
  for (const auto& list : lists.leftToRight) EXPECT_LE(list.size(), 1u);
  for (const auto& list : lists.rightToLeft) EXPECT_LE(list.size(), 1u);
}

INSTANTIATE_TEST_SUITE_P(
    Rules, PairReductionTest,
    ::testing::Values(
        ReductionCase{"one to one", {{0}, {1}}, {{0}, {1}}, {u"a", u"b"}, {u"a", u"b"},
                      {{0, 0}, {1, 1}}},
        ReductionCase{"nothing overlaps", {{}, {}}, {{}}, {u"a", u"b"}, {u"a"}, {}},
        ReductionCase{"a one-sided candidate is dropped",
                      {{0}, {0}}, {{0}}, {u"a", u"b"}, {u"a"}, {{0, 0}}},
        ReductionCase{"right tie: identical text wins",
                      {{0}, {0}}, {{0, 1}}, {u"x", u"y"}, {u"x"}, {{0, 0}}},
        ReductionCase{"right tie: no identical text, the last candidate wins",
                      {{0}, {0}}, {{0, 1}}, {u"x", u"y"}, {u"z"}, {{1, 0}}},
        ReductionCase{"left tie: first identical text in list order",
                      {{1, 0, 2}}, {{0}, {0}, {0}}, {u"q"}, {u"q", u"q", u"r"}, {{0, 1}}},
        ReductionCase{"ties broken on the left before the right",
                      {{0, 1}, {1}}, {{0}, {0, 1}}, {u"a", u"b"}, {u"c", u"d"},
                      // left 0 keeps its last candidate (right 1); right 0 then loses left 0,
                      // right 1 has two left candidates and keeps its last, left 1.
                      {{1, 1}}},
        // Left 0 loses right 1 (which only names left 1) and shrinks to exactly right 0, so
        // right 0 is narrowed to left 0 and left 2 loses it. Without the narrowing, right 0
        // would keep both and its tie would go to the last candidate, left 2.
        ReductionCase{"a list shrinking to one candidate narrows that candidate",
                      {{0, 1}, {1}, {0}}, {{0, 2}, {1}}, {u"a", u"b", u"c"}, {u"x", u"y"},
                      {{0, 0}, {1, 1}}}),
    [](const auto& param) { return "Case" + std::to_string(param.index); });

}  // namespace
}  // namespace qent::text::layout::comparison
