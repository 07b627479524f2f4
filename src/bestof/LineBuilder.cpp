// LineBuilder.cpp - a left-to-right sweep that keeps the lines a word could still join.
#include "bestof/LineBuilder.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace qent::bestof {

namespace {

using text::layout::comparison::MatchRect;

struct OpenLine {
  std::size_t index;  // into the result
  std::int64_t top, bottom, right;
};

}  // namespace

std::vector<std::vector<std::uint32_t>> buildLines(std::span<const MatchRect> words,
                                                   const LineRules& rules) {
  std::vector<std::uint32_t> order(words.size());
  std::iota(order.begin(), order.end(), 0u);
  std::stable_sort(order.begin(), order.end(), [&](std::uint32_t a, std::uint32_t b) {
    return words[a].left != words[b].left ? words[a].left < words[b].left
                                          : words[a].top < words[b].top;
  });

  std::vector<std::vector<std::uint32_t>> lines;
  std::vector<OpenLine> open;
  for (const std::uint32_t i : order) {
    const MatchRect& word = words[i];
    // A line whose end lies further left than any gap allows is finished: every later word
    // starts even further right.
    std::erase_if(open, [&](const OpenLine& line) {
      const double height = static_cast<double>(line.bottom - line.top);
      return static_cast<double>(word.left - line.right) > rules.maxWordDistance * height;
    });
    OpenLine* best = nullptr;
    double bestOverlap = 0;
    for (OpenLine& line : open) {
      const double lineHeight = static_cast<double>(line.bottom - line.top);
      const double wordHeight = static_cast<double>(word.height());
      const double overlap = static_cast<double>(std::min(line.bottom, word.bottom) -
                                                 std::max(line.top, word.top));
      const double smaller = std::min(lineHeight, wordHeight);
      if (smaller <= 0 || overlap < rules.verticalOverlapMin * smaller) continue;
      if (std::fabs(wordHeight - lineHeight) > rules.maxHeightDeviation * lineHeight) continue;
      if (overlap > bestOverlap) {
        bestOverlap = overlap;
        best = &line;
      }
    }
    if (best == nullptr) {
      open.push_back({lines.size(), word.top, word.bottom, word.right});
      lines.push_back({i});
    } else {
      best->right = std::max(best->right, word.right);
      lines[best->index].push_back(i);
    }
  }

  auto topLeft = [&](const std::vector<std::uint32_t>& line) {
    std::int64_t top = words[line.front()].top;
    for (const std::uint32_t i : line) top = std::min(top, words[i].top);
    return std::pair{top, words[line.front()].left};
  };
  std::vector<std::pair<std::int64_t, std::int64_t>> keys;
  keys.reserve(lines.size());
  for (const auto& line : lines) keys.push_back(topLeft(line));
  std::vector<std::size_t> lineOrder(lines.size());
  std::iota(lineOrder.begin(), lineOrder.end(), std::size_t{0});
  std::stable_sort(lineOrder.begin(), lineOrder.end(),
                   [&](std::size_t a, std::size_t b) { return keys[a] < keys[b]; });
  std::vector<std::vector<std::uint32_t>> sorted;
  sorted.reserve(lines.size());
  for (const std::size_t k : lineOrder) sorted.push_back(std::move(lines[k]));
  return sorted;
}

}  // namespace qent::bestof
