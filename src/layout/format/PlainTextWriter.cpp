// PlainTextWriter.cpp - the plain reading text of a layout.
#include "layout/format/PlainTextWriter.h"

#include "layout/Layout.h"
#include "layout/NodeClass.h"
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

void PlainTextWriter::separate(const Node& node) {
  // Only a line without text lets its children be visited, so any line parent is one.
  const Node* parent = walkParent();
  if (parent != nullptr && isA<Line>(*parent) && parent->children().front().get() != &node) {
    out_ += u' ';
  }
}

void PlainTextWriter::visit(Line& line) {
  separate(line);
  if (line.text().empty()) {
    NodeVisitor::visit(static_cast<Node&>(line));  // leave() ends the line
    return;
  }
  out_ += line.text();
  out_ += u'\n';
}

void PlainTextWriter::leave(Node& node) {
  if (isA<Line>(node)) out_ += u'\n';
}

void PlainTextWriter::visit(Node& node) {
  separate(node);
  NodeVisitor::visit(node);
}

void PlainTextWriter::visit(Fragment& fragment) {
  separate(fragment);
  if (!fragment.text().empty()) {
    out_ += fragment.text();
    return;
  }
  NodeVisitor::visit(static_cast<Node&>(fragment));
}

void PlainTextWriter::visit(Page& page) {
  separate(page);
  if (firstPage_) {
    firstPage_ = false;
  } else {
    out_ += u'\f';
  }
  NodeVisitor::visit(static_cast<Node&>(page));
}

void PlainTextWriter::visit(Content& content) {
  separate(content);
  out_ += content.text();
  NodeVisitor::visit(static_cast<Node&>(content));
}

}  // namespace qent::text::layout::format
