// CloudOcrReader.h - builds a layout tree from the JSON answer of a cloud text-recognition
// service (a full-text annotation of pages, blocks, paragraphs, words and symbols).
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

namespace qent::text::layout {
class Layout;
}

namespace qent::text::layout::format {

// Reads "fullTextAnnotation" of the top-level object, or else that of the first element of
// "responses" that has one, into root (Content "node") > Page (with an Image
// "picture.img") > Box "paragraph" (kind 25) > Line > Word > Glyph; blocks pass their
// paragraphs through. A paragraph's words are cut into lines after every word whose last
// symbol carries a detected break other than "SPACE"; a line's rectangle is the union of its
// words' and its confidence the sum of its words' positive confidences divided by its number
// of words. Words keep no text of their own: the text is in their glyphs. Every node the
// reader makes gets the next number of the read ("1", "2", ...) as its id, lines that stay
// empty included. Format code 3.
//
// The text is parsed into a RapidJSON document with the iterative parser and a depth limit,
// so deep nesting never reaches the stack. Members of the wrong kind count as absent.
//
// Failures (nothing of the layout is returned), QentException 20039 unless said otherwise:
//   "Incorrect format"  no annotation found, also when the text is not JSON at all (the
//       parser's reason and byte offset go to the trace log at error level)
//   "Incorrect format: values nested deeper than 512 levels"
//   "Incorrect format: <what>"  a number the layout cannot hold (a coordinate beyond 32 bits,
//       a page size that is negative or beyond 32 bits, a rectangle wider or higher than
//       2147483647) or a symbol "text" that is not valid Unicode
//   "Bounding box for a word is not found"  a word without an object "boundingBox"
class CloudOcrReader {
public:
  // Deepest nesting of JSON values accepted; real answers nest about twenty levels.
  static constexpr std::size_t kMaxJsonDepth = 512;

  // Each read numbers its nodes from 1 again.
  std::unique_ptr<Layout> read(std::string_view utf8);
};

}  // namespace qent::text::layout::format
