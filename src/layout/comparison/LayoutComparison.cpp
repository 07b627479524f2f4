// LayoutComparison.cpp - the comparison as the job runs it.
#include "layout/comparison/LayoutComparison.h"

#include "base/QentException.h"
#include "layout/comparison/ComparisonResultWriter.h"
#include "layout/comparison/EntityComparator.h"
#include "layout/comparison/PairSummary.h"
#include "layout/comparison/TextComparator.h"

namespace qent::text::layout::comparison {

std::unique_ptr<Comparator> makeComparator(const CompareOptions& options, Layout& left,
                                           Layout& right) {
  switch (options.mode) {
    case CompareMode::Text:
      return std::make_unique<TextComparator>(left, right, options.level, options.characterwise,
                                              options.countLengthDifference, options.alignment);
    case CompareMode::Entity:
      return std::make_unique<EntityComparator>(left, right, options.level,
                                                options.characterwise,
                                                options.countLengthDifference, options.alignment);
    default:
      throw base::QentException(base::kErrorOption,
                                "the comparison mode names no comparison; use Text or Entity");
  }
}

std::string compareLayouts(const CompareOptions& options, Layout& left, Layout& right,
                           bool annotateRight) {
  return compareLayouts(options, left, right, annotateRight, {});
}

std::string compareLayouts(const CompareOptions& options, Layout& left, Layout& right,
                           bool annotateRight,
                           const std::function<void(const Comparator&)>& inspect) {
  const std::unique_ptr<Comparator> comparator = makeComparator(options, left, right);
  comparator->compare();
  comparator->createStatistics(true, annotateRight);
  std::optional<TextMetrics> metrics;
  if (options.metrics) metrics = measureErrors(*comparator, *options.metrics);
  std::string result = writeComparisonResult(options.level, summarizeRoots(*comparator),
                                             summarizePages(*comparator),
                                             metrics ? &*metrics : nullptr);
  if (inspect) inspect(*comparator);
  return result;
}

}  // namespace qent::text::layout::comparison
