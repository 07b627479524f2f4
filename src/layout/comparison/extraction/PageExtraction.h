// PageExtraction.h - measures the recognition of one page inside the zones of its reference
// page.
//
// The recognised page is first brought onto the reference page's coordinates with the
// comparison's alignment. Each recognised node of the compared level is then assigned to the
// zone that holds the largest share of its area (intersection / node area; ties go to the
// smaller zone, which is the more specific one, then to the earlier one). Without
// removeMatchingBoxes a node instead feeds every zone it overlaps. A node with less than half
// of its area in a zone it feeds is a partial segmentation error there: counted with
// partialSegmentationErrors, the characters outside the zone (its length times the share
// outside, rounded) added as errors; otherwise left out of that zone. A zone's text is the
// texts of its nodes in reading order joined by one blank; its errors are the edit distance
// to the reference text, or 0/1 for an exact match without editDistance (a partial node then
// makes the zone wrong); its count is the reference text's length, or 1.
#pragma once

#include "layout/comparison/ExtractionOptions.h"
#include "layout/comparison/extraction/ExtractionResult.h"

namespace qent::text::layout {
class Node;
}

namespace qent::text::layout::comparison::extraction {

// Either page may be null (no partner): a reference page alone gets its zones with nothing
// extracted, a recognised page alone counts every node of the level as wholly wrong. Throws
// QentException 20020 "Width or Height of Rectangle must be > 0" for a recognised node
// without area on a page that has a partner, as the layout comparison does.
PageResult extractPage(const ExtractionOptions& options, Node* mainPage, Node* referencePage);

}  // namespace qent::text::layout::comparison::extraction
