// NodeVisitor.h - the double-dispatch visitor over layout nodes that every writer and copier
// derives from.
#pragma once

namespace qent::text::layout {

class Node;
class Page;
class Image;
class Content;
class Fragment;
class Box;
class Line;
class Word;
class Glyph;
class Picture;
class Field;

// Defaults: the fragment kinds forward to visit(Fragment&), Fragment, Page, Image and Content
// forward to visit(Node&), and visit(Node&) lets every child accept the visitor in order and
// then calls leave(node). A visitor that overrides nothing walks the whole subtree, parent
// before children, and does nothing; an override that still wants the children visited
// calls NodeVisitor::visit(Node&) as its last step, and puts what must follow the children
// into leave(). Derived visitors should say `using NodeVisitor::visit;` so the overloads stay
// visible.
//
// The walk does not recurse, so a tree of any depth costs heap, not stack: within a walk,
// NodeVisitor::visit(Node&) for the node being visited only asks for its children, and the
// walk takes them once the visit has returned. Called for any other node (the first visit of
// an accept(), or a node a visitor lets accept it by hand) it runs that node's walk at once.
class NodeVisitor {
public:
  NodeVisitor() = default;
  // A copy starts outside any walk.
  NodeVisitor(const NodeVisitor&) {}
  NodeVisitor& operator=(const NodeVisitor&) { return *this; }
  virtual ~NodeVisitor();

  virtual void visit(Picture& node);
  virtual void visit(Glyph& node);
  virtual void visit(Word& node);
  virtual void visit(Line& node);
  virtual void visit(Field& node);
  virtual void visit(Box& node);
  virtual void visit(Fragment& node);
  virtual void visit(Page& node);
  virtual void visit(Image& node);
  virtual void visit(Content& node);
  virtual void visit(Node& node);
  // Runs after the children of a node whose visit reached NodeVisitor::visit(Node&) have all
  // been visited (also when it has none). The default does nothing.
  virtual void leave(Node& node);

protected:
  // While a walk visits a node: the node whose child it is. Null for the node an accept()
  // started at.
  Node* walkParent() const;

private:
  struct Walk;
  Walk* walk_ = nullptr;
};

}  // namespace qent::text::layout
