// LayoutLimits.h - limits every layout reader enforces before it builds a tree.
#pragma once

#include <cstddef>

namespace qent::text::layout {

// Deepest nesting of nodes a reader accepts (the root counts as level 1). Trees are walked
// without recursion, so depth costs no stack; the limit keeps a hostile file nested a
// million levels deep from costing memory and time in every later step. Real layouts rarely
// exceed ten levels; a thousand leaves ample room.
inline constexpr std::size_t kMaxLayoutDepth = 1000;

}  // namespace qent::text::layout
