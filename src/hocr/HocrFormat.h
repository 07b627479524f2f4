// HocrFormat.h - constants of the hOCR format shared by the reader and the writer.
#pragma once

#include <cstdint>

namespace qent::text::hocr {

// Layout::format() of a layout read from hOCR.
inline constexpr std::uint32_t kHocrFormatCode = 1;

}  // namespace qent::text::hocr
