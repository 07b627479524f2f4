// AltoWriter.h - writes a layout as an ALTO 4.4 document.
#pragma once

#include "base/Sink.h"

#include <string>

namespace qent::text::layout {
class Layout;
}

namespace qent::text::layout::format {

// Streams a layout into the sink as ALTO 4.4 (pixel units) that validates against the
// ALTO 4.4 schema and that AltoReader reads back with the same pages, lines, words, glyphs,
// texts, rectangles and confidences.
//
// ALTO nests strictly (Page > PrintSpace > blocks > TextLine > String > Glyph) where the
// layout model nests freely, so the tree is fitted on the way: a Box holding other boxes or
// pictures is a ComposedBlock, any other Box a TextBlock (a childless box read from
// GraphicalElement stays one), a Picture an Illustration; lines and words found where a
// block or a line belongs are wrapped in a TextBlock or TextLine without id; a Box named
// PrintSpace right under its page gives the PrintSpace its rectangle; other nodes (Content,
// plain nodes) are looked through. Words are separated by SP; a word's "HYP" attribute is
// written as the HYP after it, its "ALTERNATIVE" attribute (tab-separated) as ALTERNATIVE
// elements, its font family and size as a TextStyle. A TextLine without words is written as
// one String with the line's text; a glyph that is not exactly one character (a letter with
// a combining mark) is left out, as ALTO's Glyph holds one, and its String keeps the whole
// text. Ids are kept when they are usable XML
// ids not used before, else generated (a Page always has one).
// A layout without a page is written as one page of size 0 holding what it has.
// Confidences (0 to 100 in the model) become WC and GC from 0 to 1. The walk keeps its
// path on the heap, so a deep tree costs no stack.
class AltoWriter {
public:
  void write(const Layout& layout, base::Sink& sink);
  std::string write(const Layout& layout);
};

}  // namespace qent::text::layout::format
