// PugiHocrReader.h - builds a layout tree from an hOCR document with the pugixml DOM.
#pragma once

#include "hocr/HocrProperties.h"
#include "hocr/MarkupTree.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

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
//
// The tolerant dialect reads hOCR as real engines write it, where the strict one refuses it
// or keeps ids as text:
//   - "ocr_header", "ocr_caption" and "ocr_textfloat" (on any element) are lines that keep
//     their class in the attribute "class"; "ocrx_cinfo" is a glyph (text, bbox, x_conf as
//     its confidence) of the word around it;
//   - any hOCR class may sit on any element, and an element named like a class is read as
//     any other; a class of several tokens is dispatched by its first hOCR token;
//   - no element id becomes a node's text, so the text of a box is only its own;
//   - "<html" is found in any case, and a document that is not XML is parsed as HTML
//     (GumboMarkup) and read by the same rules.
// A reader object is meant for one read; read() may be called again and starts afresh.
class PugiHocrReader {
public:
  enum class Dialect : std::uint8_t { Strict, Tolerant };

  explicit PugiHocrReader(Dialect dialect = Dialect::Strict);
  ~PugiHocrReader();
  PugiHocrReader(const PugiHocrReader&) = delete;
  PugiHocrReader& operator=(const PugiHocrReader&) = delete;

  std::unique_ptr<layout::Layout> read(std::string_view utf8);
  // The same, parsing inside `utf8` itself, which is left changed: for a caller that reads
  // a file only to parse it, this spares pugixml's copy of the whole text.
  std::unique_ptr<layout::Layout> readInPlace(std::string& utf8);

private:
  using Element = MarkupTree::Element;
  enum class Kind : std::uint8_t { Page, Line, Word, Glyph, Box, Container };
  // An element whose node is built: what was read before its children, and where the
  // walk over its children stands.
  struct Open;

  // The tree below `element`, walked with an explicit stack: a document nested as deep as
  // the limit allows costs heap, not the caller's stack.
  std::unique_ptr<layout::Layout> readDocument(const MarkupTree& tree);
  std::unique_ptr<layout::Node> readTree(Element element);
  // Reads what comes before the element's children: the checks, the node of its class, its
  // attributes.
  Open openElement(Element element, std::size_t depth);
  // Reads what comes after the element's children.
  void finishElement(Open& open);
  void finishFragment(layout::Fragment& fragment, Element element, PropertyMap& properties);
  // `keepClass`: store the class attribute even when it names an hOCR class.
  void readAttributes(layout::Node& node, Element element, const PropertyMap& properties,
                      bool keepClass);
  // What the dispatch goes by: the class (its first hOCR token in the tolerant dialect), or
  // the element's name when it has no class attribute.
  std::string_view dispatchKey(Element element) const;

  // "element <div> at offset 212", for messages.
  std::string where(Element element) const;
  // UTF-8 from the document as wide text; invalid UTF-8 fails naming the element.
  std::u16string wide(std::string_view text, Element element) const;

  // One property map per nesting level, reused from element to element.
  PropertyMap& propertiesAt(std::size_t depth);

  const Dialect dialect_;
  const MarkupTree* tree_ = nullptr;  // the document of the read in progress
  std::vector<MarkupAttribute> attributes_;  // of the element being opened
  std::int32_t pageCounter_ = 0;
  std::map<std::u16string, layout::Image*> images_;
  std::vector<std::unique_ptr<PropertyMap>> propertyMaps_;
};

}  // namespace qent::text::hocr
