// FaithfulCopier.cpp - node by node, each of its own class, along one walk.
#include "layout/FaithfulCopier.h"

#include "layout/NodeVisitor.h"
#include "layout/Nodes.h"
#include "layout/TreeWalk.h"

#include <vector>

namespace qent::text::layout {

namespace {

// Dispatches to the class's protected copy constructor, which copies the node's own fields
// and never its children.
class OwnFields : public NodeVisitor {
public:
  using NodeVisitor::visit;
  std::unique_ptr<Node> copy;

  void visit(Picture& node) override { copy.reset(FaithfulCopier::make(node)); }
  void visit(Glyph& node) override { copy.reset(FaithfulCopier::make(node)); }
  void visit(Word& node) override { copy.reset(FaithfulCopier::make(node)); }
  void visit(Line& node) override { copy.reset(FaithfulCopier::make(node)); }
  void visit(Field& node) override { copy.reset(FaithfulCopier::make(node)); }
  void visit(Box& node) override { copy.reset(FaithfulCopier::make(node)); }
  void visit(Fragment& node) override { copy.reset(FaithfulCopier::make(node)); }
  void visit(Page& node) override { copy.reset(FaithfulCopier::make(node)); }
  void visit(Image& node) override { copy.reset(FaithfulCopier::make(node)); }
  void visit(Content& node) override { copy.reset(FaithfulCopier::make(node)); }
  void visit(Node& node) override { copy.reset(FaithfulCopier::make(node)); }
};

std::unique_ptr<Node> ownFields(Node& node) {
  OwnFields copier;
  node.accept(copier);
  return std::move(copier.copy);
}

}  // namespace

std::unique_ptr<Node> FaithfulCopier::copy(Node& root) {
  std::unique_ptr<Node> top = ownFields(root);
  std::vector<Node*> path{top.get()};
  walkBelow(
      root,
      [&](Node& child, Node&) {
        std::unique_ptr<Node> made = ownFields(child);
        made->reserveChildren(child.childCount());
        path.push_back(&path.back()->appendChild(std::move(made)));
        return true;
      },
      [&](Node&) { path.pop_back(); });
  return top;
}

}  // namespace qent::text::layout
