// WordClusters.cpp - raster cells, a top-to-bottom sweep for words sharing cells, and
// best-first joining under the one-word-per-input rule.
#include "bestof/WordClusters.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <stdexcept>
#include <string>
#include <tuple>

namespace qent::bestof {

namespace {

using text::layout::comparison::overlapRatio;

// Inclusive cell ranges of a word's shrunk rectangle.
struct CellSpan {
  std::int64_t left, top, right, bottom;
};

std::int64_t cellOf(double position, double cellSize, std::int32_t cells) {
  // Clamped before the conversion: a word far off the page must not overflow it.
  const double cell = std::floor(position / cellSize);
  return static_cast<std::int64_t>(std::clamp(cell, 0.0, static_cast<double>(cells - 1)));
}

CellSpan cellsOf(const MatchRect& rect, const RasterGeometry& raster) {
  const double cellWidth = raster.pageWidth / raster.cellsX;
  const double cellHeight = raster.pageHeight / raster.cellsY;
  const double centreX = (static_cast<double>(rect.left) + static_cast<double>(rect.right)) / 2;
  const double centreY = (static_cast<double>(rect.top) + static_cast<double>(rect.bottom)) / 2;
  const double halfWidth = static_cast<double>(rect.width()) * raster.wordWidthFactor / 2;
  const double halfHeight = static_cast<double>(rect.height()) * raster.wordHeightFactor / 2;
  return {cellOf(centreX - halfWidth, cellWidth, raster.cellsX),
          cellOf(centreY - halfHeight, cellHeight, raster.cellsY),
          cellOf(centreX + halfWidth, cellWidth, raster.cellsX),
          cellOf(centreY + halfHeight, cellHeight, raster.cellsY)};
}

struct Edge {
  double overlap;
  std::uint32_t a, b;
};

// Union-find whose roots keep the inputs of their cluster, so a join that would put two
// words of one input together is refused.
class Clusters {
public:
  explicit Clusters(std::span<const Candidate> words) : parent_(words.size()), inputs_(words.size()) {
    std::iota(parent_.begin(), parent_.end(), 0u);
    for (std::size_t i = 0; i < words.size(); ++i) inputs_[i] = {words[i].input};
  }
  std::uint32_t find(std::uint32_t i) {
    while (parent_[i] != i) i = parent_[i] = parent_[parent_[i]];
    return i;
  }
  void joinIfDisjoint(std::uint32_t a, std::uint32_t b) {
    a = find(a);
    b = find(b);
    if (a == b) return;
    std::vector<std::uint32_t>& left = inputs_[a];
    std::vector<std::uint32_t>& right = inputs_[b];
    std::vector<std::uint32_t> both;
    both.reserve(left.size() + right.size());
    std::merge(left.begin(), left.end(), right.begin(), right.end(), std::back_inserter(both));
    if (std::adjacent_find(both.begin(), both.end()) != both.end()) return;
    if (left.size() < right.size()) std::swap(a, b);
    parent_[b] = a;
    inputs_[a] = std::move(both);
    inputs_[b].clear();
  }

private:
  std::vector<std::uint32_t> parent_;
  std::vector<std::vector<std::uint32_t>> inputs_;
};

}  // namespace

std::vector<std::vector<std::uint32_t>> clusterWords(std::span<const Candidate> words,
                                                     const RasterGeometry& raster,
                                                     double minOverlap) {
  std::vector<CellSpan> cells;
  cells.reserve(words.size());
  for (const Candidate& word : words) cells.push_back(cellsOf(word.rect, raster));

  std::vector<std::uint32_t> order(words.size());
  std::iota(order.begin(), order.end(), 0u);
  std::stable_sort(order.begin(), order.end(), [&](std::uint32_t a, std::uint32_t b) {
    return cells[a].top < cells[b].top;
  });

  // Sweep: `active` holds the words whose cell rows reach the current word's top row.
  std::vector<Edge> edges;
  std::vector<std::uint32_t> active;
  // Text rows hold tens of words; thousands of words stacked on one spot are no page, and
  // comparing each with all the others would take hours.
  const std::uint64_t budget = 1000 * std::uint64_t{words.size()} + 1'000'000;
  std::uint64_t tests = 0;
  for (const std::uint32_t i : order) {
    const CellSpan& c = cells[i];
    std::erase_if(active, [&](std::uint32_t j) { return cells[j].bottom < c.top; });
    tests += active.size();
    if (tests > budget) {
      throw std::runtime_error("Best-Of merge: " + std::to_string(words.size()) +
                               " words on one page overlap too much to be told apart");
    }
    for (const std::uint32_t j : active) {
      const CellSpan& d = cells[j];
      if (words[i].input == words[j].input || d.right < c.left || c.right < d.left) continue;
      const double overlap = overlapRatio(words[i].rect, words[j].rect);
      if (overlap >= minOverlap && overlap > 0) edges.push_back({overlap, std::min(i, j), std::max(i, j)});
    }
    active.push_back(i);
  }

  // Best overlap first; equal overlaps in word order, so the result never depends on sorting.
  std::sort(edges.begin(), edges.end(), [](const Edge& x, const Edge& y) {
    return std::tie(y.overlap, x.a, x.b) < std::tie(x.overlap, y.a, y.b);
  });
  Clusters clusters(words);
  for (const Edge& edge : edges) clusters.joinIfDisjoint(edge.a, edge.b);

  std::vector<std::vector<std::uint32_t>> result;
  std::vector<std::int64_t> slot(words.size(), -1);
  for (std::uint32_t i = 0; i < words.size(); ++i) {
    const std::uint32_t root = clusters.find(i);
    if (slot[root] < 0) {
      slot[root] = static_cast<std::int64_t>(result.size());
      result.emplace_back();
    }
    result[static_cast<std::size_t>(slot[root])].push_back(i);
  }
  return result;
}

}  // namespace qent::bestof
