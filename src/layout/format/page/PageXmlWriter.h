// PageXmlWriter.h - writes a layout as a PAGE XML 2019 document.
#pragma once

#include "base/Sink.h"

#include <string>

namespace qent::text::layout {
class Layout;
}

namespace qent::text::layout::format {

// Streams a layout into the sink as PAGE 2019-07-15 that validates against its schema and
// that PageXmlReader reads back with the same pages, lines, words, glyphs, texts,
// rectangles and confidences.
//
// Regions are written flat, one after the other in reading order: a Box that holds lines or
// words is a TextRegion (or the PAGE region its name says, when it holds no text), a
// childless Box a region of its name (TextRegion when the name is no PAGE region), a
// Picture an ImageRegion; a Box that holds other boxes or pictures writes no element of its
// own and its children stand in its place. Lines and words found outside a region or line
// get a TextRegion or TextLine around them whose Coords enclose them. A polygon is written
// when its bounding box is the node's rectangle, else the rectangle's corners; coordinates
// below 0 become 0. Texts go into TextEquiv/Unicode at every level that holds them: a line
// without text of its own gets its words' texts joined by blanks. Confidences (0 to 100 in
// the model) become conf from 0 to 1. Ids are kept when they are usable XML ids not used
// before, else generated. Metadata Created and LastChange are the ones read from PAGE, else
// the time of writing (UTC). The walk keeps its path on the heap.
// A layout without a page is written as one page of size 0 holding what it has.
// PAGE holds one page: a layout of several pages is refused with a std::runtime_error
// before anything reaches the sink.
class PageXmlWriter {
public:
  void write(const Layout& layout, base::Sink& sink);
  std::string write(const Layout& layout);
};

}  // namespace qent::text::layout::format
