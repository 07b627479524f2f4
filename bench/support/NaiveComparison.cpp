// NaiveComparison.cpp - all-pairs candidate matching and the dynamic-programme distance.
#include "support/NaiveComparison.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace ormida::bench {

namespace {

using namespace qent::text::layout::comparison;

// The quadratic forms the engine's algorithms replace: every left rectangle against every
// right one, and the full single-row dynamic programme.
CandidateLists allPairsCandidates(std::span<const MatchRect> left, std::span<const MatchRect> right) {
  CandidateLists out;
  out.leftToRight.resize(left.size());
  out.rightToLeft.resize(right.size());
  std::vector<double> leftBest(left.size(), 0.0), rightBest(right.size(), 0.0);
  for (std::uint32_t l = 0; l < left.size(); ++l) {
    for (std::uint32_t r = 0; r < right.size(); ++r) {
      const double overlap = overlapRatio(left[l], right[r]);
      if (overlap < kOverlapEpsilon) continue;
      if (overlap > leftBest[l]) {
        leftBest[l] = overlap;
        out.leftToRight[l].assign(1, r);
      } else if (std::fabs(overlap - leftBest[l]) < kOverlapEpsilon) {
        out.leftToRight[l].push_back(r);
      }
      if (overlap > rightBest[r]) {
        rightBest[r] = overlap;
        out.rightToLeft[r].assign(1, l);
      } else if (std::fabs(overlap - rightBest[r]) < kOverlapEpsilon) {
        out.rightToLeft[r].push_back(l);
      }
    }
  }
  return out;
}

std::size_t singleRowDistance(std::u16string_view a, std::u16string_view b) {
  if (a.size() > b.size()) std::swap(a, b);
  std::vector<std::size_t> row(a.size() + 1);
  for (std::size_t i = 0; i <= a.size(); ++i) row[i] = i;
  for (std::size_t j = 1; j <= b.size(); ++j) {
    std::size_t diagonal = row[0];
    row[0] = j;
    for (std::size_t i = 1; i <= a.size(); ++i) {
      const std::size_t above = row[i];
      row[i] = std::min({row[i] + 1, row[i - 1] + 1, diagonal + (a[i - 1] == b[j - 1] ? 0 : 1)});
      diagonal = above;
    }
  }
  return row[a.size()];
}

}  // namespace

ComparisonKernels naiveKernels() { return {&allPairsCandidates, &singleRowDistance}; }

}  // namespace ormida::bench
