// CompareEnums.h - the comparison's options as enumerations, and their names in property
// values and in the result document.
#pragma once

#include <cstdint>
#include <string_view>

namespace qent::text::layout::comparison {

// The kind of node that is paired and compared.
enum class CompareLevel : std::uint32_t { None = 0, Glyph = 1, Word = 2, Line = 3 };

// What is compared: the nodes' texts, or the entity annotations they carry.
enum class CompareMode : std::uint32_t { None = 0, Text = 1, Entity = 2 };

// How two pages' coordinates are brought together before rectangles are intersected.
enum class Alignment : std::uint32_t { None = 0, Center = 1, Corner = 2 };

// Names as property values give them ("Word", "Entity", "Corner"), without regard to ASCII
// case; any other name is None.
CompareLevel levelFromName(std::u16string_view name);
CompareMode modeFromName(std::u16string_view name);
Alignment alignmentFromName(std::u16string_view name);

// The level as the result document names it: "glyph", "word", "line", else "node".
std::string_view levelResultName(CompareLevel level);

}  // namespace qent::text::layout::comparison
