// PairReduction.h - narrows the candidate lists of one page pair to one-to-one pairs.
//
// Repeats, until a full pass changes nothing, the first of these steps that changes
// something, then starts over:
//  a. left reciprocity: every left list keeps only the candidates whose own list names this
//     left node; a list that shrinks to exactly one candidate narrows that candidate's list
//     to this node;
//  b. the same for the right lists against the left ones;
//  c. left tie breaking: the first left list with more than one candidate keeps the first
//     candidate whose text equals the node's text, else its last candidate;
//  d. the same for the right lists.
// Lists are visited in document order, so the outcome is deterministic.
#pragma once

#include "layout/comparison/CandidateMatching.h"

#include <cstdint>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace qent::text::layout::comparison {

using IndexPair = std::pair<std::uint32_t, std::uint32_t>;

// Reduces `lists` in place and returns the pairs (left index, right index) in left order.
// Throws QentException "internal error has occured during text comparison" when the two
// sides do not end up with the same number of pairs.
std::vector<IndexPair> reduceToPairs(CandidateLists& lists,
                                     std::span<const std::u16string> leftTexts,
                                     std::span<const std::u16string> rightTexts);

}  // namespace qent::text::layout::comparison
