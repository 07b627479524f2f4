// NodeVisitor.cpp - the forwarding defaults of the visitor.
#include "layout/NodeVisitor.h"

#include "layout/Nodes.h"

namespace qent::text::layout {

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
  // Index rather than iterator: a visitor may append to the children it is visiting.
  for (std::size_t i = 0; i < node.childCount(); ++i) node.child(i).accept(*this);
}

}  // namespace qent::text::layout
