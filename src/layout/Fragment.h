// Fragment.h - the base of every geometric text item (and itself a plain image fragment):
// text, rectangle, confidence, font, colours, polygon and baseline.
#pragma once

#include "layout/Node.h"
#include "layout/Rect.h"

#include <cstdint>
#include <cstring>
#include <memory>
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

// The fields of a fragment that most fragments leave unset: font, colours, polygon,
// baseline, entity, sensibility, angle. Fragment holds them only once one of them is set, so
// a word of a long document costs its text, rectangle and confidence and little else.
struct FragmentDetails : NodeExtras {
  std::unique_ptr<NodeExtras> clone() const override {
    return std::make_unique<FragmentDetails>(*this);
  }

  std::u16string fontFamily;
  double fontSize = -1;
  double xSensibility = 0;
  double textangle = 0;
  std::string xEntity;
  std::vector<Point> polygon;
  std::vector<double> baseline;
  Rgb color;
  Rgb backgroundColor;
  std::uint32_t fontStyle = FontStyle::kUnset;
  std::uint32_t fontWeight = FontWeight::kUnset;
  bool hasColor = false;
  bool hasBackgroundColor = false;
  // A word's marks from a word check (Word's fields, kept here since few words have them).
  std::uint64_t xChecked = 0;
  std::uint64_t xRejected = 0;
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

  const std::u16string& fontFamily() const { return details().fontFamily; }
  void setFontFamily(std::u16string family) {
    if (!family.empty() || extras() != nullptr) detailsForChange().fontFamily = std::move(family);
  }
  double fontSize() const { return details().fontSize; }
  void setFontSize(double size) { change(&FragmentDetails::fontSize, size); }
  std::uint32_t fontStyle() const { return details().fontStyle; }
  void setFontStyle(std::uint32_t style) { change(&FragmentDetails::fontStyle, style); }
  std::uint32_t fontWeight() const { return details().fontWeight; }
  void setFontWeight(std::uint32_t weight) { change(&FragmentDetails::fontWeight, weight); }

  double xSensibility() const { return details().xSensibility; }
  void setXSensibility(double value) { change(&FragmentDetails::xSensibility, value); }
  // Rotation in degrees; 0 when not set.
  double textangle() const { return details().textangle; }
  void setTextangle(double angle) { change(&FragmentDetails::textangle, angle); }
  // Narrow (UTF-8) name of the entity class attached to the item; empty when none.
  const std::string& xEntity() const { return details().xEntity; }
  void setXEntity(std::string entity) {
    if (!entity.empty() || extras() != nullptr) detailsForChange().xEntity = std::move(entity);
  }

  const std::vector<Point>& polygon() const { return details().polygon; }
  void setPolygon(std::vector<Point> polygon) {
    if (!polygon.empty() || extras() != nullptr) detailsForChange().polygon = std::move(polygon);
  }
  // Coefficients of the baseline polynomial as the OCR delivered them.
  const std::vector<double>& baseline() const { return details().baseline; }
  void setBaseline(std::vector<double> baseline) {
    if (!baseline.empty() || extras() != nullptr) detailsForChange().baseline = std::move(baseline);
  }

  // The colour is valid only when hasColor(); setColor sets the flag.
  const Rgb& color() const { return details().color; }
  bool hasColor() const { return details().hasColor; }
  void setColor(const Rgb& color) {
    FragmentDetails& d = detailsForChange();
    d.color = color;
    d.hasColor = true;
  }
  void setHasColor(bool has) { change(&FragmentDetails::hasColor, has); }
  const Rgb& backgroundColor() const { return details().backgroundColor; }
  bool hasBackgroundColor() const { return details().hasBackgroundColor; }
  void setBackgroundColor(const Rgb& color) {
    FragmentDetails& d = detailsForChange();
    d.backgroundColor = color;
    d.hasBackgroundColor = true;
  }
  void setHasBackgroundColor(bool has) { change(&FragmentDetails::hasBackgroundColor, has); }

protected:
  explicit Fragment(NodeClass nodeClass) : Node(nodeClass) {}
  Fragment(const Fragment& other);
  friend class ShallowCopier;
  friend class FaithfulCopier;

  // A fragment's extras are always its details: newExtras makes them, copies clone them.
  const FragmentDetails& details() const {
    return extras() != nullptr ? static_cast<const FragmentDetails&>(*extras()) : kNoDetails;
  }
  // Sets one field; setting a field to its unset value allocates nothing.
  // Doubles are compared bit for bit, so that -0 is kept as -0.
  template <class T>
  void change(T FragmentDetails::*field, T value) {
    if (extras() == nullptr && std::memcmp(&value, &(kNoDetails.*field), sizeof(T)) == 0) return;
    detailsForChange().*field = value;
  }

private:
  FragmentDetails& detailsForChange() {
    return static_cast<FragmentDetails&>(extrasForChange());
  }
  std::unique_ptr<NodeExtras> newExtras() const override;

  static const FragmentDetails kNoDetails;

  std::u16string text_;
  Rect rect_;
  mutable double confidence_ = -1;
};

}  // namespace qent::text::layout
