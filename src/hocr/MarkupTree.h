// MarkupTree.h - the few questions the hOCR reader asks of a parsed HTML document.
//
// The tolerant reading walks the tree of a document that is not XML (gumbo's) through this
// interface and hands its elements, attributes and first texts to the tree builder as the
// XML reader's events would; MarkupAttribute is what both hand over.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace qent::text::hocr {

struct MarkupAttribute {
  std::string_view name;
  std::string_view value;
};

// A parsed document, borrowed by the reader for one read. Elements are opaque handles into
// the parser's own tree; null stands for "no element", and every question about null has
// the empty answer (no name, no children, no attributes). Views
// handed out point into the parser's tree and live as long as it.
class MarkupTree {
public:
  using Element = const void*;

  virtual ~MarkupTree() = default;

  // The document's first top-level element named "html"; null when there is none.
  virtual Element html() const = 0;
  // Child and sibling elements in document order; text, comments and the like are skipped.
  virtual Element firstChild(Element parent) const = 0;
  virtual Element nextSibling(Element element) const = 0;
  virtual std::string_view name(Element element) const = 0;
  // Replaces `out` with the element's attributes in document order.
  virtual void attributes(Element element, std::vector<MarkupAttribute>& out) const = 0;
  // The value of the first attribute so named; empty when there is none.
  virtual std::string_view attribute(Element element, std::string_view name) const = 0;
  // The element's first text child, entities expanded; text that is only white space (the
  // indentation between elements) is no text. Empty when there is none.
  virtual std::string_view directText(Element element) const = 0;
  // Byte offset of the element's "<" in the parsed text, for messages.
  virtual std::ptrdiff_t offset(Element element) const = 0;
};

}  // namespace qent::text::hocr
