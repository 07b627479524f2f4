// NodeType.h - the numeric codes of the node kinds that the JSON layout format knows.
#pragma once

#include <cstdint>

namespace qent::text::layout {

// The codes are part of the format's vocabulary; any type name without a code is read
// as a Content node that keeps the name.
enum class NodeType : std::uint32_t {
  Unknown = 0,
  Image = 1,
  Page = 2,
  ContentArea = 3,
  FormField = 4,
  Line = 5,
  Word = 6,
  Glyph = 7,
  ImageFragment = 8,
};

}  // namespace qent::text::layout
