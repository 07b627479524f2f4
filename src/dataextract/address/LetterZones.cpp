// LetterZones.cpp - the address windows in millimetres from the top left corner of the page.
#include "dataextract/address/LetterZones.h"

#include <algorithm>
#include <cmath>

namespace qent::dataextract {

namespace {

struct Zone {
  double left, top, right, bottom;  // millimetres
};

// DIN 5008 form A (address field 27 to 72 mm, with the return-address zone on top) and
// form B (45 to 90 mm), both 20 mm from the left and 85 mm wide; a UK letter for a DL
// window envelope; a US letter for a No. 10 window envelope (1.75 to 3.5 inches down,
// 0.75 to 4.75 inches across).
constexpr Zone kZones[] = {
    {20, 27, 105, 72}, {20, 45, 105, 90}, {20, 40, 110, 85}, {19, 44, 121, 89}};

constexpr double kA4Width = 210, kA4Aspect = 297.0 / 210.0;
constexpr double kLetterWidth = 215.9, kLetterAspect = 11.0 / 8.5;

}  // namespace

double windowShare(const text::layout::Rect& block, double pageWidth, double pageHeight) {
  if (pageWidth <= 0 || pageHeight <= 0 || block.width <= 0 || block.height <= 0) return 0;
  const double aspect = pageHeight / pageWidth;
  const bool letter = std::abs(aspect - kLetterAspect) < std::abs(aspect - kA4Aspect);
  const double pixelsPerMm = pageWidth / (letter ? kLetterWidth : kA4Width);
  const double area = static_cast<double>(block.width) * block.height;
  double best = 0;
  for (const Zone& zone : kZones) {
    const double left = std::max<double>(block.left, zone.left * pixelsPerMm);
    const double right = std::min<double>(static_cast<double>(block.right()), zone.right * pixelsPerMm);
    const double top = std::max<double>(block.top, zone.top * pixelsPerMm);
    const double bottom = std::min<double>(static_cast<double>(block.bottom()), zone.bottom * pixelsPerMm);
    if (right > left && bottom > top) best = std::max(best, (right - left) * (bottom - top) / area);
  }
  return best;
}

bool inLetterheadOrFooter(const text::layout::Rect& block, double pageHeight) {
  return pageHeight > 0 && (block.top < pageHeight / 3 || block.top > pageHeight * 5 / 6);
}

}  // namespace qent::dataextract
