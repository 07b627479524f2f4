// CandidateMatching.h - pairs the rectangles of two pages by overlap: every rectangle gets
// the list of rectangles of the other page that overlap it best, ties kept.
//
// The overlap of two rectangles is I / (A1 - I + A2) (intersection over union, with integer
// areas); overlaps below the double epsilon count as none. A rectangle's list holds the other
// side's rectangles whose overlap is the best it has, in the other side's order: a larger
// overlap replaces the list, one within the epsilon of the best so far is appended. The lists
// are exactly those of testing every left rectangle against every right one in order, but
// found with a sweep over the rectangles' vertical extents, so only rectangles that share
// rows are ever compared.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace qent::text::layout::comparison {

// A rectangle with exclusive right and bottom edges, in 64-bit units so that areas and
// transformed coordinates cannot overflow.
struct MatchRect {
  std::int64_t left = 0;
  std::int64_t top = 0;
  std::int64_t right = 0;
  std::int64_t bottom = 0;

  std::int64_t width() const { return right - left; }
  std::int64_t height() const { return bottom - top; }
  bool operator==(const MatchRect&) const = default;
};

// Indexes into the two input sequences: leftToRight[i] lists the right rectangles that
// left rectangle i matches best, rightToLeft[j] the left ones for right rectangle j; an
// empty list means the rectangle overlaps nothing.
struct CandidateLists {
  std::vector<std::vector<std::uint32_t>> leftToRight;
  std::vector<std::vector<std::uint32_t>> rightToLeft;
};

inline constexpr double kOverlapEpsilon = 2.220446049250313e-16;

// Intersection over union; 0 when the union is empty.
double overlapRatio(const MatchRect& a, const MatchRect& b);

CandidateLists findCandidates(std::span<const MatchRect> left, std::span<const MatchRect> right);

// Every pair of a left and a right rectangle that share a positive area, found by the same
// sweep, as (left index << 32 | right index), sorted: by left index, then by right index.
// For callers that weigh overlaps by a measure of their own.
std::vector<std::uint64_t> overlappingPairs(std::span<const MatchRect> left,
                                            std::span<const MatchRect> right);

}  // namespace qent::text::layout::comparison
