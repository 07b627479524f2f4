// ShallowCopier.h - copies one node's own fields, without its children.
#pragma once

#include "layout/NodeVisitor.h"

#include <memory>

namespace qent::text::layout {

class Node;

// Let a node accept the copier, then take result(). Supported classes: Glyph, Line, Word,
// Box, Page, Image and Content (layout roots are Content nodes). Picture, Field, plain
// Fragment and generic Node are deliberately not copied: their visits keep the walking
// defaults, so such a visit leaves as result the copy of the last supported descendant
// reached, or nothing. The copier owns a result nobody took.
class ShallowCopier : public NodeVisitor {
public:
  using NodeVisitor::visit;
  ~ShallowCopier() override;

  void visit(Glyph& node) override;
  void visit(Word& node) override;
  void visit(Line& node) override;
  void visit(Box& node) override;
  void visit(Page& node) override;
  void visit(Image& node) override;
  void visit(Content& node) override;

  Node* result() const { return result_.get(); }
  std::unique_ptr<Node> takeResult() { return std::move(result_); }

private:
  std::unique_ptr<Node> result_;
};

}  // namespace qent::text::layout
