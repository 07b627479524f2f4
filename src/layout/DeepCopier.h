// DeepCopier.h - copies a node with its whole subtree.
#pragma once

#include "layout/NodeVisitor.h"

#include <memory>

namespace qent::text::layout {

class Node;

// Every class reaches visit(Node&): the node is copied with a fresh ShallowCopier, then
// each child accepts this copier and its copy, when there is one, is appended. For the
// classes the shallow copy deliberately does not support (Picture, Field, plain Fragment,
// generic Node) the "copy" is whatever the shallow copier leaves: nothing, so the node drops
// out with its subtree, or the copy of its last supported descendant, which then receives
// the copies of the node's children. Recursive: meant for trees within the readers' depth
// limit.
class DeepCopier : public NodeVisitor {
public:
  using NodeVisitor::visit;
  ~DeepCopier() override;

  void visit(Node& node) override;

  Node* result() const { return result_.get(); }
  std::unique_ptr<Node> takeResult() { return std::move(result_); }

protected:
  std::unique_ptr<Node> result_;
};

}  // namespace qent::text::layout
