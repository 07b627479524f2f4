// NodeText.h - the text of a node as comparisons and writers see it.
#pragma once

#include <string>

namespace qent::text::layout {

class Node;

// The texts of all Fragment nodes of the subtree, the node itself included, in document
// order without separators, followed by the texts of all Content nodes of the subtree in
// document order. Containers usually have no text of their own, so a line reads as its
// words; a word "ab" whose glyphs are "a" and "b" reads "abab", deliberately.
std::u16string nodeText(const Node& node);

// Only the second half: the texts of the Content nodes of the subtree in document order.
std::u16string contentText(const Node& node);

}  // namespace qent::text::layout
