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
// forward to visit(Node&), and visit(Node&) lets every child accept the visitor in order. A
// visitor that overrides nothing walks the whole subtree, parent before children, and does
// nothing; an override that still wants the children visited calls NodeVisitor::visit(Node&).
// Derived visitors should say `using NodeVisitor::visit;` so the overloads stay visible.
class NodeVisitor {
public:
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
};

}  // namespace qent::text::layout
