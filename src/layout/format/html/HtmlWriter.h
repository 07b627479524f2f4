// HtmlWriter.h - writes a layout as an HTML page that keeps the scan's columns and reading
// order, with selectable text that reflows.
#pragma once

#include "base/Sink.h"

#include <string>

namespace qent::text::layout {
class Layout;
}

namespace qent::text::layout::format::html {

// Writes polyglot XHTML5 (UTF-8): a document that XML and HTML parsers read into the same
// tree. Each page is a div.page; its areas (the page's geometric children, seen through
// wrappers without geometry; loose lines grouped into blocks) are ordered by an XY-cut
// into rows (div.row) of columns (div.col, width and left margin in percent of the
// enclosing box), so the page reads as the scan does: a heading over two columns first,
// then the left column, then the right one. Nodes without geometry follow in a last row.
// Inside an area, box kinds become headings, tables, lists and links; see NodeMarkup. Sizes,
// fonts, colours and gaps are reusable CSS classes in the head (CssBuilder).
//
// Content from outside any page forms pages of its own where it stands. No input is an
// error: a layout without root or pages gives an empty body. The body is held as text
// until the style sheet, which the head carries, is complete; the tree is walked once.
class HtmlWriter {
public:
  void write(const Layout& layout, base::Sink& sink);
  std::string write(const Layout& layout);
};

}  // namespace qent::text::layout::format::html
