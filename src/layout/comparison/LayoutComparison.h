// LayoutComparison.h - one comparison from options to result document: build the
// comparator for the mode, compare, write the statistics into both layouts, summarise.
#pragma once

#include "layout/comparison/CompareEnums.h"
#include "layout/comparison/ErrorCounts.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace qent::text::layout {
class Layout;
}

namespace qent::text::layout::comparison {

class Comparator;

struct CompareOptions {
  CompareLevel level = CompareLevel::Word;
  CompareMode mode = CompareMode::Text;
  // Compare texts character by character with the edit distance (else as whole strings).
  bool characterwise = true;
  // Count how much longer one side's text is as its own figure (partial segmentation
  // errors); else the length difference repeats the errors.
  bool countLengthDifference = true;
  Alignment alignment = Alignment::Corner;
  // Character and word error counts in the result document; only on request, so that the
  // document stays as callers without them know it.
  std::optional<MetricsOptions> metrics;
};

// The comparator for options.mode: TextComparator or EntityComparator. Mode None names
// no comparison and is refused with QentException 20020.
std::unique_ptr<Comparator> makeComparator(const CompareOptions& options, Layout& left,
                                           Layout& right);

// Compares left (the recognition) with right (the reference), leaves the "comp_*"
// attributes on both layouts' compared nodes and roots (on the right one only when
// annotateRight), and returns the result document.
std::string compareLayouts(const CompareOptions& options, Layout& left, Layout& right,
                           bool annotateRight = true);
// The same, handing the finished comparator to `inspect` before it goes (for what reads
// more than the result document, such as the visual report). When inspect throws, the
// layouts keep their annotations and the exception passes on.
std::string compareLayouts(const CompareOptions& options, Layout& left, Layout& right,
                           bool annotateRight,
                           const std::function<void(const Comparator&)>& inspect);

}  // namespace qent::text::layout::comparison
