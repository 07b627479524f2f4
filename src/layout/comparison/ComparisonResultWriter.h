// ComparisonResultWriter.h - the comparison result document (JSON) from the pair summaries.
//
//   {"root": {"children": [per page pair], "compare": "word", "diff": {...},
//             "left": {...} | null, "right": {...} | null}}
// With metrics, "root" and every page pair also get a "metrics" object of character and
// word error counts and rates (see ErrorCounts.h).
// Members appear in ascending key order; doubles print in RapidJSON's notation.
#pragma once

#include "layout/comparison/CompareEnums.h"
#include "layout/comparison/ErrorCounts.h"
#include "layout/comparison/PairSummary.h"

#include <string>
#include <vector>

namespace qent::text::layout::comparison {

std::string writeComparisonResult(CompareLevel level, const PairSummary& root,
                                  const std::vector<PairSummary>& pages,
                                  const TextMetrics* metrics = nullptr);

}  // namespace qent::text::layout::comparison
