// LayoutKeys.h - the member names and node-type names of the JSON layout format, shared by
// its reader and writer.
#pragma once

#include "layout/NodeType.h"

#include <cstdint>
#include <string_view>

namespace qent::text::layout::format {

struct LayoutKeys {
  // Node-type names with a NodeType code.
  static constexpr std::string_view kTypeImage = "image";
  static constexpr std::string_view kTypePage = "page";
  static constexpr std::string_view kTypeContentArea = "content_area";
  static constexpr std::string_view kTypeFormField = "formfield";
  static constexpr std::string_view kTypeLine = "line";
  static constexpr std::string_view kTypeWord = "word";
  static constexpr std::string_view kTypeGlyph = "glyph";
  static constexpr std::string_view kTypeImageFragment = "image_fragment";
  // Type names the writer produces for classes without a code.
  static constexpr std::string_view kTypeNode = "node";
  static constexpr std::string_view kTypeFragment = "fragment";

  // Geometry.
  static constexpr std::string_view kLeft = "left";
  static constexpr std::string_view kTop = "top";
  static constexpr std::string_view kWidth = "width";
  static constexpr std::string_view kHeight = "height";
  // Members of nodes and of their "attributes".
  static constexpr std::string_view kLanguage = "language";
  static constexpr std::string_view kMaxAscenders = "max_ascenders";
  static constexpr std::string_view kMaxDescenders = "max_descenders";
  static constexpr std::string_view kMaxGlyphHeight = "max_glyph_height";
  static constexpr std::string_view kBaseline = "baseline";
  static constexpr std::string_view kBaselineCoefficients = "baseline_coefficients";
  static constexpr std::string_view kXChecked = "x_checked";
  static constexpr std::string_view kXRejected = "x_rejected";
  static constexpr std::string_view kTextangle = "textangle";
  static constexpr std::string_view kConfidence = "confidence";
  static constexpr std::string_view kColorRgb = "color_rgb";
  static constexpr std::string_view kBackgroundColorRgb = "backgr_color_rgb";
  static constexpr std::string_view kXSensibility = "x_sensibility";
  static constexpr std::string_view kXEntity = "x_entity";
  static constexpr std::string_view kIndexInLayout = "index_in_layout";
  static constexpr std::string_view kImage = "image";
  static constexpr std::string_view kImageSource = "image_source";
  static constexpr std::string_view kVersions = "versions";
  static constexpr std::string_view kId = "id";
  static constexpr std::string_view kText = "text";
  static constexpr std::string_view kRoot = "root";
  static constexpr std::string_view kType = "type";
  static constexpr std::string_view kFieldType = "field_type";
  static constexpr std::string_view kAttributes = "attributes";
  static constexpr std::string_view kChildren = "children";
  static constexpr std::string_view kPolygon = "polygon";
  static constexpr std::string_view kFontFamily = "font_family";
  static constexpr std::string_view kFontWeight = "font_weight";
  static constexpr std::string_view kFontStyle = "font_style";
  static constexpr std::string_view kFontSize = "font_size";

  // The code of a type name; NodeType::Unknown for every other name (including "node",
  // "fragment" and the box names other than "content_area").
  static NodeType nodeType(std::string_view typeName);

  // Font style and weight names by code: "normal", "italic", "oblique" and "light",
  // "normal", "bold" for codes 1 to 3; an empty name for any other code.
  static std::string_view fontStyleName(std::uint32_t code);
  static std::string_view fontWeightName(std::uint32_t code);
  // The code of a name, 0 for an unknown name.
  static std::uint32_t fontStyleCode(std::string_view name);
  static std::uint32_t fontWeightCode(std::string_view name);
};

}  // namespace qent::text::layout::format
