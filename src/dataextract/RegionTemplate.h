// RegionTemplate.h - named rectangles with page selections and keywords, read from the
// region template JSON.
#pragma once

#include "dataextract/PageSelection.h"

#include <string>
#include <string_view>
#include <vector>

namespace qent::dataextract {

enum class RegionUnit { Pixel, Permille };

struct RegionTemplate {
  std::string name;  // UTF-8, as written
  PageSelection pages;
  // In pixels, or in thousandths of the page's width (left, width) and height (top, height).
  double left = 0;
  double top = 0;
  double width = 0;
  double height = 0;
  RegionUnit unit = RegionUnit::Pixel;
  std::vector<std::string> keywords;  // UTF-8, as written
};

// Reads {"regions":[{"name":..., "pages":..., "left":..., "top":..., "width":...,
// "height":..., "unit":..., "keywords":[...]}, ...]}. Every fault (not JSON, a missing or
// wrong member, a negative or empty size, an unknown unit or member, a bad page selection,
// a name used twice) throws QentException 20020 naming the region and the member.
std::vector<RegionTemplate> parseRegionTemplates(std::string_view json);

}  // namespace qent::dataextract
