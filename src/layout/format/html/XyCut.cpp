// XyCut.cpp - recursive XY-cut on area rectangles, run with an explicit work list.
#include "layout/format/html/XyCut.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace qent::text::layout::format::html {

namespace {

using Bounds = XyCut::Bounds;

struct Axis {
  std::int64_t Bounds::*start;
  std::int64_t Bounds::*end;
};
constexpr Axis kVertical{&Bounds::top, &Bounds::bottom};
constexpr Axis kHorizontal{&Bounds::left, &Bounds::right};

// The members in bands along the axis, each band in axis order; one band when the axis
// offers no cut.
std::vector<std::vector<std::size_t>> bands(const std::vector<Bounds>& areas,
                                            std::vector<std::size_t> members, Axis axis) {
  std::stable_sort(members.begin(), members.end(), [&](std::size_t a, std::size_t b) {
    return areas[a].*axis.start < areas[b].*axis.start;
  });
  std::vector<std::vector<std::size_t>> out;
  std::int64_t bandEnd = 0;
  std::int64_t bandEndSize = 0;  // the size of the area that reaches furthest
  for (const std::size_t index : members) {
    const Bounds& area = areas[index];
    const std::int64_t size = area.*axis.end - area.*axis.start;
    // Compared in tenths, in integers: start >= end - 0.1 * min(size, bandEndSize).
    if (out.empty() || 10 * (area.*axis.start) >= 10 * bandEnd - std::min(size, bandEndSize)) {
      out.emplace_back();
      bandEnd = area.*axis.end;
      bandEndSize = size;
    } else if (area.*axis.end > bandEnd) {
      bandEnd = area.*axis.end;
      bandEndSize = size;
    }
    out.back().push_back(index);
  }
  return out;
}

}  // namespace

void XyCut::Bounds::include(const Bounds& other) {
  left = std::min(left, other.left);
  top = std::min(top, other.top);
  right = std::max(right, other.right);
  bottom = std::max(bottom, other.bottom);
}

std::vector<XyCut::Cell> XyCut::cut(const std::vector<Bounds>& areas) {
  std::vector<Cell> cells;
  if (areas.empty()) return cells;
  auto addCell = [&](std::vector<std::size_t> members) {
    Cell cell;
    cell.bounds = areas[members.front()];
    for (const std::size_t index : members) cell.bounds.include(areas[index]);
    cell.parts = std::move(members);
    cells.push_back(std::move(cell));
    return cells.size() - 1;
  };
  std::vector<std::size_t> all(areas.size());
  for (std::size_t i = 0; i < all.size(); ++i) all[i] = i;
  addCell(std::move(all));

  std::vector<std::pair<std::size_t, std::size_t>> work{{0, 0}};  // cell, depth
  while (!work.empty()) {
    const auto [index, depth] = work.back();
    work.pop_back();
    std::vector<std::size_t> members = std::move(cells[index].parts);
    std::vector<std::vector<std::size_t>> groups;
    Kind kind = Kind::Stack;
    if (members.size() > 1 && depth < kMaxDepth) {
      groups = bands(areas, members, kVertical);
      kind = Kind::Rows;
      if (groups.size() < 2) {
        groups = bands(areas, members, kHorizontal);
        kind = Kind::Columns;
      }
    }
    if (groups.size() < 2) {
      std::sort(members.begin(), members.end(), [&](std::size_t a, std::size_t b) {
        // Equal corners keep document order.
        return std::tuple(areas[a].top, areas[a].left, a) < std::tuple(areas[b].top, areas[b].left, b);
      });
      cells[index].kind = Kind::Stack;
      cells[index].parts = std::move(members);
      continue;
    }
    std::vector<std::size_t> parts;
    for (std::vector<std::size_t>& group : groups) {
      const std::size_t part = addCell(std::move(group));
      parts.push_back(part);
      work.emplace_back(part, depth + 1);
    }
    cells[index].kind = kind;
    cells[index].parts = std::move(parts);
  }
  return cells;
}

}  // namespace qent::text::layout::format::html
