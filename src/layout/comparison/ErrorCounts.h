// ErrorCounts.h - character and word error counts of a comparison, as OCR-evaluation users
// know them: edit operations against the ground truth's characters and words.
//
// The comparison pairs nodes of one level; these counts follow its pairing. A pair adds the
// edit distance of its two texts (in characters) and of their word sequences; a ground-truth
// node left unpaired adds all its characters and words as deletions, a recognised node left
// unpaired all of its as insertions. Characters are code points after the chosen
// normalisation, or grapheme clusters; words are the texts of the word nodes at or below
// the compared node (a node without any reads as its text split at white space). The left
// layout is the recognition, the right one the ground truth.
#pragma once

#include "base/TextUnits.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace qent::text::layout::comparison {

class Comparator;

struct MetricsOptions {
  base::Normalization normalization = base::Normalization::None;
  bool graphemes = false;
};

struct ErrorCounts {
  std::uint64_t characters = 0;            // ground truth
  std::uint64_t recognizedCharacters = 0;
  std::uint64_t characterEdits = 0;
  std::uint64_t words = 0;                 // ground truth
  std::uint64_t recognizedWords = 0;
  std::uint64_t wordEdits = 0;

  ErrorCounts& operator+=(const ErrorCounts& other);
};

struct TextMetrics {
  MetricsOptions options;
  // Glyph comparisons pair single characters: their word figures would only repeat the
  // character figures, so they are not reported.
  bool withWords = true;
  ErrorCounts total;
  std::vector<ErrorCounts> pages;  // one per page pair, in page order
};

// The counts of a finished comparison, per page pair and in total (sums: every character
// weighs the same wherever it stands).
TextMetrics measureErrors(const Comparator& comparator, const MetricsOptions& options);

// The error rate of edits against a ground-truth count; nothing when the count is 0, since
// a rate of errors over no text is undefined (the edits are still reported).
std::optional<double> errorRate(std::uint64_t edits, std::uint64_t count);

}  // namespace qent::text::layout::comparison
