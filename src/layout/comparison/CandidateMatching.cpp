// CandidateMatching.cpp - sweep-line search for overlapping rectangles and the best-overlap
// candidate lists built from them.
#include "layout/comparison/CandidateMatching.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>

namespace qent::text::layout::comparison {

namespace {

std::int64_t area(const MatchRect& r) { return r.width() * r.height(); }

// Best overlap so far and the list it belongs to, for one rectangle.
struct BestList {
  double best = 0.0;
  std::vector<std::uint32_t>* list = nullptr;

  void offer(std::uint32_t other, double overlap) {
    if (overlap > best) {
      best = overlap;
      list->assign(1, other);
    } else if (std::fabs(overlap - best) < kOverlapEpsilon) {
      list->push_back(other);
    }
  }
};

// A rectangle entering or leaving the sweep, packed into one sortable word:
//   row (relative to the topmost edge) | enter | side | index
// Leaving sorts before entering at the same row: edges are exclusive, so rectangles that
// only touch never meet. Sorting plain integers is what makes the sweep cheap.
constexpr unsigned kIndexBits = 30;
constexpr std::uint64_t kIndexMask = (std::uint64_t{1} << kIndexBits) - 1;

std::uint64_t packEvent(std::int64_t row, std::uint64_t enter, std::uint64_t side,
                        std::uint64_t index) {
  return (static_cast<std::uint64_t>(row) << 32) | (enter << 31) | (side << kIndexBits) | index;
}

// The rectangles currently cut by the sweep row, with O(1) removal.
class ActiveSet {
public:
  explicit ActiveSet(std::size_t size) : position_(size, 0) {}
  void insert(std::uint32_t index) {
    position_[index] = static_cast<std::uint32_t>(members_.size());
    members_.push_back(index);
  }
  void erase(std::uint32_t index) {
    const std::uint32_t at = position_[index];
    members_[at] = members_.back();
    position_[members_[at]] = at;
    members_.pop_back();
  }
  const std::vector<std::uint32_t>& members() const { return members_; }

private:
  std::vector<std::uint32_t> position_;
  std::vector<std::uint32_t> members_;
};

bool hasArea(const MatchRect& r) { return r.width() > 0 && r.height() > 0; }

// Every (left, right) index pair whose rectangles share a positive area, sorted.
std::vector<std::uint64_t> intersectingPairs(std::span<const MatchRect> left,
                                             std::span<const MatchRect> right) {
  std::int64_t top = 0;
  std::int64_t bottom = 0;
  bool first = true;
  for (const auto rects : {left, right}) {
    for (const MatchRect& r : rects) {
      if (!hasArea(r)) continue;
      top = first ? r.top : std::min(top, r.top);
      bottom = first ? r.bottom : std::max(bottom, r.bottom);
      first = false;
    }
  }
  std::vector<std::uint64_t> pairs;
  if (first) return pairs;
  if (left.size() > kIndexMask || right.size() > kIndexMask) {
    throw std::length_error("too many rectangles on one page to compare");
  }
  // Rows spanning more than 32 bits (only far-fetched coordinates do) are replaced by their
  // ranks, which keeps their order.
  std::vector<std::int64_t> rows;
  if (static_cast<std::uint64_t>(bottom - top) >= (std::uint64_t{1} << 32)) {
    for (const auto rects : {left, right}) {
      for (const MatchRect& r : rects) {
        rows.push_back(r.top);
        rows.push_back(r.bottom);
      }
    }
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
  }
  auto rowOf = [&](std::int64_t y) -> std::int64_t {
    if (rows.empty()) return y - top;
    return std::lower_bound(rows.begin(), rows.end(), y) - rows.begin();
  };

  std::vector<std::uint64_t> events;
  events.reserve(2 * (left.size() + right.size()));
  auto addEvents = [&](std::span<const MatchRect> rects, std::uint64_t side) {
    for (std::uint32_t i = 0; i < rects.size(); ++i) {
      if (!hasArea(rects[i])) continue;  // nothing can overlap it
      events.push_back(packEvent(rowOf(rects[i].top), 1, side, i));
      events.push_back(packEvent(rowOf(rects[i].bottom), 0, side, i));
    }
  };
  addEvents(left, 0);
  addEvents(right, 1);
  std::sort(events.begin(), events.end());

  const std::span<const MatchRect> rects[2] = {left, right};
  ActiveSet active[2] = {ActiveSet(left.size()), ActiveSet(right.size())};
  for (const std::uint64_t event : events) {
    const auto side = static_cast<std::uint32_t>((event >> kIndexBits) & 1);
    const auto index = static_cast<std::uint32_t>(event & kIndexMask);
    if (((event >> 31) & 1) == 0) {
      active[side].erase(index);
      continue;
    }
    // Everything still active on the other side overlaps this rectangle's first row.
    const MatchRect& entering = rects[side][index];
    const std::uint32_t otherSide = 1 - side;
    for (const std::uint32_t other : active[otherSide].members()) {
      const MatchRect& candidate = rects[otherSide][other];
      if (candidate.left < entering.right && entering.left < candidate.right) {
        const std::uint64_t l = side == 0 ? index : other;
        const std::uint64_t r = side == 0 ? other : index;
        pairs.push_back((l << 32) | r);
      }
    }
    active[side].insert(index);
  }
  std::sort(pairs.begin(), pairs.end());
  return pairs;
}

}  // namespace

double overlapRatio(const MatchRect& a, const MatchRect& b) {
  const std::int64_t width = std::min(a.right, b.right) - std::max(a.left, b.left);
  const std::int64_t height = std::min(a.bottom, b.bottom) - std::max(a.top, b.top);
  const std::int64_t intersection = width > 0 && height > 0 ? width * height : 0;
  const std::int64_t denominator = area(a) - intersection + area(b);
  if (denominator == 0) return 0.0;
  return static_cast<double>(intersection) / static_cast<double>(denominator);
}

CandidateLists findCandidates(std::span<const MatchRect> left, std::span<const MatchRect> right) {
  CandidateLists lists;
  lists.leftToRight.resize(left.size());
  lists.rightToLeft.resize(right.size());
  std::vector<BestList> leftBest(left.size());
  std::vector<BestList> rightBest(right.size());
  for (std::size_t i = 0; i < left.size(); ++i) leftBest[i].list = &lists.leftToRight[i];
  for (std::size_t j = 0; j < right.size(); ++j) rightBest[j].list = &lists.rightToLeft[j];

  // Offered in (left, right) order, each rectangle sees the other side's rectangles in
  // their own order, which is all that the outcome of offer() depends on.
  for (const std::uint64_t pair : intersectingPairs(left, right)) {
    const auto l = static_cast<std::uint32_t>(pair >> 32);
    const auto r = static_cast<std::uint32_t>(pair & 0xFFFFFFFFu);
    const double overlap = overlapRatio(left[l], right[r]);
    if (overlap < kOverlapEpsilon) continue;
    leftBest[l].offer(r, overlap);
    rightBest[r].offer(l, overlap);
  }
  return lists;
}

std::vector<std::uint64_t> overlappingPairs(std::span<const MatchRect> left,
                                            std::span<const MatchRect> right) {
  return intersectingPairs(left, right);
}

}  // namespace qent::text::layout::comparison
