// ComparisonFixture.h - runs a comparison on two trees stated as dump text and describes the
// records it left, for compact table-driven comparison tests.
#pragma once

#include "base/NumberConversion.h"
#include "base/Unicode.h"
#include "layout/Layout.h"
#include "layout/NodeIterator.h"
#include "layout/comparison/Comparator.h"
#include "layout/comparison/CompareIterator.h"
#include "layout/comparison/LayoutComparison.h"
#include "support/LayoutDump.h"

#include <memory>
#include <string>

namespace qent::test {

struct ComparisonRun {
  std::unique_ptr<text::layout::Layout> left;
  std::unique_ptr<text::layout::Layout> right;
  std::unique_ptr<text::layout::comparison::Comparator> comparator;

  ComparisonRun(std::string_view leftTree, std::string_view rightTree,
                const text::layout::comparison::CompareOptions& options)
      : left(parseLayout(leftTree)), right(parseLayout(rightTree)) {
    comparator = text::layout::comparison::makeComparator(options, *left, *right);
    comparator->compare();
  }

  // "count/errors/lengthDifference" of a node's record, or "-" without one.
  std::string counts(const text::layout::Node* node) const {
    const auto* stats = comparator->statistics(node);
    if (stats == nullptr) return "-";
    return std::to_string(stats->count) + "/" + std::to_string(stats->errors) + "/" +
           std::to_string(stats->lengthDifference);
  }

  // Every node of the level in one layout, "id=counts>partner", blank-separated.
  std::string level(const text::layout::Layout& layout) const {
    std::string out;
    for (text::layout::comparison::CompareIterator it(layout.root(), comparator->level());
         !it.atEnd(); ++it) {
      const auto* stats = comparator->statistics(&*it);
      if (!out.empty()) out += ' ';
      out += base::utf16ToUtf8(it->id()) + "=" + counts(&*it) + ">";
      out += stats != nullptr && stats->partner != nullptr ? base::utf16ToUtf8(stats->partner->id())
                                                          : "none";
    }
    return out;
  }

  std::string f1(const text::layout::Node* node) const {
    const auto* stats = comparator->statistics(node);
    return stats == nullptr ? "-" : base::formatFixed6(stats->f1Measure);
  }
};

}  // namespace qent::test
