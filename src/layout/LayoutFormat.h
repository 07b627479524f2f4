// LayoutFormat.h - the codes a Layout keeps of the format it was read from.
//
// The one place the codes are defined: each reader stamps its layouts with its code, and
// writers that must know where numbers came from (hOCR confidences of a cloud-OCR answer
// run from 0 to 1) ask for it.
#pragma once

#include <cstdint>

namespace qent::text::layout {

enum LayoutFormat : std::uint32_t {
  kFormatNone = 0,  // built in code, not read
  kFormatHocr = 1,
  kFormatWebAnno = 2,
  kFormatCloudOcr = 3,
  kFormatJsonLayout = 4,
  kFormatAlto = 5,
  kFormatPageXml = 6,
};

}  // namespace qent::text::layout
