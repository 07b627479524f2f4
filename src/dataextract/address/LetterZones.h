// LetterZones.h - where business letters put the recipient's address: the window of DIN 5008
// forms A and B and the windows of common UK and US letters, scaled to the page.
#pragma once

#include "layout/Rect.h"

namespace qent::dataextract {

// The share (0 to 1) of `block` that lies inside the best-matching address window of a
// page of the given size; 0 when the page has no size. Pages close to the US Letter
// aspect ratio are measured in inches of Letter paper, all others in millimetres of A4.
double windowShare(const text::layout::Rect& block, double pageWidth, double pageHeight);

// True when the block starts in the top third or the bottom sixth of the page, where
// letterheads and footers are.
bool inLetterheadOrFooter(const text::layout::Rect& block, double pageHeight);

}  // namespace qent::dataextract
