// PageXmlReader.h - builds a layout tree from a PAGE XML document (2013 to 2019).
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace qent::text::layout {
class Layout;
}

namespace qent::text::layout::format {

// Reads one PAGE document (root <PcGts> in the 2013-07-15, 2017-07-15, 2018-07-15 or
// 2019-07-15 namespace, any prefix) into a newly owned Layout (format code 6):
//   - Page a Page (imageWidth, imageHeight) with an Image naming imageFilename; ImageRegion
//     a Picture; every other region (TextRegion, TableRegion, SeparatorRegion, ...) a Box
//     named after its element; TextLine a Line (Baseline points kept as the attribute
//     "Baseline"); Word a Word; Glyph a Glyph.
//   - Coords points become the polygon and its bounding rectangle (legacy Point children
//     are read too).
//   - Text (Unicode, else PlainText) and confidence come from the TextEquiv with the lowest
//     index (else the first);
//     conf (0 to 1) becomes a confidence on the library's 0 to 100 scale.
//   - Text lives at the deepest level that holds it: a line whose words have text keeps its
//     own TextEquiv as the attribute "TextEquiv", likewise regions and words with glyphs, so
//     a node reads as its text once, whichever level compares it.
//   - ReadingOrder orders the regions it names, at every level (a table's cells too);
//     regions it leaves out follow in document order.
//   - Metadata: Creator is the layout's producer; Created and LastChange stay on the root.
//   - Every attribute without a field stays a node attribute under its own name.
// Bad input fails the whole read with a QentException 20001 that starts with "PAGE: " and
// names the element and its byte offset: malformed XML, a root in another namespace, a
// region, line, word or glyph without Coords, points that are not numbers or out of range,
// a negative image size, a confidence outside 0 to 1, invalid UTF-8, nesting deeper than
// kMaxLayoutDepth. The walk keeps its path on the heap.
class PageXmlReader {
public:
  std::unique_ptr<Layout> read(std::string_view utf8);
  // The same, parsing inside `utf8` itself, which is left changed.
  std::unique_ptr<Layout> readInPlace(std::string& utf8);
};

}  // namespace qent::text::layout::format
