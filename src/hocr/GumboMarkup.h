// GumboMarkup.h - an HTML document parsed by gumbo (the HTML5 parsing rules), seen through
// MarkupTree: the tolerant hOCR mode's way in for documents that are HTML but not XML.
#pragma once

#include "hocr/MarkupTree.h"

#include <memory>
#include <string_view>

namespace qent::text::hocr {

// Parses on construction; HTML parsing never fails, so every text gives a tree (with the
// html, head and body elements HTML implies). Before gumbo sees the text, its nesting is
// estimated from the tags, and a text nested deeper than kMaxLayoutDepth is refused with
// QentException 20001 naming the element and its offset: gumbo checks scopes by walking
// its stack of open elements, which would make a hostile document of a million nested
// elements take hours. The tree is freed without recursion, whatever its depth.
//
// Builds without gumbo (the Windows DLL: gumbo's source is not available to its build)
// refuse every text with QentException 20001 saying that the HTML fallback is not in this
// build; `available()` tells which.
class GumboMarkup final : public MarkupTree {
public:
  explicit GumboMarkup(std::string_view utf8);
  ~GumboMarkup() override;
  GumboMarkup(const GumboMarkup&) = delete;
  GumboMarkup& operator=(const GumboMarkup&) = delete;

  static bool available();

  Element html() const override;
  Element firstChild(Element parent) const override;
  Element nextSibling(Element element) const override;
  std::string_view name(Element element) const override;
  void attributes(Element element, std::vector<MarkupAttribute>& out) const override;
  std::string_view attribute(Element element, std::string_view name) const override;
  std::string_view directText(Element element) const override;
  std::ptrdiff_t offset(Element element) const override;

private:
  struct Parse;
  std::unique_ptr<Parse> parse_;
};

}  // namespace qent::text::hocr
