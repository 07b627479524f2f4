// LineBuilder.h - text lines from loose word rectangles.
#pragma once

#include "layout/comparison/CandidateMatching.h"

#include <cstdint>
#include <span>
#include <vector>

namespace qent::bestof {

struct LineRules {
  // Vertical overlap of a word with the line, as a share of the smaller height.
  double verticalOverlapMin = 0.7;
  // Relative difference of a word's height from the line's height, unless one lies within
  // the other.
  double maxHeightDeviation = 0.1;
  // Largest gap before a word, in line heights.
  double maxWordDistance = 2.0;
};

// Lines as lists of indexes into `words`: words left to right, lines top to bottom (then
// left to right). Words are taken left to right; each joins the open line (the band from the
// top of its highest to the bottom of its lowest word) it overlaps most, when the overlap is
// at least verticalOverlapMin of the smaller height, the gap at most maxWordDistance line
// heights, and the heights differ by at most maxHeightDeviation of the larger one or one
// lies within the other's band (short words such as "a" beside tall ones); else it starts a
// line. Cost O(W log W + W L) for L lines side by side across the page.
std::vector<std::vector<std::uint32_t>> buildLines(
    std::span<const text::layout::comparison::MatchRect> words, const LineRules& rules);

}  // namespace qent::bestof
