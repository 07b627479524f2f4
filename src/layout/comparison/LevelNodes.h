// LevelNodes.h - finds the nodes of a comparison level, and the pages, by visiting the tree.
//
// The comparison walks every node of both documents; a visitor walk tests each node's
// class by double dispatch instead of a type test per node.
#pragma once

#include "layout/comparison/Alignment.h"
#include "layout/comparison/CompareEnums.h"

#include <vector>

namespace qent::text::layout {
class Node;
}

namespace qent::text::layout::comparison {

// The level whose class the node is of (Glyph, Word, Line), else None.
CompareLevel levelOf(const Node& node);

// Appends the nodes of `level` in the subtree of start (start included), in document order.
// Level None finds nothing.
void collectLevelNodes(Node& start, CompareLevel level, std::vector<Node*>& out);

// One walk over a page for the comparison: appends the nodes of `level` (as
// collectLevelNodes) and extends `content` by every fragment's rectangle (as contentBox).
void scanPage(Node& page, CompareLevel level, std::vector<Node*>& out, ContentBox& content);

// Appends the Page nodes of the subtree (start included), in document order, nested pages
// too.
void collectPages(Node& start, std::vector<Node*>& out);

}  // namespace qent::text::layout::comparison
