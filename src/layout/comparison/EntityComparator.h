// EntityComparator.h - compares the entity annotations of paired nodes instead of their text.
#pragma once

#include "layout/comparison/Comparator.h"

namespace qent::text::layout::comparison {

// An annotation is the node's entity name (x_entity) up to its first blank, so that
// "PERSON B-1" and "PERSON I-2" name the same class. Two nodes without annotation count
// nothing; otherwise each side counts one unit, good when the classes are identical byte
// for byte. A length difference is never counted of its own: with countLengthDifference it
// is 0, without it the side's errors when the texts differ in length.
class EntityComparator : public Comparator {
public:
  using Comparator::Comparator;
  ~EntityComparator() override;

  void compareNodes(const Item& left, const Item& right) override;
};

}  // namespace qent::text::layout::comparison
