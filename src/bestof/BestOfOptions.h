// BestOfOptions.h - the raster, thresholds and page size of the Best-Of merge.
#pragma once

#include <cstdint>
#include <string>

namespace qent::bestof {

struct BestOfOptions {
  std::int32_t rasterFactorX = 1000;
  std::int32_t rasterFactorY = 1000;
  // 0: from the reference image, else the largest page.
  std::int32_t pageWidth = 0;
  std::int32_t pageHeight = 0;
  float overlapThreshold = 0.7f;  // at most 1.0
  float clusterAreaTolerance = 0.8f;
  float wordHeightFactor = 0.7f;
  float wordWidthFactor = 0.9f;
  float verticalConfidenceMin = 0.7f;
  float maxWordDistance = 2.0f;
  float maxLineHeightDeviation = 0.1f;
  bool equalizeLayouts = true;
  std::u16string referenceImageFilename;
  std::u16string traceDirectory;
};

}  // namespace qent::bestof
