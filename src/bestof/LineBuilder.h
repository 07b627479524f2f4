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
  // Relative difference of a word's height from the line's height.
  double maxHeightDeviation = 0.1;
  // Largest gap before a word, in line heights.
  double maxWordDistance = 2.0;
};

// Lines as lists of indexes into `words`: words left to right, lines top to bottom (then
// left to right). Words are taken left to right; each joins the open line it overlaps most
// that it may join, else starts a line. A line's height is that of its first word, so a
// line cannot drift down the page word by word. Cost O(W log W + W L) for L lines side by
// side across the page.
std::vector<std::vector<std::uint32_t>> buildLines(
    std::span<const text::layout::comparison::MatchRect> words, const LineRules& rules);

}  // namespace qent::bestof
