// PairSummary.h - one compared pair (the two roots, or two pages) as the comparison result
// reports it: both nodes with a copy of their records, and the values derived from them.
#pragma once

#include "layout/comparison/NodeStatistics.h"

#include <cstdint>
#include <vector>

namespace qent::text::layout::comparison {

class Comparator;

struct PairSummary {
  const Node* left = nullptr;
  NodeStatistics leftStats;
  const Node* right = nullptr;
  NodeStatistics rightStats;
  // Both sides present (and carrying records).
  bool complete = false;

  // The derived values are all 0 for an incomplete pair.
  std::uint64_t maxCount() const;
  // The larger of the two sides' good units.
  std::uint64_t good() const;
  std::uint64_t edits() const;
  // The f1 stored on the left, else the one on the right, else computed from the two
  // recognition rates (0 when both are 0).
  double f1() const;
};

// The summary of one pair of nodes from a finished comparison. A side that is missing (null
// or the stand-in for a missing page) stays empty; a side without a record is left out too
// and, when tracing is on, named in the trace log. Throws QentException "internal error:
// wrong matching is set" when the only side present claims a partner.
PairSummary summarizePair(const Comparator& comparator, const Node* left, const Node* right);

// The root pair, and one summary per page pair in page order.
PairSummary summarizeRoots(const Comparator& comparator);
std::vector<PairSummary> summarizePages(const Comparator& comparator);

}  // namespace qent::text::layout::comparison
