// LevelNodes.cpp - visitors that classify and collect nodes.
#include "layout/comparison/LevelNodes.h"

#include "layout/NodeVisitor.h"
#include "layout/Nodes.h"

namespace qent::text::layout::comparison {

namespace {

class LevelCollector : public NodeVisitor {
public:
  LevelCollector(CompareLevel level, std::vector<Node*>& out) : level_(level), out_(out) {}
  using NodeVisitor::visit;
  void visit(Glyph& node) override { take(node, CompareLevel::Glyph); }
  void visit(Word& node) override { take(node, CompareLevel::Word); }
  void visit(Line& node) override { take(node, CompareLevel::Line); }

private:
  void take(Node& node, CompareLevel level) {
    if (level == level_) out_.push_back(&node);
    NodeVisitor::visit(node);  // nodes of any level may sit below any other
  }

  CompareLevel level_;
  std::vector<Node*>& out_;
};

class PageScanner : public NodeVisitor {
public:
  PageScanner(CompareLevel level, std::vector<Node*>& out, ContentBox& content)
      : level_(level), out_(out), content_(content) {}
  using NodeVisitor::visit;
  void visit(Glyph& node) override { take(node, CompareLevel::Glyph); }
  void visit(Word& node) override { take(node, CompareLevel::Word); }
  void visit(Line& node) override { take(node, CompareLevel::Line); }
  void visit(Fragment& node) override {
    content_.extend(node.rect());
    NodeVisitor::visit(static_cast<Node&>(node));
  }

private:
  void take(Fragment& node, CompareLevel level) {
    content_.extend(node.rect());
    if (level == level_) out_.push_back(&node);
    NodeVisitor::visit(static_cast<Node&>(node));
  }

  CompareLevel level_;
  std::vector<Node*>& out_;
  ContentBox& content_;
};

class PageCollector : public NodeVisitor {
public:
  explicit PageCollector(std::vector<Node*>& out) : out_(out) {}
  using NodeVisitor::visit;
  void visit(Page& node) override {
    out_.push_back(&node);
    NodeVisitor::visit(static_cast<Node&>(node));
  }

private:
  std::vector<Node*>& out_;
};

}  // namespace

CompareLevel levelOf(const Node& node) {
  switch (node.nodeClass()) {
    case NodeClass::Glyph:
      return CompareLevel::Glyph;
    case NodeClass::Word:
      return CompareLevel::Word;
    case NodeClass::Line:
      return CompareLevel::Line;
    default:
      return CompareLevel::None;
  }
}

void collectLevelNodes(Node& start, CompareLevel level, std::vector<Node*>& out) {
  if (level == CompareLevel::None) return;
  LevelCollector collector(level, out);
  start.accept(collector);
}

void scanPage(Node& page, CompareLevel level, std::vector<Node*>& out, ContentBox& content) {
  PageScanner scanner(level, out, content);
  page.accept(scanner);
}

void collectPages(Node& start, std::vector<Node*>& out) {
  PageCollector collector(out);
  start.accept(collector);
}

}  // namespace qent::text::layout::comparison
