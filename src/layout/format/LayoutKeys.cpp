// LayoutKeys.cpp - type-name and font-name look-ups of the JSON layout format.
#include "layout/format/LayoutKeys.h"

#include <array>

namespace qent::text::layout::format {

namespace {

constexpr std::array<std::string_view, 3> kStyleNames = {"normal", "italic", "oblique"};
constexpr std::array<std::string_view, 3> kWeightNames = {"light", "normal", "bold"};

std::string_view nameOf(const std::array<std::string_view, 3>& names, std::uint32_t code) {
  return code >= 1 && code <= names.size() ? names[code - 1] : std::string_view();
}

std::uint32_t codeOf(const std::array<std::string_view, 3>& names, std::string_view name) {
  for (std::uint32_t i = 0; i < names.size(); ++i) {
    if (names[i] == name) return i + 1;
  }
  return 0;
}

}  // namespace

NodeType LayoutKeys::nodeType(std::string_view typeName) {
  // The most frequent names first: a layout is mostly words.
  if (typeName == kTypeWord) return NodeType::Word;
  if (typeName == kTypeLine) return NodeType::Line;
  if (typeName == kTypeGlyph) return NodeType::Glyph;
  if (typeName == kTypeContentArea) return NodeType::ContentArea;
  if (typeName == kTypePage) return NodeType::Page;
  if (typeName == kTypeImage) return NodeType::Image;
  if (typeName == kTypeFormField) return NodeType::FormField;
  if (typeName == kTypeImageFragment) return NodeType::ImageFragment;
  return NodeType::Unknown;
}

std::string_view LayoutKeys::fontStyleName(std::uint32_t code) { return nameOf(kStyleNames, code); }
std::string_view LayoutKeys::fontWeightName(std::uint32_t code) {
  return nameOf(kWeightNames, code);
}
std::uint32_t LayoutKeys::fontStyleCode(std::string_view name) { return codeOf(kStyleNames, name); }
std::uint32_t LayoutKeys::fontWeightCode(std::string_view name) {
  return codeOf(kWeightNames, name);
}

}  // namespace qent::text::layout::format
