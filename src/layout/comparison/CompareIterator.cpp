// CompareIterator.cpp - the level predicate of the comparison's node walk.
#include "layout/comparison/CompareIterator.h"

#include "layout/comparison/LevelNodes.h"

namespace qent::text::layout::comparison {

CompareIterator::~CompareIterator() = default;

bool isLevelNode(const Node& node, CompareLevel level) {
  return level != CompareLevel::None && levelOf(node) == level;
}

}  // namespace qent::text::layout::comparison
