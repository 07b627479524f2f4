// HocrFields.h - conversions of hOCR property texts into typed layout fields, shared by the
// reader (which applies them) and the writer (which checks that a stored text reads back as
// the field it is about to write).
#pragma once

#include "layout/Fragment.h"

#include <optional>
#include <string_view>
#include <vector>

namespace qent::text::hocr {

// A fragment's bbox "x0 y0 x1 y1": corners in either order are normalised; a size beyond
// 32 bits throws std::invalid_argument("Width or Height of Rectangle must be > 0").
layout::Rect readFragmentBbox(std::string_view value);
// A page's bbox gives only its size, x1 - x0 and y1 - y0 wrapped into 32 unsigned bits.
std::pair<std::uint32_t, std::uint32_t> readPageSize(std::string_view value);
std::vector<double> readBaseline(std::string_view value);
// nullopt when the value holds an odd number of numbers.
std::optional<std::vector<layout::Point>> readPoly(std::string_view value);

// Applies one font or colour property as the reader does (an empty value sets nothing).
// Returns false for keys that are not such properties.
bool applyStyleProperty(layout::Fragment& fragment, std::string_view key, std::string_view value);

// The style keys in the order the reader takes them.
inline constexpr std::string_view kStyleKeys[] = {"font-family", "font-style", "font-weight",
                                                  "font-size",   "color",      "background-color"};

}  // namespace qent::text::hocr
