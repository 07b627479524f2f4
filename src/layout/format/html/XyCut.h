// XyCut.h - the reading order of a page's areas: rows top to bottom, columns left to right.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace qent::text::layout::format::html {

// Cuts a set of rectangles into rows and columns, recursively, on the rectangles themselves
// (not on pixels): sorted by top, two neighbours fall into different rows when the next one
// starts at or below the bottom of the band so far, less a tolerance of a tenth of the
// smaller height (boxes drawn a little too large must not glue two rows together). When a
// set forms one row only, the same is tried across, for columns. Rows are tried first, so a
// heading over two columns comes first and the columns read left before right. A set that
// neither cut divides (overlapping rectangles) is a stack, read by top, then left.
//
// The cut is iterative: a crafted page cannot drive it into deep recursion. Beyond
// kMaxDepth nested cuts the rest is a stack: no real page nests so deep, and a browser
// lays out deeper nesting badly anyway.
class XyCut {
public:
  static constexpr std::size_t kMaxDepth = 32;

  // Edges widened to 64 bits; right and bottom are exclusive. Empty rectangles must be
  // left out by the caller.
  struct Bounds {
    std::int64_t left = 0;
    std::int64_t top = 0;
    std::int64_t right = 0;
    std::int64_t bottom = 0;
    std::int64_t width() const { return right - left; }
    std::int64_t height() const { return bottom - top; }
    void include(const Bounds& other);
    friend bool operator==(const Bounds&, const Bounds&) = default;
  };

  enum class Kind { Rows, Columns, Stack };

  // A Rows or Columns cell lists its parts as indices of cells, in reading order; a Stack
  // lists indices of areas (one area is a stack of one).
  struct Cell {
    Kind kind = Kind::Stack;
    Bounds bounds;
    std::vector<std::size_t> parts;
  };

  // The cells of the cut; the first is the whole set. No cell for no areas.
  static std::vector<Cell> cut(const std::vector<Bounds>& areas);
};

}  // namespace qent::text::layout::format::html
