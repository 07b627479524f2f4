// TreeWalk.h - the depth-first walk without recursion that visitors, copiers and writers of
// layout trees are built on.
#pragma once

#include "layout/Node.h"

#include <cstddef>
#include <vector>

namespace qent::text::layout {

// Walks the descendants of `start` depth-first, parent before children, children left to
// right. The path is kept on the heap, so a deep tree costs memory, never stack: the library
// runs on its callers' threads, whose stacks may be small.
//
// For each descendant, enter(node, parent) runs first. When it returns true the node's
// children are walked and then leave(node) runs; when it returns false the subtree is skipped
// and leave is not called. `start` itself is neither entered nor left: the caller deals with
// it. A child count is read afresh at every step, so enter and leave may append children to
// nodes on the path (they are walked too), and enter may take away the children of the node
// it is given; any other change of the tree during the walk is undefined.
template <class Enter, class Leave>
void walkBelow(Node& start, Enter&& enter, Leave&& leave) {
  struct Frame {
    Node* node;
    std::size_t next;
  };
  std::vector<Frame> path{Frame{&start, 0}};
  while (true) {
    Frame& top = path.back();
    if (top.next < top.node->childCount()) {
      Node& parent = *top.node;
      Node& child = *parent.children()[top.next++];
      if (enter(child, parent)) path.push_back(Frame{&child, 0});
      continue;
    }
    Node& done = *top.node;
    path.pop_back();
    if (path.empty()) return;
    leave(done);
  }
}

}  // namespace qent::text::layout
