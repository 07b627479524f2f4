// Alignment.h - brings one page's coordinates onto another's before their rectangles are
// compared: the one alignment used by the layout comparison and the layout transformation.
//
// "Corner" translates the moving page so that the top-left corner of its content (the box
// around every fragment with geometry) lands on the top-left corner of the fixed page's
// content. "Center" scales by the ratio of the page sizes, when both pages state a size and
// the sizes differ, and translates so that the centres of the two content boxes coincide.
// "None", a page without content on either side, or a missing page leave coordinates as
// they are.
#pragma once

#include "layout/Rect.h"
#include "layout/comparison/CandidateMatching.h"
#include "layout/comparison/CompareEnums.h"

#include <cstdint>

namespace qent::text::layout {
class Node;
}

namespace qent::text::layout::comparison {

// x' = (x - fromX) * scaleX + toX, the same for y; results rounded to whole pixels.
class AlignmentTransform {
public:
  AlignmentTransform() = default;
  AlignmentTransform(double fromX, double fromY, double scaleX, double scaleY, double toX,
                     double toY);

  bool isIdentity() const;
  double scaleX() const { return scaleX_; }
  double scaleY() const { return scaleY_; }

  std::int64_t mapX(std::int64_t x) const;
  std::int64_t mapY(std::int64_t y) const;
  // Both corners mapped, so a scaled rectangle keeps its far edges in place.
  MatchRect map(const Rect& rect) const;
  // The same, clamped back into the 32-bit range of a layout rectangle.
  Rect mapRect(const Rect& rect) const;

private:
  double fromX_ = 0.0;
  double fromY_ = 0.0;
  double scaleX_ = 1.0;
  double scaleY_ = 1.0;
  double toX_ = 0.0;
  double toY_ = 0.0;
};

// The box around the rectangles of all fragments with geometry in a subtree.
struct ContentBox {
  bool empty = true;
  std::int64_t left = 0;
  std::int64_t top = 0;
  std::int64_t right = 0;
  std::int64_t bottom = 0;

  void extend(const Rect& rect);
};
ContentBox contentBox(Node& subtree);

// What the alignment needs to know of a page: its content box and its stated size (0 when
// the node is no page or states none).
struct PageFrame {
  ContentBox content;
  std::uint32_t width = 0;
  std::uint32_t height = 0;
};
PageFrame pageFrame(Node& page);
// The page size part of a frame; a node that is no Page has none.
void setPageSize(PageFrame& frame, const Node& page);

// How to map the coordinates of the page `moving` onto those of the page `fixed`. Either
// may be any node (the comparison's stand-in for a missing page has no content and yields
// the identity).
AlignmentTransform alignPages(Alignment alignment, Node& moving, Node& fixed);
// The same from frames that the caller gathered on its own walk over the pages.
AlignmentTransform alignFrames(Alignment alignment, const PageFrame& moving,
                               const PageFrame& fixed);

}  // namespace qent::text::layout::comparison
