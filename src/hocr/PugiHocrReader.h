// PugiHocrReader.h - builds a layout tree from an hOCR document with the pugixml DOM.
#pragma once

#include "hocr/HocrProperties.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace pugi {
class xml_node;
}

namespace qent::text::layout {
class Layout;
class Node;
class Fragment;
class Image;
}  // namespace qent::text::layout

namespace qent::text::hocr {

// Reads one hOCR (XHTML) document into a newly owned Layout (format code 1). One element
// becomes one node: "ocr_page" a Page, "ocr_line" a Line, "ocrx_word" a Word, any other
// element with a bbox a Box named after its class, the rest Content nodes. Every title and
// style property is kept as a node attribute under its hOCR key; the recognised ones are
// also converted into the node's typed fields.
//
// Bad input fails the whole read (no partial layout) with:
//   - QentException 20001 "No HOCR file found", "HOCR parsing error", "Unsupported node
//     name for HOCRReader: ..." or "Unsupported node name with class ... for HOCRReader: ...",
//     and our own 20001 messages for nesting deeper than kMaxLayoutDepth, invalid UTF-8
//     and an odd number of poly values (each naming the element and its byte offset);
//   - std::invalid_argument "Width or Height of Rectangle must be > 0" on a bbox whose size
//     overflows, and the standard conversion errors ("invalid stod argument", ...) on a
//     property that is not a number.
// A reader object is meant for one read; read() may be called again and starts afresh.
class PugiHocrReader {
public:
  PugiHocrReader();
  ~PugiHocrReader();
  PugiHocrReader(const PugiHocrReader&) = delete;
  PugiHocrReader& operator=(const PugiHocrReader&) = delete;

  std::unique_ptr<layout::Layout> read(std::string_view utf8);
  // The same, parsing inside `utf8` itself, which is left changed: for a caller that reads
  // a file only to parse it, this spares pugixml's copy of the whole text.
  std::unique_ptr<layout::Layout> readInPlace(std::string& utf8);

private:
  using Element = pugi::xml_node;
  enum class Kind : std::uint8_t { Page, Line, Word, Box, Container };
  // An element whose node is built: what was read before its children, and where the
  // walk over its children stands.
  struct Open;

  // The tree below `element`, walked with an explicit stack: a document nested as deep as
  // the limit allows costs heap, not the caller's stack.
  std::unique_ptr<layout::Node> readTree(const Element& element);
  // Reads what comes before the element's children: the checks, the node of its class, its
  // attributes.
  Open openElement(const Element& element, std::size_t depth);
  // Reads what comes after the element's children.
  void finishElement(Open& open);
  void finishFragment(layout::Fragment& fragment, const Element& element,
                      PropertyMap& properties);
  void readAttributes(layout::Node& node, const Element& element,
                      const PropertyMap& properties);

  // One property map per nesting level, reused from element to element.
  PropertyMap& propertiesAt(std::size_t depth);

  std::int32_t pageCounter_ = 0;
  std::map<std::u16string, layout::Image*> images_;
  std::vector<std::unique_ptr<PropertyMap>> propertyMaps_;
};

}  // namespace qent::text::hocr
