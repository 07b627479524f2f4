// PairSummary.cpp - pair summaries and their derived counts.
#include "layout/comparison/PairSummary.h"

#include "base/QentException.h"
#include "base/TraceLog.h"
#include "base/Unicode.h"
#include "layout/Layout.h"
#include "layout/comparison/Comparator.h"

#include <algorithm>
#include <cmath>

namespace qent::text::layout::comparison {

namespace {

// The node's record, or null (with a trace line) when a present node has none.
const NodeStatistics* recordOf(const Comparator& comparator, const Node* node, const char* side) {
  if (node == nullptr || comparator.isPlaceholder(node)) return nullptr;
  const NodeStatistics* stats = comparator.statistics(node);
  if (stats == nullptr && base::TraceLog::isOn()) {
    base::TraceLog::writeFormatted(
        base::kTraceInfo,
        "Create matching statistics: %s layout, node with id = '%s' doesn't have node "
        "statistics; skipped ",
        side, base::utf16ToUtf8Lenient(node->id()).c_str());
  }
  return stats;
}

std::uint64_t goodOf(const NodeStatistics& stats) {
  return stats.count > stats.errors ? stats.count - stats.errors : 0;
}

}  // namespace

std::uint64_t PairSummary::maxCount() const {
  return complete ? std::max(leftStats.count, rightStats.count) : 0;
}

std::uint64_t PairSummary::good() const {
  return complete ? std::max(goodOf(leftStats), goodOf(rightStats)) : 0;
}

std::uint64_t PairSummary::edits() const {
  const std::uint64_t most = maxCount();
  const std::uint64_t matched = good();
  return most > matched ? most - matched : 0;
}

double PairSummary::f1() const {
  if (!complete) return 0.0;
  if (std::fabs(leftStats.f1Measure) > kRateEpsilon) return leftStats.f1Measure;
  if (std::fabs(rightStats.f1Measure) > kRateEpsilon) return rightStats.f1Measure;
  const double rL = leftStats.recognitionRate;
  const double rR = rightStats.recognitionRate;
  if (std::fabs(rL) <= kRateEpsilon && std::fabs(rR) <= kRateEpsilon) return 0.0;
  return 2.0 * rL * rR / (rR + rL);
}

PairSummary summarizePair(const Comparator& comparator, const Node* left, const Node* right) {
  PairSummary summary;
  const NodeStatistics* leftStats = recordOf(comparator, left, "Left");
  const NodeStatistics* rightStats = recordOf(comparator, right, "Right");
  if (leftStats != nullptr) {
    summary.left = left;
    summary.leftStats = *leftStats;
  }
  if (rightStats != nullptr) {
    summary.right = right;
    summary.rightStats = *rightStats;
  }
  summary.complete = leftStats != nullptr && rightStats != nullptr;
  // A side without its counterpart was handled as unpaired; a partner there means the
  // records contradict each other.
  if (!summary.complete) {
    const NodeStatistics* alone = leftStats != nullptr ? leftStats : rightStats;
    if (alone != nullptr && alone->partner != nullptr) {
      throw base::QentException(base::kErrorOption, "internal error: wrong matching is set");
    }
  }
  return summary;
}

PairSummary summarizeRoots(const Comparator& comparator) {
  return summarizePair(comparator, comparator.leftLayout().root(),
                       comparator.rightLayout().root());
}

std::vector<PairSummary> summarizePages(const Comparator& comparator) {
  std::vector<PairSummary> pages;
  pages.reserve(comparator.pagePairs().size());
  for (const auto& [left, right] : comparator.pagePairs()) {
    pages.push_back(summarizePair(comparator, left, right));
  }
  return pages;
}

}  // namespace qent::text::layout::comparison
