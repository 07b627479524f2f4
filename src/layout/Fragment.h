// Fragment.h - the base of every geometric text item (and itself a plain image fragment):
// text, rectangle, confidence, font, colours, polygon and baseline.
#pragma once

#include "layout/Node.h"
#include "layout/Rect.h"

#include <cstdint>
#include <string>
#include <vector>

namespace qent::text::layout {

struct Point {
  std::int32_t x = 0;
  std::int32_t y = 0;
  friend bool operator==(const Point&, const Point&) = default;
};

struct Rgb {
  std::uint8_t red = 0;
  std::uint8_t green = 0;
  std::uint8_t blue = 0;
  friend bool operator==(const Rgb&, const Rgb&) = default;
};

// Codes of Fragment::fontStyle(); other values may occur in data and are kept as they are.
struct FontStyle {
  static constexpr std::uint32_t kUnset = 0;
  static constexpr std::uint32_t kNormal = 1;
  static constexpr std::uint32_t kItalic = 2;
  static constexpr std::uint32_t kOblique = 3;
};

// Codes of Fragment::fontWeight().
struct FontWeight {
  static constexpr std::uint32_t kUnset = 0;
  static constexpr std::uint32_t kLight = 1;
  static constexpr std::uint32_t kNormal = 2;
  static constexpr std::uint32_t kBold = 3;
};

// Unset values are in-band: confidence and font size negative, x_sensibility 0 or less,
// textangle 0, empty strings and sequences, colour flags false.
class Fragment : public Node {
public:
  Fragment() : Node(NodeClass::Fragment) {}
  ~Fragment() override;
  void accept(NodeVisitor& visitor) override;

  // The item's own recognised text; containers usually have none.
  const std::u16string& text() const { return text_; }
  void setText(std::u16string text) { text_ = std::move(text); }

  const Rect& rect() const { return rect_; }
  void setRect(const Rect& rect) { rect_ = rect; }

  // The stored confidence when this is a Glyph or the stored value is not negative.
  // Otherwise the mean of the confidences of all Glyph descendants that have one; the mean
  // is then stored, so it is computed once and never refreshed when a glyph changes later.
  // With no such glyph the stored (negative) value is returned. Writes its cache, so not
  // even reading may happen from two threads at once.
  double confidence() const;
  // The stored value, without computing anything.
  double storedConfidence() const { return confidence_; }
  void setConfidence(double confidence) { confidence_ = confidence; }

  const std::u16string& fontFamily() const { return fontFamily_; }
  void setFontFamily(std::u16string family) { fontFamily_ = std::move(family); }
  double fontSize() const { return fontSize_; }
  void setFontSize(double size) { fontSize_ = size; }
  std::uint32_t fontStyle() const { return fontStyle_; }
  void setFontStyle(std::uint32_t style) { fontStyle_ = style; }
  std::uint32_t fontWeight() const { return fontWeight_; }
  void setFontWeight(std::uint32_t weight) { fontWeight_ = weight; }

  double xSensibility() const { return xSensibility_; }
  void setXSensibility(double value) { xSensibility_ = value; }
  // Rotation in degrees; 0 when not set.
  double textangle() const { return textangle_; }
  void setTextangle(double angle) { textangle_ = angle; }
  // Narrow (UTF-8) name of the entity class attached to the item; empty when none.
  const std::string& xEntity() const { return xEntity_; }
  void setXEntity(std::string entity) { xEntity_ = std::move(entity); }

  const std::vector<Point>& polygon() const { return polygon_; }
  void setPolygon(std::vector<Point> polygon) { polygon_ = std::move(polygon); }
  // Coefficients of the baseline polynomial as the OCR delivered them.
  const std::vector<double>& baseline() const { return baseline_; }
  void setBaseline(std::vector<double> baseline) { baseline_ = std::move(baseline); }

  // The colour is valid only when hasColor(); setColor sets the flag.
  const Rgb& color() const { return color_; }
  bool hasColor() const { return hasColor_; }
  void setColor(const Rgb& color) {
    color_ = color;
    hasColor_ = true;
  }
  void setHasColor(bool has) { hasColor_ = has; }
  const Rgb& backgroundColor() const { return backgroundColor_; }
  bool hasBackgroundColor() const { return hasBackgroundColor_; }
  void setBackgroundColor(const Rgb& color) {
    backgroundColor_ = color;
    hasBackgroundColor_ = true;
  }
  void setHasBackgroundColor(bool has) { hasBackgroundColor_ = has; }

protected:
  explicit Fragment(NodeClass nodeClass) : Node(nodeClass) {}
  Fragment(const Fragment&) = default;
  friend class ShallowCopier;
  friend class FaithfulCopier;

private:
  std::u16string text_;
  Rect rect_;
  mutable double confidence_ = -1;
  std::u16string fontFamily_;
  double fontSize_ = -1;
  double xSensibility_ = 0;
  double textangle_ = 0;
  std::string xEntity_;
  std::vector<Point> polygon_;
  std::vector<double> baseline_;
  Rgb color_;
  Rgb backgroundColor_;
  std::uint32_t fontStyle_ = FontStyle::kUnset;
  std::uint32_t fontWeight_ = FontWeight::kUnset;
  bool hasColor_ = false;
  bool hasBackgroundColor_ = false;
};

}  // namespace qent::text::layout
