// PlainTextWriter.h - the plain reading text of a layout: a line feed after each line,
// blanks between a line's words, form feeds between pages.
#pragma once

#include "layout/NodeVisitor.h"

#include <string>

namespace qent::text::layout {
class Layout;
}

namespace qent::text::layout::format {

// A visitor that collects text:
//   - a Line writes its own text when it has one, else its children with one blank between
//     two consecutive children; then a line feed;
//   - any other fragment (word, glyph, box, picture, field) writes its own text when it has
//     one and then skips its children, else visits them;
//   - a Page writes a form feed before every page but the first;
//   - a Content writes its text (if any) and visits its children.
// Text outside lines runs into what follows, without a line feed. The layout is borrowed for
// the call; the job encodes the wide result as UTF-8.
class PlainTextWriter : public NodeVisitor {
public:
  using NodeVisitor::visit;

  std::u16string write(const Layout& layout);
  // Lets the layout's root accept the writer.
  virtual void visit(Layout& layout);

  void visit(Line& line) override;
  void visit(Fragment& fragment) override;
  void visit(Page& page) override;
  void visit(Content& content) override;
  void visit(Node& node) override;
  void leave(Node& node) override;

private:
  // The blank before every child but the first of a line without text of its own.
  void separate(const Node& node);

  std::u16string out_;
  bool firstPage_ = true;
};

}  // namespace qent::text::layout::format
