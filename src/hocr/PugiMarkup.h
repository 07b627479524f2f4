// PugiMarkup.h - an XML document parsed by pugixml, seen through MarkupTree.
#pragma once

#include "hocr/MarkupTree.h"

#include <pugixml.hpp>

#include <string>
#include <string_view>

namespace qent::text::hocr {

// Parses on construction with pugixml's default options: entities and character references
// are expanded, and text that is only white space is not kept, so an element's direct text
// is its first real text. `parsed()` tells whether the text was well-formed XML; the tree is
// usable only then.
class PugiMarkup final : public MarkupTree {
public:
  explicit PugiMarkup(std::string_view utf8);
  // Parses inside `buffer`, which must outlive this object and is left changed.
  explicit PugiMarkup(std::string& buffer);

  const pugi::xml_parse_result& parsed() const { return parsed_; }

  Element html() const override;
  Element firstChild(Element parent) const override;
  Element nextSibling(Element element) const override;
  std::string_view name(Element element) const override;
  void attributes(Element element, std::vector<MarkupAttribute>& out) const override;
  std::string_view attribute(Element element, std::string_view name) const override;
  std::string_view directText(Element element) const override;
  std::ptrdiff_t offset(Element element) const override;

private:
  pugi::xml_document document_;
  pugi::xml_parse_result parsed_;
};

}  // namespace qent::text::hocr
