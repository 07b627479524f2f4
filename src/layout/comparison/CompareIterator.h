// CompareIterator.h - walks a subtree and stops at the nodes of one comparison level.
#pragma once

#include "layout/IteratorTemplate.h"
#include "layout/comparison/CompareEnums.h"

namespace qent::text::layout::comparison {

// True when the node is of the class that the level compares (Glyph, Word or Line);
// level None accepts no node at all.
bool isLevelNode(const Node& node, CompareLevel level);

// Depth-first, document order, the start node included when it is of the level.
class CompareIterator : public IteratorTemplate<Node> {
public:
  CompareIterator(Node* start, CompareLevel level) : IteratorTemplate<Node>(start), level_(level) {
    // The base constructor filtered with the base's matches(); filter again with ours.
    skipOthers();
  }
  ~CompareIterator() override;

  bool matches(const Node* node) const override {
    return node != nullptr && isLevelNode(*node, level_);
  }

private:
  CompareLevel level_;
};

}  // namespace qent::text::layout::comparison
