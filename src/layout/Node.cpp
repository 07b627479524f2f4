// Node.cpp - the base node: ownership of children and non-recursive destruction.
#include "layout/Node.h"

#include "layout/NodeVisitor.h"

namespace qent::text::layout {

Node::Node(const Node& other)
    : id_(other.id_),
      attributes_(other.attributes_),
      extras_(other.extras_ != nullptr ? other.extras_->clone() : nullptr),
      nodeClass_(other.nodeClass_) {}

Node::~Node() {
  // Unlink every descendant before it dies, so each destructor below sees no children and
  // the stack depth stays constant whatever the depth of the tree.
  if (children_.empty()) return;
  Children pending = std::move(children_);
  while (!pending.empty()) {
    std::unique_ptr<Node> node = std::move(pending.back());
    pending.pop_back();
    for (auto& grandchild : node->children_) pending.push_back(std::move(grandchild));
    node->children_.clear();
  }
}

const Node::Attributes& Node::auxiliaryAttributes() const {
  static const Attributes kNone;
  return extras_ != nullptr ? extras_->auxiliaryAttributes : kNone;
}

Node::Attributes& Node::auxiliaryAttributes() { return extrasForChange().auxiliaryAttributes; }

NodeExtras& Node::extrasForChange() {
  if (extras_ == nullptr) extras_ = newExtras();
  return *extras_;
}

std::unique_ptr<NodeExtras> Node::newExtras() const { return std::make_unique<NodeExtras>(); }

void Node::accept(NodeVisitor& visitor) { visitor.visit(*this); }

Node::Children Node::takeChildren() {
  Children taken = std::move(children_);
  children_.clear();
  return taken;
}

}  // namespace qent::text::layout
