// NodeIterator.h - a pre-order cursor over a subtree that keeps the path to the current node.
#pragma once

#include "layout/Node.h"

#include <cstddef>
#include <vector>

namespace qent::text::layout {

// Visits the start node, then its subtree depth-first, parent before children, children
// left to right. The cursor keeps one position per level below the start node, so parent()
// is known without parent pointers and deep trees cost no stack. Valid while the tree is not
// changed; appending or removing children of a node on the path invalidates it.
//
//   for (NodeIterator it(&root); it.current() != nullptr; ++it) use(*it);
//
// A default-constructed cursor is the end: every cursor that ran out compares equal to it.
class NodeIterator {
public:
  explicit NodeIterator(Node* start = nullptr) : start_(start) {}
  NodeIterator(const NodeIterator&) = default;
  virtual ~NodeIterator();

  virtual NodeIterator operator++(int);
  // Defined here, like current(), so that loops over a local cursor inline them.
  virtual NodeIterator& operator++() {
    Node* node = current();
    if (node == nullptr) return *this;
    if (!node->children().empty()) {
      path_.push_back(Position{&node->children(), 0});
      return *this;
    }
    while (!path_.empty()) {
      Position& top = path_.back();
      if (++top.index < top.siblings->size()) return *this;
      path_.pop_back();
    }
    start_ = nullptr;
    return *this;
  }
  virtual bool operator!=(const NodeIterator& other) const;
  // Equal when both stand on the same element of the same children sequence, or both have
  // an empty path and the same start node (two ended cursors are equal).
  virtual bool operator==(const NodeIterator& other) const;
  // Throws std::invalid_argument("Access to invalidated cursor. (nullptr)") at the end.
  virtual Node& operator*() const;
  virtual Node* operator->() const;
  virtual NodeIterator& operator=(const NodeIterator& other);
  // Null at the start node (or at the end); else the node whose child is current.
  virtual Node* parent() const;
  // Null at the end.
  virtual Node* current() const {
    if (path_.empty()) return start_;
    const Position& top = path_.back();
    return (*top.siblings)[top.index].get();
  }

  // Levels between the start node and the current node (0 at the start node).
  std::size_t depth() const { return path_.size(); }

private:
  struct Position {
    const Node::Children* siblings;
    std::size_t index;
  };
  Node* start_;
  std::vector<Position> path_;
};

}  // namespace qent::text::layout
