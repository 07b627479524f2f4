// DeepCopier.cpp - the copy of a subtree, walked without recursion.
#include "layout/DeepCopier.h"

#include "layout/Node.h"
#include "layout/ShallowCopier.h"

namespace qent::text::layout {

DeepCopier::DeepCopier() = default;
DeepCopier::~DeepCopier() = default;

void DeepCopier::visit(Node& node) {
  // A copy that starts here replaces whatever an earlier one left.
  if (open_.empty()) result_.reset();
  ShallowCopier shallow;
  node.accept(shallow);
  std::unique_ptr<Node> copy = shallow.takeResult();
  // Without a copy there is nothing to hang the children on; the subtree is left out.
  if (!copy) return;
  copy->reserveChildren(node.childCount());
  open_.push_back(std::move(copy));
  NodeVisitor::visit(node);
}

void DeepCopier::leave(Node&) {
  std::unique_ptr<Node> copy = std::move(open_.back());
  open_.pop_back();
  deliver(std::move(copy));
}

void DeepCopier::deliver(std::unique_ptr<Node> copy) {
  if (open_.empty()) {
    result_ = std::move(copy);
  } else {
    open_.back()->appendChild(std::move(copy));
  }
}

}  // namespace qent::text::layout
