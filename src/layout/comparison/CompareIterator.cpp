// CompareIterator.cpp - the level predicate of the comparison's node walk.
#include "layout/comparison/CompareIterator.h"

#include "layout/Glyph.h"
#include "layout/Line.h"
#include "layout/Word.h"

namespace qent::text::layout::comparison {

CompareIterator::~CompareIterator() = default;

bool isLevelNode(const Node& node, CompareLevel level) {
  switch (level) {
    case CompareLevel::Glyph:
      return dynamic_cast<const Glyph*>(&node) != nullptr;
    case CompareLevel::Word:
      return dynamic_cast<const Word*>(&node) != nullptr;
    case CompareLevel::Line:
      return dynamic_cast<const Line*>(&node) != nullptr;
    default:
      return false;
  }
}

}  // namespace qent::text::layout::comparison
