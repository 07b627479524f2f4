// PugiHocrReader.h - builds a layout tree from an hOCR document.
#pragma once

#include "base/FileIo.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace qent::text::layout {
class Layout;
}

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
//
// The XML is read as a stream of events (XmlEventReader, pugixml's parsing rules without its
// tree), so the document is never held twice; HocrTreeBuilder turns the events into nodes.
class PugiHocrReader {
public:
  enum class Dialect : std::uint8_t { Strict, Tolerant };

  explicit PugiHocrReader(Dialect dialect = Dialect::Strict) : dialect_(dialect) {}

  std::unique_ptr<layout::Layout> read(std::string_view utf8);
  // The same for a document given as its beginning and the source of the rest, read piece
  // by piece: a large file is never held whole beside its layout (the tolerant dialect
  // keeps what it reads, for the HTML parse it may need).
  std::unique_ptr<layout::Layout> readStream(std::string head, base::ByteSource& rest);

private:
  const Dialect dialect_;
};

}  // namespace qent::text::hocr
