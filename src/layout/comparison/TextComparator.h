// TextComparator.h - compares the texts of paired nodes, by edit distance or as a whole.
#pragma once

#include "layout/comparison/Comparator.h"

namespace qent::text::layout::comparison {

// Characterwise: each side counts its characters (UTF-16 code units), and
// max(nL, nR) - distance of them are good. Otherwise each side counts one unit, good when
// the texts are identical. The length difference is 0 for texts of equal length; else,
// with countLengthDifference, how much longer this side is, and without it the side's errors.
class TextComparator : public Comparator {
public:
  using Comparator::Comparator;
  ~TextComparator() override;

  void compareNodes(const Item& left, const Item& right) override;
};

}  // namespace qent::text::layout::comparison
