// Candidate.h - one input word as the merge sees it: its input, its rectangle on the common
// page, its text and confidence.
#pragma once

#include "layout/comparison/CandidateMatching.h"

#include <cstdint>
#include <string>

namespace qent::bestof {

using text::layout::comparison::MatchRect;

struct Candidate {
  std::uint32_t input = 0;  // position of the input layout in the merge's list
  MatchRect rect;           // scaled onto the common page size
  std::u16string text;
  double confidence = -1;   // negative when the input gave none
};

}  // namespace qent::bestof
