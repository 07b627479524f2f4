// CandidateMatchingTest.cpp - the sweep's candidate lists against the all-pairs loop.
#include "layout/comparison/CandidateMatching.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace qent::text::layout::comparison {
namespace {

using Lists = std::vector<std::vector<std::uint32_t>>;

// Every left rectangle against every right one, in order: the obvious quadratic loop.
CandidateLists allPairs(const std::vector<MatchRect>& left, const std::vector<MatchRect>& right) {
  CandidateLists out;
  out.leftToRight.resize(left.size());
  out.rightToLeft.resize(right.size());
  std::vector<double> leftBest(left.size(), 0.0), rightBest(right.size(), 0.0);
  for (std::uint32_t l = 0; l < left.size(); ++l) {
    for (std::uint32_t r = 0; r < right.size(); ++r) {
      const MatchRect& a = left[l];
      const MatchRect& b = right[r];
      const std::int64_t w = std::min(a.right, b.right) - std::max(a.left, b.left);
      const std::int64_t h = std::min(a.bottom, b.bottom) - std::max(a.top, b.top);
      const std::int64_t i = (w > 0 && h > 0) ? w * h : 0;
      const std::int64_t u = a.width() * a.height() - i + b.width() * b.height();
      const double overlap = u == 0 ? 0.0 : static_cast<double>(i) / static_cast<double>(u);
      if (overlap < kOverlapEpsilon) continue;
      if (overlap > leftBest[l]) {
        leftBest[l] = overlap;
        out.leftToRight[l] = {r};
      } else if (std::fabs(overlap - leftBest[l]) < kOverlapEpsilon) {
        out.leftToRight[l].push_back(r);
      }
      if (overlap > rightBest[r]) {
        rightBest[r] = overlap;
        out.rightToLeft[r] = {l};
      } else if (std::fabs(overlap - rightBest[r]) < kOverlapEpsilon) {
        out.rightToLeft[r].push_back(l);
      }
    }
  }
  return out;
}

MatchRect rect(std::int64_t left, std::int64_t top, std::int64_t width, std::int64_t height) {
  return {left, top, left + width, top + height};
}

// Random pages on a coarse grid, so that equal rectangles, equal overlaps (ties) and
// rectangles touching at an edge are all frequent; some rectangles are tall or wide so the
// sweep holds many at once.
std::vector<MatchRect> randomPage(std::mt19937_64& random, std::size_t count, int grid) {
  std::vector<MatchRect> out;
  for (std::size_t i = 0; i < count; ++i) {
    const std::int64_t x = static_cast<std::int64_t>(random() % grid) * 10;
    const std::int64_t y = static_cast<std::int64_t>(random() % grid) * 10;
    const bool large = random() % 20 == 0;
    const std::int64_t w = 10 * (1 + static_cast<std::int64_t>(random() % (large ? grid : 3)));
    const std::int64_t h = 10 * (1 + static_cast<std::int64_t>(random() % (large ? grid : 2)));
    out.push_back(rect(x, y, random() % 50 == 0 ? 0 : w, h));
  }
  return out;
}

TEST(CandidateMatchingTest, SweepGivesTheListsOfTheAllPairsLoop) {
  std::mt19937_64 random(99);
  for (int round = 0; round < 3000; ++round) {
    const int grid = 2 + static_cast<int>(random() % 30);
    auto left = randomPage(random, random() % 80, grid);
    auto right = randomPage(random, random() % 80, grid);
    if (round % 10 == 0) {
      // Transformed coordinates may span more than 32 bits of rows.
      for (auto* page : {&left, &right}) {
        for (MatchRect& r : *page) {
          if (r.top >= 30) {
            r.top += 6000000000LL;
            r.bottom += 6000000000LL;
          }
        }
      }
    }
    const CandidateLists want = allPairs(left, right);
    const CandidateLists got = findCandidates(left, right);
    ASSERT_EQ(got.leftToRight, want.leftToRight) << "round " << round;
    ASSERT_EQ(got.rightToLeft, want.rightToLeft) << "round " << round;
  }
}

TEST(CandidateMatchingTest, OverlapIsIntersectionOverUnion) {
  EXPECT_DOUBLE_EQ(overlapRatio(rect(0, 0, 10, 10), rect(5, 0, 10, 10)), 50.0 / 150.0);
  EXPECT_EQ(overlapRatio(rect(0, 0, 0, 0), rect(0, 0, 0, 0)), 0.0);
  // Page-sized rectangles: areas beyond 32 bits must not overflow.
  EXPECT_DOUBLE_EQ(overlapRatio(rect(0, 0, 100000, 100000), rect(0, 0, 100000, 50000)), 0.5);
}

}  // namespace
}  // namespace qent::text::layout::comparison
