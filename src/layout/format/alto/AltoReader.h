// AltoReader.h - builds a layout tree from an ALTO document (versions 1 to 4).
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace qent::text::layout {
class Layout;
}

namespace qent::text::layout::format {

// Reads one ALTO document (root <alto> without namespace or in the v2, v3 or v4 namespace)
// into a newly owned Layout (format code 5):
//   - Page a Page (with an Image naming the source image of sourceImageInformation);
//     PrintSpace, the margins, ComposedBlock, TextBlock and GraphicalElement Boxes named
//     after their element; Illustration a Picture; TextLine a Line; String a Word;
//     Glyph a Glyph. SP is no node; HYP becomes the attribute "HYP" of the word before it;
//     ALTERNATIVE texts the word's attribute "ALTERNATIVE" (joined by tabs).
//   - WC and GC (0 to 1) become confidences on the library's 0 to 100 scale; STYLEREFS
//     (the element's own or its nearest ancestor's) name the font family and size;
//     Shape/Polygon becomes the polygon.
//   - Coordinates in mm10 or inch1200 are converted to pixels at 300 dpi (ALTO states no
//     resolution); the page keeps "MeasurementUnit" and "dpi" as attributes.
//   - A word's text lives at one level: on its glyphs when they spell it, else on the word
//     (the glyphs then keep theirs as the attribute "CONTENT"), so a word reads as its
//     text once, whichever level compares it.
//   - Every attribute without a field stays a node attribute under its own name.
// Bad input fails the whole read with a QentException 20001 that starts with "ALTO: " and
// names the element and its byte offset: malformed XML, a root in another namespace, an
// unknown MeasurementUnit, a coordinate that is not a number or out of range, a negative
// size, a position without its size, a confidence outside 0 to 1, invalid UTF-8, nesting
// deeper than kMaxLayoutDepth. The walk keeps its path on the heap.
class AltoReader {
public:
  std::unique_ptr<Layout> read(std::string_view utf8);
  // The same, parsing inside `utf8` itself, which is left changed.
  std::unique_ptr<Layout> readInPlace(std::string& utf8);
};

}  // namespace qent::text::layout::format
