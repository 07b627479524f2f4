// HocrFormat.h - constants of the hOCR format shared by the reader and the writer.
#pragma once

#include <cstdint>

namespace qent::text::hocr {

// Layout::format() of a layout read from hOCR.
inline constexpr std::uint32_t kHocrFormatCode = 1;
// Layout::format() of a layout read from cloud-OCR JSON, whose confidences run from 0 to 1
// where hOCR's run to 100.
inline constexpr std::uint32_t kCloudOcrFormatCode = 3;

}  // namespace qent::text::hocr
