// PlainTextWriter.cpp - the plain reading text of a layout.
#include "layout/format/PlainTextWriter.h"

#include "layout/Layout.h"
#include "layout/Nodes.h"

namespace qent::text::layout::format {

std::u16string PlainTextWriter::write(const Layout& layout) {
  out_.clear();
  firstPage_ = true;
  // The same as visit(Layout&), which a const layout cannot be handed to.
  if (Node* root = layout.root()) root->accept(*this);
  return std::move(out_);
}

void PlainTextWriter::visit(Layout& layout) {
  if (Node* root = layout.root()) root->accept(*this);
}

void PlainTextWriter::visit(Line& line) {
  if (!line.text().empty()) {
    out_ += line.text();
  } else {
    bool first = true;
    for (const auto& child : line.children()) {
      if (!first) out_ += u' ';
      first = false;
      child->accept(*this);
    }
  }
  out_ += u'\n';
}

void PlainTextWriter::visit(Fragment& fragment) {
  if (!fragment.text().empty()) {
    out_ += fragment.text();
    return;
  }
  NodeVisitor::visit(static_cast<Node&>(fragment));
}

void PlainTextWriter::visit(Page& page) {
  if (firstPage_) {
    firstPage_ = false;
  } else {
    out_ += u'\f';
  }
  NodeVisitor::visit(static_cast<Node&>(page));
}

void PlainTextWriter::visit(Content& content) {
  out_ += content.text();
  NodeVisitor::visit(static_cast<Node&>(content));
}

}  // namespace qent::text::layout::format
