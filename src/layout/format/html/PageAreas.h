// PageAreas.h - what an HTML page is made of: its areas with their rectangles, and the
// nodes without geometry that follow them as flowing text.
#pragma once

#include "layout/format/html/XyCut.h"

#include <cstdint>
#include <vector>

namespace qent::text::layout {
class Node;
}

namespace qent::text::layout::format::html {

// The nodes that stand for themselves when `start`'s subtree is looked into, in document
// order: wrappers without geometry or text of their own (generic nodes, Content without
// text, Image references) are looked through, everything else is taken whole. `start`
// itself is not taken. Walks without recursion.
std::vector<Node*> itemsBelow(Node& start);

// One area: a node of the page, or lines (or runs of words) that hang directly under the
// page, grouped as a reader would see them as one block.
struct Area {
  Node* node = nullptr;                  // null for a group of lines
  std::vector<std::vector<Node*>> lines;  // a group's lines: one Line, or the words of a line
  XyCut::Bounds bounds;
};

struct PageAreas {
  std::vector<Area> areas;
  std::vector<Node*> flow;         // items without geometry, in document order
  double medianLineHeight = 0;     // of the page's lines (of its words when it has none); 0 if none
};

// The areas and flow of the items of one page (itemsBelow of a page, or the items of a
// layout outside any page). Lines and words among the items are grouped: consecutive words
// whose boxes overlap vertically by half the smaller height form a line; consecutive lines
// form one area while the gap between them is at most the median line height and they
// overlap horizontally by 30 % of the narrower one. A rectangle without area counts as no
// geometry.
PageAreas collectAreas(const std::vector<Node*>& items);

}  // namespace qent::text::layout::format::html
