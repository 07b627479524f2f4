// ReferenceZones.h - the zones of a reference page: the areas whose text the recognition is
// measured against.
//
// A zone is an area of the page (a Box or a Field with a rectangle) together with the text
// the reference gives for it. Every node of the compared level belongs to the innermost area
// around it in the tree, so nested areas (a table and its cells) never claim the same text;
// an area's text is the texts of its own level nodes in reading order, joined by one blank,
// or, when it has none, the area's own text (a form field holding its value). Areas without
// text are no zones. A page without any such area uses its level nodes with text as zones,
// each with its own text.
#pragma once

#include "layout/Rect.h"
#include "layout/comparison/Alignment.h"
#include "layout/comparison/CompareEnums.h"

#include <string>
#include <vector>

namespace qent::text::layout {
class Node;
}

namespace qent::text::layout::comparison::extraction {

struct Zone {
  const Node* node;
  Rect rect;            // reference coordinates; a zone without area receives nothing
  std::u16string text;  // never empty
};

// In document order of the zones' nodes. The same walk extends `content` by every
// fragment's rectangle, which the alignment needs (as contentBox does).
std::vector<Zone> referenceZones(Node& page, CompareLevel level, ContentBox& content);

// The text the comparison sees for a node of the compared level: the texts of the
// fragments of its subtree, itself included, then those of its contents.
std::u16string levelText(const Node& node);

}  // namespace qent::text::layout::comparison::extraction
