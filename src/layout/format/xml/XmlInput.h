// XmlInput.h - what the ALTO and PAGE readers share: telling the two by their root element,
// parsing with a clear error, and reading attributes of an element with errors that say
// where.
#pragma once

#include "layout/Fragment.h"

#include <pugixml.hpp>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace qent::text::layout::format::xml {

// The local name (any prefix taken off) of the document's root element, found by skipping
// the XML declaration, comments, processing instructions and a DOCTYPE; empty when the text
// does not start like XML. Reads only the prolog, so sniffing a large file costs nothing.
std::string_view rootElementName(std::string_view text);

// An element's name without its namespace prefix: readers match "pc:TextLine" and
// "TextLine" alike, since the namespace is checked once at the root.
std::string_view localName(const pugi::xml_node& node);

// Parses and checks one document of a format (title "ALTO" or "PAGE" in messages). Every
// failure is a QentException 20001 whose message starts with the title and names the
// offending element and its byte offset.
class XmlInput {
public:
  // Parses `buffer` in place (it is left changed); malformed XML is refused with pugixml's
  // description and the offset.
  XmlInput(std::string& buffer, const char* title);

  const pugi::xml_document& document() const { return document_; }

  [[noreturn]] void fail(const pugi::xml_node& node, std::string_view what) const;
  [[noreturn]] void fail(std::string_view what) const;

  std::u16string wide(std::string_view utf8, const pugi::xml_node& node) const;
  // A decimal number (sign, fraction, exponent), finite; anything else fails.
  double number(const pugi::xml_node& node, const char* attribute) const;
  // The same for an attribute of the node already found.
  double number(const pugi::xml_node& node, const pugi::xml_attribute& attribute) const;
  // A pixel coordinate: the number times `scale`, rounded, within 32 bits.
  std::int32_t pixels(double value, double scale, const pugi::xml_node& node,
                      const char* attribute) const;
  // Points written "x,y x,y ..." or "x y x y ...", scaled to pixels.
  std::vector<Point> points(const pugi::xml_node& node, const char* attribute, double scale) const;
  // The element's attributes as node attributes, except those in `skip` (the ones read
  // into fields), so that whatever has no field survives.
  void keepAttributes(const pugi::xml_node& element, Node& node,
                      std::initializer_list<std::string_view> skip) const;

private:
  pugi::xml_document document_;
  const char* title_;
};

// The bounding rectangle of points, in the convention of the library's rectangles: right
// and bottom edges exclusive, so the corners (l,t) and (l+w,t+h) give back the rectangle.
Rect boundingRect(const std::vector<Point>& points);

}  // namespace qent::text::layout::format::xml
