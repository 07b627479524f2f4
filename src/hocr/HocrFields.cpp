// HocrFields.cpp - conversions of hOCR property texts into typed layout fields.
#include "hocr/HocrFields.h"

#include "base/NumberConversion.h"
#include "base/Unicode.h"
#include "hocr/HocrProperties.h"

#include <algorithm>

namespace qent::text::hocr {

layout::Rect readFragmentBbox(std::string_view value) {
  // Engines write corners in either order; normalise instead of rejecting. Only a size
  // beyond 32 bits comes out negative (as 32-bit arithmetic would wrap it), and Rect
  // refuses that.
  const auto c = readFourIntegers(value);
  const std::int64_t left = std::min(c[0], c[2]);
  const std::int64_t top = std::min(c[1], c[3]);
  const auto width = static_cast<std::uint32_t>(std::max<std::int64_t>(c[0], c[2]) - left);
  const auto height = static_cast<std::uint32_t>(std::max<std::int64_t>(c[1], c[3]) - top);
  return layout::Rect::fromInput(static_cast<std::int32_t>(left), static_cast<std::int32_t>(top),
                                 static_cast<std::int32_t>(width),
                                 static_cast<std::int32_t>(height));
}

std::pair<std::uint32_t, std::uint32_t> readPageSize(std::string_view value) {
  const auto c = readFourIntegers(value);
  return {static_cast<std::uint32_t>(c[2]) - static_cast<std::uint32_t>(c[0]),
          static_cast<std::uint32_t>(c[3]) - static_cast<std::uint32_t>(c[1])};
}

std::vector<double> readBaseline(std::string_view value) {
  std::vector<double> coefficients;
  for (const std::string_view piece : splitAtSpace(value)) {
    coefficients.push_back(base::parseDouble(piece));
  }
  return coefficients;
}

std::optional<std::vector<layout::Point>> readPoly(std::string_view value) {
  const std::vector<std::string_view> pieces = splitAtSpace(trimHocrSpace(value));
  if (pieces.size() % 2 != 0) return std::nullopt;
  std::vector<layout::Point> points;
  points.reserve(pieces.size() / 2);
  for (std::size_t i = 0; i < pieces.size(); i += 2) {
    const std::int32_t x = base::parseInt(pieces[i]);
    points.push_back({x, base::parseInt(pieces[i + 1])});
  }
  return points;
}

bool applyStyleProperty(layout::Fragment& fragment, std::string_view key,
                        std::string_view value) {
  const bool known = std::find(std::begin(kStyleKeys), std::end(kStyleKeys), key) !=
                     std::end(kStyleKeys);
  if (!known || value.empty()) return known;
  if (key == "font-family") {
    fragment.setFontFamily(base::utf8ToUtf16(value));
  } else if (key == "font-style") {
    fragment.setFontStyle(fontStyleCode(value));
  } else if (key == "font-weight") {
    fragment.setFontWeight(fontWeightCode(value));
  } else if (key == "font-size") {
    fragment.setFontSize(base::parseDouble(value));
  } else if (const auto rgb = parseColor(value)) {
    const layout::Rgb color{(*rgb)[0], (*rgb)[1], (*rgb)[2]};
    if (key == "color") {
      fragment.setColor(color);
    } else {
      fragment.setBackgroundColor(color);
    }
  }
  return true;
}

}  // namespace qent::text::hocr
