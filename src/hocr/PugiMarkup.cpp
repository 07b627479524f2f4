// PugiMarkup.cpp - MarkupTree over pugixml's DOM.
#include "hocr/PugiMarkup.h"

namespace qent::text::hocr {

namespace {

pugi::xml_node node(MarkupTree::Element element) {
  return pugi::xml_node(static_cast<pugi::xml_node_struct*>(const_cast<void*>(element)));
}

MarkupTree::Element handle(const pugi::xml_node& node) { return node.internal_object(); }

pugi::xml_node elementFrom(pugi::xml_node node) {
  while (node && node.type() != pugi::node_element) node = node.next_sibling();
  return node;
}

}  // namespace

PugiMarkup::PugiMarkup(std::string_view utf8)
    : parsed_(document_.load_buffer(utf8.data(), utf8.size(), pugi::parse_default,
                                    pugi::encoding_utf8)) {}

PugiMarkup::PugiMarkup(std::string& buffer)
    : parsed_(document_.load_buffer_inplace(buffer.data(), buffer.size(), pugi::parse_default,
                                            pugi::encoding_utf8)) {}

MarkupTree::Element PugiMarkup::html() const { return handle(document_.child("html")); }

MarkupTree::Element PugiMarkup::firstChild(Element parent) const {
  return handle(elementFrom(node(parent).first_child()));
}

MarkupTree::Element PugiMarkup::nextSibling(Element element) const {
  return handle(elementFrom(node(element).next_sibling()));
}

std::string_view PugiMarkup::name(Element element) const { return node(element).name(); }

void PugiMarkup::attributes(Element element, std::vector<MarkupAttribute>& out) const {
  out.clear();
  for (pugi::xml_attribute a = node(element).first_attribute(); a; a = a.next_attribute()) {
    out.push_back({a.name(), a.value()});
  }
}

std::string_view PugiMarkup::attribute(Element element, std::string_view name) const {
  for (pugi::xml_attribute a = node(element).first_attribute(); a; a = a.next_attribute()) {
    if (name == a.name()) return a.value();
  }
  return {};
}

std::string_view PugiMarkup::directText(Element element) const {
  return node(element).child_value();
}

std::ptrdiff_t PugiMarkup::offset(Element element) const {
  // pugixml places an element at its name; the "<" is one byte before.
  const std::ptrdiff_t at = node(element).offset_debug();
  return at > 0 ? at - 1 : at;
}

}  // namespace qent::text::hocr
