// ReadingOrder.h - the order in which a reader takes in the text items of one zone: rows top
// to bottom, each row left to right.
#pragma once

#include "layout/comparison/CandidateMatching.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace qent::text::layout::comparison::extraction {

// Positions into `rects` in reading order. Taken by their tops, rectangles join the row
// that the topmost one not yet placed opens for as long as their vertical centres lie above
// its bottom; so words of one line that the recognition put a few pixels apart in height
// stay one row, and lines that only touch stay two. Ties keep the given order.
std::vector<std::uint32_t> readingOrder(std::span<const MatchRect> rects);

// The texts in the reading order of their rectangles (texts[i] belongs to rects[i]), joined
// by one blank; empty texts are left out, so they add no blanks either.
std::u16string joinInReadingOrder(std::span<const MatchRect> rects,
                                  std::span<const std::u16string* const> texts);

}  // namespace qent::text::layout::comparison::extraction
