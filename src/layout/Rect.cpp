// Rect.cpp - rectangle validation.
#include "layout/Rect.h"

#include <stdexcept>

namespace qent::text::layout {

Rect Rect::fromInput(std::int32_t left, std::int32_t top, std::int32_t width,
                     std::int32_t height) {
  if (width < 0 || height < 0) {
    throw std::invalid_argument("Width or Height of Rectangle must be > 0");
  }
  return Rect{left, top, width, height};
}

Rect Rect::fromComputed(std::int32_t left, std::int32_t top, std::int32_t width,
                        std::int32_t height) {
  if (width <= 0) throw std::invalid_argument("Width of Rectangle must be > 0");
  if (height <= 0) throw std::invalid_argument("Height of Rectangle must be > 0");
  return Rect{left, top, width, height};
}

}  // namespace qent::text::layout
