// ConfusionCounter.cpp - confusions as the stretches between kept characters.
#include "layout/comparison/report/ConfusionCounter.h"

#include <algorithm>

namespace qent::text::layout::comparison::report {

void ConfusionCounter::add(std::u16string_view truth, std::u16string_view recognised,
                           const CharacterAlignment& alignment) {
  const auto& runs = alignment.runs;
  for (std::size_t i = 0; i < runs.size();) {
    if (runs[i].kind == EditKind::Match) {
      ++i;
      continue;
    }
    std::size_t end = i;
    std::size_t truthLength = 0, recognisedLength = 0;
    for (; end < runs.size() && runs[end].kind != EditKind::Match; ++end) {
      truthLength += runs[end].truthLength;
      recognisedLength += runs[end].recognisedLength;
    }
    if (truthLength <= kMaxConfusionLength && recognisedLength <= kMaxConfusionLength) {
      ++counts_[{std::u16string(truth.substr(runs[i].truthStart, truthLength)),
                 std::u16string(recognised.substr(runs[i].recognisedStart, recognisedLength))}];
    }
    i = end;
  }
}

std::vector<Confusion> ConfusionCounter::mostFrequent(std::size_t limit) const {
  std::vector<Confusion> all;
  all.reserve(counts_.size());
  for (const auto& [pieces, count] : counts_) all.push_back({pieces.first, pieces.second, count});
  // The map already orders by the texts; the stable sort keeps that order among equals.
  std::stable_sort(all.begin(), all.end(),
                   [](const Confusion& a, const Confusion& b) { return a.count > b.count; });
  if (all.size() > limit) all.resize(limit);
  return all;
}

}  // namespace qent::text::layout::comparison::report
