// JsonNodeRecord.cpp - member look-up by key.
#include "layout/format/internal/JsonNodeRecord.h"

#include "base/NumberConversion.h"
#include "base/QentException.h"
#include "layout/format/LayoutKeys.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <stdexcept>
#include <string>

namespace qent::text::layout::format::internal {

Member memberOf(std::string_view key) {
  using K = LayoutKeys;
  // Dispatch on the length first: every key of a node object is compared at most four times.
  switch (key.size()) {
    case 2:
      if (key == K::kId) return Member::Id;
      break;
    case 3:
      if (key == K::kTop) return Member::Top;
      break;
    case 4:
      if (key == K::kType) return Member::Type;
      if (key == K::kText) return Member::Text;
      if (key == K::kLeft) return Member::Left;
      break;
    case 5:
      if (key == K::kWidth) return Member::Width;
      if (key == K::kImage) return Member::Image;
      break;
    case 6:
      if (key == K::kHeight) return Member::Height;
      break;
    case 7:
      if (key == K::kPolygon) return Member::Polygon;
      break;
    case 8:
      if (key == K::kChildren) return Member::Children;
      if (key == K::kBaseline) return Member::Baseline;
      if (key == K::kLanguage) return Member::Language;
      if (key == K::kXEntity) return Member::XEntity;
      break;
    case 9:
      if (key == K::kTextangle) return Member::Textangle;
      if (key == K::kFontSize) return Member::FontSize;
      if (key == K::kColorRgb) return Member::ColorRgb;
      if (key == K::kXChecked) return Member::XChecked;
      break;
    case 10:
      if (key == K::kConfidence) return Member::Confidence;
      if (key == K::kAttributes) return Member::Attributes;
      if (key == K::kFontStyle) return Member::FontStyle;
      if (key == K::kXRejected) return Member::XRejected;
      break;
    case 11:
      if (key == K::kFontFamily) return Member::FontFamily;
      if (key == K::kFontWeight) return Member::FontWeight;
      break;
    case 12:
      if (key == K::kImageSource) return Member::ImageSource;
      break;
    case 13:
      if (key == K::kMaxAscenders) return Member::MaxAscenders;
      if (key == K::kXSensibility) return Member::XSensibility;
      break;
    case 14:
      if (key == K::kMaxDescenders) return Member::MaxDescenders;
      break;
    case 15:
      if (key == K::kIndexInLayout) return Member::IndexInLayout;
      break;
    case 16:
      if (key == K::kBackgroundColorRgb) return Member::BackgroundColorRgb;
      if (key == K::kMaxGlyphHeight) return Member::MaxGlyphHeight;
      break;
    default:
      break;
  }
  return Member::Unknown;
}

std::string_view keyOf(Member member) {
  using K = LayoutKeys;
  switch (member) {
    case Member::Type: return K::kType;
    case Member::Id: return K::kId;
    case Member::Text: return K::kText;
    case Member::FontFamily: return K::kFontFamily;
    case Member::FontStyle: return K::kFontStyle;
    case Member::FontWeight: return K::kFontWeight;
    case Member::Language: return K::kLanguage;
    case Member::Image: return K::kImage;
    case Member::ImageSource: return K::kImageSource;
    case Member::XEntity: return K::kXEntity;
    case Member::Left: return K::kLeft;
    case Member::Top: return K::kTop;
    case Member::Width: return K::kWidth;
    case Member::Height: return K::kHeight;
    case Member::Confidence: return K::kConfidence;
    case Member::FontSize: return K::kFontSize;
    case Member::Textangle: return K::kTextangle;
    case Member::IndexInLayout: return K::kIndexInLayout;
    case Member::MaxAscenders: return K::kMaxAscenders;
    case Member::MaxDescenders: return K::kMaxDescenders;
    case Member::MaxGlyphHeight: return K::kMaxGlyphHeight;
    case Member::XChecked: return K::kXChecked;
    case Member::XRejected: return K::kXRejected;
    case Member::XSensibility: return K::kXSensibility;
    case Member::Attributes: return K::kAttributes;
    case Member::Children: return K::kChildren;
    case Member::Polygon: return K::kPolygon;
    case Member::Baseline: return K::kBaseline;
    case Member::ColorRgb: return K::kColorRgb;
    case Member::BackgroundColorRgb: return K::kBackgroundColorRgb;
    case Member::Unknown: break;
  }
  return "?";
}

namespace {

[[noreturn]] void outOfRange(std::string_view shown, std::string_view member) {
  // A number may be thousands of digits long; the message shows its beginning.
  std::string text(shown.substr(0, 40));
  if (shown.size() > 40) text += "...";
  throw base::QentException(base::kErrorJson, "Failed to parse JSON layout: the number " + text +
                                                  " of \"" + std::string(member) +
                                                  "\" is out of range");
}

// The power of ten of the leading digit of a number in JSON notation (2 for 123, -3 for
// 0.00123, 6 for 1.5e6): tells a number too small for a double from one too large.
long long decimalExponent(std::string_view text) {
  std::size_t i = text.empty() || text[0] != '-' ? 0 : 1;
  long long integerDigits = 0;
  bool significant = false;
  for (; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i) {
    significant = significant || text[i] != '0';
    if (significant) ++integerDigits;
  }
  long long magnitude = integerDigits - 1;
  if (integerDigits == 0 && i < text.size() && text[i] == '.') {
    long long zeros = 0;
    for (++i; i < text.size() && text[i] == '0'; ++i) ++zeros;
    magnitude = -zeros - 1;
  }
  const std::size_t e = text.find_first_of("eE");
  if (e != std::string_view::npos) {
    long long exponent = 0;
    std::size_t j = e + 1;
    const bool negative = j < text.size() && text[j] == '-';
    if (j < text.size() && (text[j] == '-' || text[j] == '+')) ++j;
    for (; j < text.size() && text[j] >= '0' && text[j] <= '9'; ++j) {
      exponent = std::min(exponent * 10 + (text[j] - '0'), 1000000000LL);
    }
    magnitude += negative ? -exponent : exponent;
  }
  return magnitude;
}

}  // namespace

double numberValue(std::string_view text, std::string_view member) {
  double value = 0;
  const auto [ptr, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (ec == std::errc() && ptr == text.data() + text.size()) return value;
  if (ec == std::errc::result_out_of_range && decimalExponent(text) < 0) return 0;
  outOfRange(text, member);
}

std::string fixed6Text(std::string_view number) {
  try {
    return base::formatFixed6(base::parseLongDouble(number));
  } catch (const std::out_of_range&) {
    if (decimalExponent(number) < 0) return number[0] == '-' ? "-0.000000" : "0.000000";
    outOfRange(number, LayoutKeys::kAttributes);
  }
}

double truncatedValue(double value, double low, double end, std::string_view member) {
  const double truncated = std::trunc(value);
  if (!(truncated >= low && truncated < end)) outOfRange(base::formatShortest(value), member);
  return truncated;
}

}  // namespace qent::text::layout::format::internal
