// LayoutLimits.h - limits every layout reader enforces before it builds a tree.
#pragma once

#include <cstddef>

namespace qent::text::layout {

// Deepest nesting of nodes a reader accepts (the root counts as level 1). Visitors,
// copiers and writers walk trees recursively, so a hostile file nested a million levels
// deep must be refused while reading instead of overflowing the stack later. Real layouts
// rarely exceed ten levels; a thousand leaves ample room even on Windows' 1 MB stack.
inline constexpr std::size_t kMaxLayoutDepth = 1000;

}  // namespace qent::text::layout
