// LayoutTransformation.h - moves a layout's pages onto the coordinates of another layout's
// pages with the comparison's alignment, for as long as the object lives.
//
// Page i of the moving layout is aligned with page i + pageOffset of the fixed layout; pages
// without a counterpart stay as they are. Every fragment rectangle and polygon point of an
// aligned page is mapped; when the alignment scales, the page takes the fixed page's size.
// Destroying the object (or calling restore()) puts every changed value back, so a layout
// can be written transformed without being changed for good.
#pragma once

#include "layout/Fragment.h"
#include "layout/Rect.h"
#include "layout/comparison/CompareEnums.h"

#include <cstdint>
#include <vector>

namespace qent::text::layout {
class Layout;
class Page;
}  // namespace qent::text::layout

namespace qent::text::layout::comparison {

class LayoutTransformation {
public:
  LayoutTransformation(Layout& moving, Layout& fixed, Alignment alignment, std::int32_t pageOffset);
  ~LayoutTransformation();
  LayoutTransformation(const LayoutTransformation&) = delete;
  LayoutTransformation& operator=(const LayoutTransformation&) = delete;

  void restore();
  // The number of pages that were aligned with a page of the fixed layout.
  std::size_t alignedPages() const { return alignedPages_; }

private:
  struct SavedFragment {
    Fragment* fragment;
    Rect rect;
    std::vector<Point> polygon;
  };
  struct SavedPage {
    Page* page;
    std::uint32_t width;
    std::uint32_t height;
  };

  std::vector<SavedFragment> fragments_;
  std::vector<SavedPage> pages_;
  std::size_t alignedPages_ = 0;
};

}  // namespace qent::text::layout::comparison
