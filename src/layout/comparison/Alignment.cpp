// Alignment.cpp - corner and centre alignment of two pages.
#include "layout/comparison/Alignment.h"

#include "layout/Fragment.h"
#include "layout/IteratorTemplate.h"
#include "layout/Page.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace qent::text::layout::comparison {

namespace {

std::int32_t clampToInt32(std::int64_t value) {
  return static_cast<std::int32_t>(std::clamp<std::int64_t>(
      value, std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()));
}

std::int64_t roundToInt64(double value) {
  // Far beyond any page; keeps llround defined for absurd inputs.
  constexpr double kLimit = 4.0e18;
  return std::llround(std::clamp(value, -kLimit, kLimit));
}

// The ratio of the fixed page's size to the moving page's, 1 unless both are pages that
// state a size and the sizes differ.
double sizeRatio(std::uint32_t fixed, std::uint32_t moving) {
  if (fixed == 0 || moving == 0 || fixed == moving) return 1.0;
  return static_cast<double>(fixed) / static_cast<double>(moving);
}

}  // namespace

AlignmentTransform::AlignmentTransform(double fromX, double fromY, double scaleX, double scaleY,
                                       double toX, double toY)
    : fromX_(fromX), fromY_(fromY), scaleX_(scaleX), scaleY_(scaleY), toX_(toX), toY_(toY) {}

bool AlignmentTransform::isIdentity() const {
  return scaleX_ == 1.0 && scaleY_ == 1.0 && fromX_ == toX_ && fromY_ == toY_;
}

std::int64_t AlignmentTransform::mapX(std::int64_t x) const {
  return roundToInt64((static_cast<double>(x) - fromX_) * scaleX_ + toX_);
}

std::int64_t AlignmentTransform::mapY(std::int64_t y) const {
  return roundToInt64((static_cast<double>(y) - fromY_) * scaleY_ + toY_);
}

MatchRect AlignmentTransform::map(const Rect& rect) const {
  if (isIdentity()) return {rect.left, rect.top, rect.right(), rect.bottom()};
  return {mapX(rect.left), mapY(rect.top), mapX(rect.right()), mapY(rect.bottom())};
}

Rect AlignmentTransform::mapRect(const Rect& rect) const {
  if (isIdentity() || !rect.hasGeometry()) return rect;
  const MatchRect mapped = map(rect);
  Rect out;
  out.left = clampToInt32(mapped.left);
  out.top = clampToInt32(mapped.top);
  out.width = clampToInt32(mapped.right - out.left);
  out.height = clampToInt32(mapped.bottom - out.top);
  return out;
}

void ContentBox::extend(const Rect& rect) {
  if (!rect.hasGeometry()) return;
  if (empty) {
    *this = {false, rect.left, rect.top, rect.right(), rect.bottom()};
    return;
  }
  left = std::min<std::int64_t>(left, rect.left);
  top = std::min<std::int64_t>(top, rect.top);
  right = std::max(right, rect.right());
  bottom = std::max(bottom, rect.bottom());
}

ContentBox contentBox(Node& subtree) {
  ContentBox box;
  for (IteratorTemplate<Fragment> it(&subtree); !it.atEnd(); ++it) box.extend(it->rect());
  return box;
}

void setPageSize(PageFrame& frame, const Node& page) {
  if (const auto* asPage = dynamic_cast<const Page*>(&page)) {
    frame.width = asPage->width();
    frame.height = asPage->height();
  }
}

PageFrame pageFrame(Node& page) {
  PageFrame frame;
  frame.content = contentBox(page);
  setPageSize(frame, page);
  return frame;
}

AlignmentTransform alignPages(Alignment alignment, Node& moving, Node& fixed) {
  if (alignment != Alignment::Corner && alignment != Alignment::Center) return {};
  return alignFrames(alignment, pageFrame(moving), pageFrame(fixed));
}

AlignmentTransform alignFrames(Alignment alignment, const PageFrame& moving,
                               const PageFrame& fixed) {
  const ContentBox& from = moving.content;
  const ContentBox& to = fixed.content;
  if (from.empty || to.empty) return {};
  if (alignment == Alignment::Corner) {
    return AlignmentTransform(static_cast<double>(from.left), static_cast<double>(from.top), 1.0,
                              1.0, static_cast<double>(to.left), static_cast<double>(to.top));
  }
  if (alignment != Alignment::Center) return {};
  const double scaleX = sizeRatio(fixed.width, moving.width);
  const double scaleY = sizeRatio(fixed.height, moving.height);
  auto centre = [](std::int64_t low, std::int64_t high) {
    return (static_cast<double>(low) + static_cast<double>(high)) / 2.0;
  };
  return AlignmentTransform(centre(from.left, from.right), centre(from.top, from.bottom), scaleX,
                            scaleY, centre(to.left, to.right), centre(to.top, to.bottom));
}

}  // namespace qent::text::layout::comparison
