// ExtractionOptions.h - how the extraction comparison measures a recognition zone by zone.
#pragma once

#include "layout/comparison/CompareEnums.h"

#include <cstdint>

namespace qent::text::layout::comparison {

struct ExtractionOptions {
  CompareLevel level = CompareLevel::Line;
  bool editDistance = true;
  bool partialSegmentationErrors = true;
  // Main page i is measured against reference page i + pageOffset.
  std::int32_t pageOffset = 0;
  bool removeMatchingBoxes = true;
  Alignment alignment = Alignment::Corner;
};

}  // namespace qent::text::layout::comparison
