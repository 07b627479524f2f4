// ReadingOrder.cpp - rows by vertical centre, then left to right.
#include "layout/comparison/extraction/ReadingOrder.h"

#include <algorithm>
#include <numeric>

namespace qent::text::layout::comparison::extraction {

std::vector<std::uint32_t> readingOrder(std::span<const MatchRect> rects) {
  std::vector<std::uint32_t> order(rects.size());
  std::iota(order.begin(), order.end(), 0u);
  std::stable_sort(order.begin(), order.end(), [&](std::uint32_t a, std::uint32_t b) {
    return rects[a].top < rects[b].top;
  });
  // Sorted by top, a centre is never above the row's top; doubled coordinates keep the
  // test in integers.
  auto inRow = [](const MatchRect& row, const MatchRect& r) {
    return r.top + r.bottom < 2 * row.bottom;
  };
  auto byLeft = [&](std::uint32_t a, std::uint32_t b) { return rects[a].left < rects[b].left; };
  for (auto rowStart = order.begin(); rowStart != order.end();) {
    const MatchRect& row = rects[*rowStart];
    auto rowEnd = std::next(rowStart);
    // The row ends at the first rectangle (by top) whose centre lies below it.
    while (rowEnd != order.end() && inRow(row, rects[*rowEnd])) ++rowEnd;
    std::stable_sort(rowStart, rowEnd, byLeft);
    rowStart = rowEnd;
  }
  return order;
}

std::u16string joinInReadingOrder(std::span<const MatchRect> rects,
                                  std::span<const std::u16string* const> texts) {
  std::u16string joined;
  for (const std::uint32_t i : readingOrder(rects)) {
    if (texts[i]->empty()) continue;
    if (!joined.empty()) joined += u' ';
    joined += *texts[i];
  }
  return joined;
}

}  // namespace qent::text::layout::comparison::extraction
