// Rect.h - the pixel rectangle of a layout node, and the checks for building one from input.
#pragma once

#include <cstdint>

namespace qent::text::layout {

struct Rect {
  std::int32_t left = 0;
  std::int32_t top = 0;
  std::int32_t width = 0;
  std::int32_t height = 0;

  // All four values 0 is the in-band mark for "this node has no geometry".
  bool hasGeometry() const { return left != 0 || top != 0 || width != 0 || height != 0; }
  // Exclusive right and bottom edges, widened so that they cannot overflow.
  std::int64_t right() const { return std::int64_t{left} + width; }
  std::int64_t bottom() const { return std::int64_t{top} + height; }

  friend bool operator==(const Rect&, const Rect&) = default;

  // For rectangles read from a file. A negative width or height throws
  // std::invalid_argument("Width or Height of Rectangle must be > 0"); zero is accepted
  // despite the wording, because files mark missing geometry with zeros.
  static Rect fromInput(std::int32_t left, std::int32_t top, std::int32_t width,
                        std::int32_t height);
  // For rectangles computed from other rectangles, where an empty side is a fault:
  // width <= 0 throws std::invalid_argument("Width of Rectangle must be > 0"),
  // height <= 0 throws std::invalid_argument("Height of Rectangle must be > 0").
  static Rect fromComputed(std::int32_t left, std::int32_t top, std::int32_t width,
                           std::int32_t height);
};

}  // namespace qent::text::layout
