// NodeStatistics.h - the comparison record of one node: its partner, counts and rates.
#pragma once

#include <cmath>
#include <cstdint>

namespace qent::text::layout {
class Node;
}

namespace qent::text::layout::comparison {

inline constexpr double kRateEpsilon = 2.220446049250313e-16;

struct NodeStatistics {
  // The node this one was paired with; null for an unpaired node and for every node above
  // the compared level.
  Node* partner = nullptr;
  // Units compared on this side: characters when comparing characterwise, else one per
  // node; sums over the children for pages and roots.
  std::uint64_t count = 0;
  // Units of this side that did not match.
  std::uint64_t errors = 0;
  std::uint64_t lengthDifference = 0;
  double errorRate = 0.0;
  double recognitionRate = 0.0;
  // Shared by both nodes of a pair.
  double f1Measure = 0.0;

  // errorRate = errors / count (0 for count 0), recognitionRate = 1 - errorRate.
  void updateRates() {
    errorRate = count == 0 ? 0.0 : static_cast<double>(errors) / static_cast<double>(count);
    recognitionRate = 1.0 - errorRate;
  }
};

// The harmonic mean of two recognition rates, 0 when they sum to (almost) nothing.
inline double f1Measure(double leftRate, double rightRate) {
  const double sum = leftRate + rightRate;
  if (!(std::fabs(sum) > kRateEpsilon)) return 0.0;
  return 2.0 * leftRate * rightRate / sum;
}

// Computes the f1 of a pair and stores it on both records.
inline void setPairF1(NodeStatistics& left, NodeStatistics& right) {
  const double f1 = f1Measure(left.recognitionRate, right.recognitionRate);
  left.f1Measure = f1;
  right.f1Measure = f1;
}

}  // namespace qent::text::layout::comparison
