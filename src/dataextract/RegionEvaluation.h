// RegionEvaluation.h - region templates evaluated on a layout: the words inside each
// region on each selected page, their text and the keywords found in it.
#pragma once

#include "dataextract/RegionTemplate.h"

#include <string>
#include <vector>

namespace qent::text::layout {
class Node;
}

namespace qent::dataextract {

// Returns the result JSON (members in ascending key order):
//   {"matched": bool, "regions": [{"confidence", "keywordsFound", "keywordsMissing", "name",
//    "page", "text", "words"}, ...]}
// with one entry per region and selected page, regions in template order, pages ascending.
// A word belongs to a region when the share of its area inside the region is at least
// `overlapThreshold` (0: any overlap at all); words without area belong to none.
// "matched" is true when every region with keywords found one of them on some page.
// Throws QentException 20020 for a threshold outside 0..1 and for a permille region on a
// page without a size. Reads the layout only.
std::string evaluateRegions(text::layout::Node& root, const std::vector<RegionTemplate>& regions,
                            double overlapThreshold);

}  // namespace qent::dataextract
