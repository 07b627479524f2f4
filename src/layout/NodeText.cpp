// NodeText.cpp - concatenated subtree texts.
#include "layout/NodeText.h"

#include "layout/NodeClass.h"
#include "layout/NodeIterator.h"

namespace qent::text::layout {

namespace {

void collect(const Node& node, std::u16string* fragments, std::u16string& contents) {
  // The cursor walks mutable nodes; nothing is changed through it.
  for (NodeIterator it(const_cast<Node*>(&node)); it.current() != nullptr; ++it) {
    const Node* current = it.current();
    if (isA<Fragment>(*current)) {
      if (fragments != nullptr) *fragments += static_cast<const Fragment*>(current)->text();
    } else if (isA<Content>(*current)) {
      contents += static_cast<const Content*>(current)->text();
    }
  }
}

}  // namespace

std::u16string nodeText(const Node& node) {
  std::u16string fragments;
  std::u16string contents;
  collect(node, &fragments, contents);
  return fragments + contents;
}

std::u16string contentText(const Node& node) {
  std::u16string contents;
  collect(node, nullptr, contents);
  return contents;
}

}  // namespace qent::text::layout
