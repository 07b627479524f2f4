// DeepCopier.h - copies a node with its whole subtree.
#pragma once

#include "layout/NodeVisitor.h"

#include <memory>
#include <vector>

namespace qent::text::layout {

class Node;

// Every class reaches visit(Node&): the node is copied with a fresh ShallowCopier, then
// each child accepts this copier and its copy, when there is one, is appended. For the
// classes the shallow copy deliberately does not support (Picture, Field, plain Fragment,
// generic Node) the "copy" is whatever the shallow copier leaves: nothing, so the node drops
// out with its subtree, or the copy of its last supported descendant, which then receives
// the copies of the node's children. The copies being filled are kept on the heap, so trees
// of any depth are copied without recursion.
class DeepCopier : public NodeVisitor {
public:
  using NodeVisitor::visit;
  DeepCopier();
  ~DeepCopier() override;

  void visit(Node& node) override;
  void leave(Node& node) override;

  Node* result() const { return result_.get(); }
  std::unique_ptr<Node> takeResult() { return std::move(result_); }

protected:
  // Hands over the finished copy of a visited node: to the copy of its parent, or as the
  // result when it is the node the copy started at.
  void deliver(std::unique_ptr<Node> copy);

  std::unique_ptr<Node> result_;

private:
  // The copies whose children are being copied, outermost first.
  std::vector<std::unique_ptr<Node>> open_;
};

}  // namespace qent::text::layout
