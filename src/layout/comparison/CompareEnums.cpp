// CompareEnums.cpp - names of the comparison options.
#include "layout/comparison/CompareEnums.h"

#include <array>
#include <utility>

namespace qent::text::layout::comparison {

namespace {

bool sameName(std::u16string_view value, std::string_view name) {
  if (value.size() != name.size()) return false;
  for (std::size_t i = 0; i < name.size(); ++i) {
    char16_t unit = value[i];
    if (unit >= u'A' && unit <= u'Z') unit = static_cast<char16_t>(unit - u'A' + u'a');
    char letter = name[i];
    if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
    if (unit != static_cast<unsigned char>(letter)) return false;
  }
  return true;
}

template <class Enum, std::size_t N>
Enum fromName(std::u16string_view value, const std::array<std::pair<std::string_view, Enum>, N>& names) {
  for (const auto& [name, code] : names) {
    if (sameName(value, name)) return code;
  }
  return Enum::None;
}

}  // namespace

CompareLevel levelFromName(std::u16string_view name) {
  static constexpr std::array<std::pair<std::string_view, CompareLevel>, 3> kNames{{
      {"Glyph", CompareLevel::Glyph}, {"Word", CompareLevel::Word}, {"Line", CompareLevel::Line}}};
  return fromName(name, kNames);
}

CompareMode modeFromName(std::u16string_view name) {
  static constexpr std::array<std::pair<std::string_view, CompareMode>, 2> kNames{
      {{"Text", CompareMode::Text}, {"Entity", CompareMode::Entity}}};
  return fromName(name, kNames);
}

Alignment alignmentFromName(std::u16string_view name) {
  static constexpr std::array<std::pair<std::string_view, Alignment>, 2> kNames{
      {{"Center", Alignment::Center}, {"Corner", Alignment::Corner}}};
  return fromName(name, kNames);
}

std::string_view levelResultName(CompareLevel level) {
  switch (level) {
    case CompareLevel::Glyph:
      return "glyph";
    case CompareLevel::Word:
      return "word";
    case CompareLevel::Line:
      return "line";
    default:
      return "node";
  }
}

}  // namespace qent::text::layout::comparison
