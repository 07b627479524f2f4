// DeepCopier.cpp - the recursive copy of a subtree.
#include "layout/DeepCopier.h"

#include "layout/Node.h"
#include "layout/ShallowCopier.h"

namespace qent::text::layout {

DeepCopier::~DeepCopier() = default;

void DeepCopier::visit(Node& node) {
  ShallowCopier shallow;
  node.accept(shallow);
  std::unique_ptr<Node> copy = shallow.takeResult();
  // Without a copy there is nothing to hang the children on; the subtree is left out.
  if (copy) {
    copy->reserveChildren(node.childCount());
    for (std::size_t i = 0; i < node.childCount(); ++i) {
      result_.reset();
      node.child(i).accept(*this);
      if (result_) copy->appendChild(std::move(result_));
    }
  }
  result_ = std::move(copy);
}

}  // namespace qent::text::layout
