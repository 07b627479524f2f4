// TextComparator.cpp - counts, errors and length difference of a text pair.
#include "layout/comparison/TextComparator.h"

#include <algorithm>

namespace qent::text::layout::comparison {

TextComparator::~TextComparator() = default;

void TextComparator::compareNodes(const Item& left, const Item& right) {
  NodeStatistics& l = *left.stats;
  NodeStatistics& r = *right.stats;
  const std::uint64_t nL = left.text.size();
  const std::uint64_t nR = right.text.size();
  std::uint64_t good = 0;
  if (characterwise()) {
    const std::uint64_t distance = kernels().editDistance(left.text, right.text);
    const std::uint64_t longer = std::max(nL, nR);
    good = longer > distance ? longer - distance : 0;
    l.count = nL;
    r.count = nR;
  } else {
    good = left.text == right.text ? 1 : 0;
    l.count = 1;
    r.count = 1;
  }
  // good <= min(nL, nR) since the distance is at least the difference in length.
  l.errors = l.count - good;
  r.errors = r.count - good;
  if (nL == nR) {
    l.lengthDifference = 0;
    r.lengthDifference = 0;
  } else if (countLengthDifference()) {
    const std::uint64_t shorter = std::min(nL, nR);
    l.lengthDifference = nL - shorter;
    r.lengthDifference = nR - shorter;
  } else {
    l.lengthDifference = l.errors;
    r.lengthDifference = r.errors;
  }
  l.updateRates();
  r.updateRates();
  setPairF1(l, r);
}

}  // namespace qent::text::layout::comparison
