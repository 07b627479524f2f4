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

double overlapOf(const OpenLine& line, const MatchRect& word) {
  return static_cast<double>(std::min(line.bottom, word.bottom) - std::max(line.top, word.top));
}

bool joins(const OpenLine& line, const MatchRect& word, const LineRules& rules) {
  const double lineHeight = static_cast<double>(line.bottom - line.top);
  const double wordHeight = static_cast<double>(word.height());
  const double smaller = std::min(lineHeight, wordHeight);
  const double larger = std::max(lineHeight, wordHeight);
  if (smaller <= 0 || overlapOf(line, word) < rules.verticalOverlapMin * smaller) return false;
  if (larger - smaller <= rules.maxHeightDeviation * larger) return true;
  // A word without ascenders ("a", "on", a comma) is shorter than its line, and a line begun
  // by one is shorter than the words after it: one inside the other's band still joins.
  const double slack = rules.maxHeightDeviation * larger;
  const auto inside = [&](std::int64_t top, std::int64_t bottom, std::int64_t outerTop,
                          std::int64_t outerBottom) {
    return static_cast<double>(outerTop - top) <= slack &&
           static_cast<double>(bottom - outerBottom) <= slack;
  };
  return inside(word.top, word.bottom, line.top, line.bottom) ||
         inside(line.top, line.bottom, word.top, word.bottom);
}

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
      if (joins(line, word, rules) && overlapOf(line, word) > bestOverlap) {
        bestOverlap = overlapOf(line, word);
        best = &line;
      }
    }
    if (best == nullptr) {
      open.push_back({lines.size(), word.top, word.bottom, word.right});
      lines.push_back({i});
    } else {
      best->right = std::max(best->right, word.right);
      best->top = std::min(best->top, word.top);
      best->bottom = std::max(best->bottom, word.bottom);
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
