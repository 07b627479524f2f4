// NodeVisitor.cpp - the forwarding defaults of the visitor and its walk without recursion.
#include "layout/NodeVisitor.h"

#include "layout/Nodes.h"
#include "layout/TreeWalk.h"

#include <utility>

namespace qent::text::layout {

// The state of one walk: which node is accepting the visitor, and whether its visit asked
// for the children.
struct NodeVisitor::Walk {
  Node* visiting = nullptr;
  Node* parent = nullptr;
  bool descend = false;
};

NodeVisitor::~NodeVisitor() = default;

void NodeVisitor::visit(Picture& node) { visit(static_cast<Fragment&>(node)); }
void NodeVisitor::visit(Glyph& node) { visit(static_cast<Fragment&>(node)); }
void NodeVisitor::visit(Word& node) { visit(static_cast<Fragment&>(node)); }
void NodeVisitor::visit(Line& node) { visit(static_cast<Fragment&>(node)); }
void NodeVisitor::visit(Field& node) { visit(static_cast<Fragment&>(node)); }
void NodeVisitor::visit(Box& node) { visit(static_cast<Fragment&>(node)); }
void NodeVisitor::visit(Fragment& node) { visit(static_cast<Node&>(node)); }
void NodeVisitor::visit(Page& node) { visit(static_cast<Node&>(node)); }
void NodeVisitor::visit(Image& node) { visit(static_cast<Node&>(node)); }
void NodeVisitor::visit(Content& node) { visit(static_cast<Node&>(node)); }

void NodeVisitor::visit(Node& node) {
  if (walk_ != nullptr && walk_->visiting == &node) {
    walk_->descend = true;
    return;
  }
  {
    Walk walk;
    Walk* const outer = std::exchange(walk_, &walk);
    struct Restore {
      NodeVisitor& visitor;
      Walk* outer;
      ~Restore() { visitor.walk_ = outer; }
    } restore{*this, outer};
    walkBelow(
        node,
        [&](Node& child, Node& parent) {
          walk.visiting = &child;
          walk.parent = &parent;
          walk.descend = false;
          child.accept(*this);
          walk.visiting = nullptr;
          return walk.descend;
        },
        [&](Node& done) { leave(done); });
  }
  leave(node);
}

void NodeVisitor::leave(Node&) {}

Node* NodeVisitor::walkParent() const {
  return walk_ != nullptr && walk_->visiting != nullptr ? walk_->parent : nullptr;
}

}  // namespace qent::text::layout
