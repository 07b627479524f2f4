// MoveSinglePageCopier.cpp - the page rule of the single-page copy.
#include "layout/MoveSinglePageCopier.h"

#include "layout/Page.h"
#include "layout/ShallowCopier.h"

namespace qent::text::layout {

MoveSinglePageCopier::~MoveSinglePageCopier() = default;

void MoveSinglePageCopier::visit(Page& node) {
  const std::uint32_t index = counter_++;
  if (index != wantedIndex_) return;
  ShallowCopier shallow;
  node.accept(shallow);
  std::unique_ptr<Node> copy = shallow.takeResult();
  Node::Children children = node.takeChildren();
  copy->reserveChildren(children.size());
  for (auto& child : children) copy->appendChild(std::move(child));
  deliver(std::move(copy));
}

}  // namespace qent::text::layout
