// LayoutTransformation.cpp - page-wise alignment of a whole layout, with undo.
#include "layout/comparison/LayoutTransformation.h"

#include "layout/IteratorTemplate.h"
#include "layout/Layout.h"
#include "layout/Page.h"
#include "layout/comparison/Alignment.h"
#include "layout/comparison/LevelNodes.h"

#include <algorithm>
#include <limits>

namespace qent::text::layout::comparison {

namespace {

std::int32_t clampToInt32(std::int64_t value) {
  return static_cast<std::int32_t>(std::clamp<std::int64_t>(
      value, std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()));
}

std::vector<Node*> pagesOf(const Layout& layout) {
  std::vector<Node*> pages;
  if (layout.root() != nullptr) collectPages(*layout.root(), pages);
  return pages;
}

}  // namespace

LayoutTransformation::LayoutTransformation(Layout& moving, Layout& fixed, Alignment alignment,
                                           std::int32_t pageOffset) {
  const std::vector<Node*> movingPages = pagesOf(moving);
  const std::vector<Node*> fixedPages = pagesOf(fixed);
  for (std::size_t i = 0; i < movingPages.size(); ++i) {
    const std::int64_t target = static_cast<std::int64_t>(i) + pageOffset;
    if (target < 0 || target >= static_cast<std::int64_t>(fixedPages.size())) continue;
    auto& page = static_cast<Page&>(*movingPages[i]);
    const Node& fixedNode = *fixedPages[static_cast<std::size_t>(target)];
    const auto& fixedPage = static_cast<const Page&>(fixedNode);
    ++alignedPages_;
    const AlignmentTransform transform =
        alignPages(alignment, page, const_cast<Node&>(fixedNode));
    if (transform.isIdentity()) continue;
    for (IteratorTemplate<Fragment> it(&page); !it.atEnd(); ++it) {
      Fragment& fragment = *it;
      fragments_.push_back({&fragment, fragment.rect(), fragment.polygon()});
      fragment.setRect(transform.mapRect(fragment.rect()));
      if (fragment.polygon().empty()) continue;
      std::vector<Point> polygon = fragment.polygon();
      for (Point& point : polygon) {
        point.x = clampToInt32(transform.mapX(point.x));
        point.y = clampToInt32(transform.mapY(point.y));
      }
      fragment.setPolygon(std::move(polygon));
    }
    if (transform.scaleX() != 1.0 || transform.scaleY() != 1.0) {
      pages_.push_back({&page, page.width(), page.height()});
      page.setWidth(fixedPage.width());
      page.setHeight(fixedPage.height());
    }
  }
}

LayoutTransformation::~LayoutTransformation() { restore(); }

void LayoutTransformation::restore() {
  // Backwards: a fragment of a page nested in another page was saved twice, and its first
  // saved state is the original one.
  for (auto saved = fragments_.rbegin(); saved != fragments_.rend(); ++saved) {
    saved->fragment->setRect(saved->rect);
    saved->fragment->setPolygon(std::move(saved->polygon));
  }
  for (const SavedPage& saved : pages_) {
    saved.page->setWidth(saved.width);
    saved.page->setHeight(saved.height);
  }
  fragments_.clear();
  pages_.clear();
}

}  // namespace qent::text::layout::comparison
