// PairReduction.cpp - reciprocity and tie breaking over the candidate lists.
#include "layout/comparison/PairReduction.h"

#include "base/QentException.h"

#include <algorithm>

namespace qent::text::layout::comparison {

namespace {

using Lists = std::vector<std::vector<std::uint32_t>>;

bool names(const std::vector<std::uint32_t>& list, std::uint32_t index) {
  return std::find(list.begin(), list.end(), index) != list.end();
}

// Step a (or b with the sides exchanged).
bool keepReciprocal(Lists& own, Lists& other) {
  bool changed = false;
  for (std::uint32_t i = 0; i < own.size(); ++i) {
    std::vector<std::uint32_t>& list = own[i];
    if (list.empty()) continue;
    const auto kept = std::remove_if(list.begin(), list.end(),
                                     [&](std::uint32_t j) { return !names(other[j], i); });
    if (kept == list.end()) continue;
    list.erase(kept, list.end());
    changed = true;
    if (list.size() == 1) other[list.front()].assign(1, i);
  }
  return changed;
}

// Step c (or d).
bool breakFirstTie(Lists& own, std::span<const std::u16string> ownTexts,
                   std::span<const std::u16string> otherTexts) {
  for (std::uint32_t i = 0; i < own.size(); ++i) {
    std::vector<std::uint32_t>& list = own[i];
    if (list.size() < 2) continue;
    std::uint32_t chosen = list.back();
    for (const std::uint32_t j : list) {
      if (otherTexts[j] == ownTexts[i]) {
        chosen = j;
        break;
      }
    }
    list.assign(1, chosen);
    return true;
  }
  return false;
}

[[noreturn]] void internalError() {
  throw base::QentException(base::kErrorOption,
                            "internal error has occured during text comparison");
}

}  // namespace

std::vector<IndexPair> reduceToPairs(CandidateLists& lists,
                                     std::span<const std::u16string> leftTexts,
                                     std::span<const std::u16string> rightTexts) {
  Lists& left = lists.leftToRight;
  Lists& right = lists.rightToLeft;
  if (leftTexts.size() != left.size() || rightTexts.size() != right.size()) internalError();
  while (keepReciprocal(left, right) || keepReciprocal(right, left) ||
         breakFirstTie(left, leftTexts, rightTexts) || breakFirstTie(right, rightTexts, leftTexts)) {
  }

  std::vector<IndexPair> pairs;
  for (std::uint32_t i = 0; i < left.size(); ++i) {
    if (left[i].size() == 1) pairs.emplace_back(i, left[i].front());
  }
  std::size_t rightGroups = 0;
  for (const auto& list : right) rightGroups += list.size() == 1 ? 1 : 0;
  if (rightGroups != pairs.size()) internalError();
  return pairs;
}

}  // namespace qent::text::layout::comparison
