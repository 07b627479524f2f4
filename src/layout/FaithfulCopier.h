// FaithfulCopier.h - a copy of a subtree that keeps every node as it is.
//
// The deep copy beside it keeps only the classes it supports and re-parents the children of
// the others; work that must hand a tree on unchanged (merging several recognitions,
// regions and entities) uses this one: every node keeps its class, fields, attributes and
// children. The walk keeps its path on the heap, so depth costs no stack.
#pragma once

#include <memory>

namespace qent::text::layout {

class Node;

class FaithfulCopier {
public:
  static std::unique_ptr<Node> copy(Node& root);

  // The node's own fields in a node of its class, without children.
  template <class T>
  static T* make(const T& node) {
    return new T(node);
  }
};

}  // namespace qent::text::layout
