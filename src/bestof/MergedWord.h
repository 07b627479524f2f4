// MergedWord.h - one word of the merged layout with the votes that made it.
#pragma once

#include "bestof/Candidate.h"

#include <cstdint>
#include <string>
#include <vector>

namespace qent::bestof {

struct MergedWord {
  std::vector<std::uint32_t> members;  // indexes into the page's candidates
  MatchRect rect;                      // median of the members' edges
  std::u16string text;
  double confidence = -1;
  bool kept = false;  // enough inputs agreed
};

}  // namespace qent::bestof
