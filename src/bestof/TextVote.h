// TextVote.h - the text of a word that several recognitions read differently.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace qent::bestof {

struct Ballot {
  std::u16string_view text;
  double confidence = -1;  // negative when unknown; counts as 0 in tie breaks
  std::uint32_t input = 0;
};

// A text that more than half of the ballots give wins outright. Otherwise the texts are
// aligned character by character (ROVER): the backbone is the text closest to all others by
// edit distance (ties: more ballots, then higher summed confidence, then earlier input);
// every other text is aligned to it, and each backbone character and each gap between
// characters takes the reading most ballots give there, the backbone's reading on a tie. So
// three readings "hcllo", "hel1o", "hello" give "hello" although no two agree on all of it.
std::u16string voteText(std::span<const Ballot> ballots);

}  // namespace qent::bestof
