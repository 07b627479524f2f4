// XmlOutput.h - what the ALTO and PAGE writers share: unique XML ids, confidences on the
// formats' 0 to 1 scale, point lists.
#pragma once

#include "hocr/IdSet.h"
#include "layout/Fragment.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace qent::text::layout {
class Layout;
}

namespace qent::text::layout::format::xml {

// Hands out the ids of a document: a node's own id when it is a usable XML id (a name of
// ASCII letters, digits, "_", "-" and "." that starts with a letter or "_") not given out
// before, else a generated "<prefix>_<n>" that is not taken either.
class IdAssigner {
public:
  std::string idFor(std::u16string_view own, std::string_view prefix);

private:
  hocr::IdSet used_;
  std::size_t counter_ = 0;
};

// The factor from the layout's confidences to the 0 to 1 of ALTO and PAGE: the library
// keeps 0 to 100, except in layouts read from cloud-OCR JSON, which keep the service's
// 0 to 1.
double confidenceFactor(const Layout& layout);
// The stored confidence times the factor, clamped to 0 to 1, in the shortest text that
// reads back the same; empty when the fragment has none.
std::string confidenceText(const Fragment& fragment, double factor);

// "x,y x,y ..." with coordinates below 0 raised to 0 (PAGE and ALTO count from the page's
// corner).
std::string pointsText(const std::vector<Point>& points);
// The pages of the tree (the root counts when it is one); pages inside pages are not
// counted.
std::size_t countPages(Node& root);

// The rectangle's corners clockwise from the top left.
std::vector<Point> corners(const Rect& rect);

}  // namespace qent::text::layout::format::xml
