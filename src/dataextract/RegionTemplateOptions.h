// RegionTemplateOptions.h - the region templates a layout is checked against.
#pragma once

#include <string>

namespace qent::dataextract {

struct RegionTemplateOptions {
  std::u16string regions;         // the template JSON text
  double overlapThreshold = 0.0;  // least overlap of a word with a region to count in it
  std::u16string outputFilename;  // receives the result JSON when set
};

}  // namespace qent::dataextract
