// ExtractionResult.h - what the extraction comparison measured: per zone, per page pair and
// for the whole document.
#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace qent::text::layout::comparison::extraction {

// errors / count, 0 when nothing was counted. Not capped at 1: with the edit distance, an
// extraction longer than its reference can have more errors than the reference has
// characters.
inline double errorRate(std::uint64_t errors, std::uint64_t count) {
  return count == 0 ? 0.0 : static_cast<double>(errors) / static_cast<double>(count);
}

// One zone of a reference page and the text the recognition gave for it.
struct ZoneResult {
  std::u16string id;         // the reference node's id (may be empty)
  std::u16string reference;  // the zone's text in the reference
  std::u16string extracted;  // the recognition's text inside the zone, in reading order
  // Recognised nodes that lay less than half inside the zone and were counted anyway.
  std::uint32_t partialNodes = 0;
  std::uint64_t errors = 0;
  std::uint64_t count = 0;
};

// A recognised page and the reference page paired with it; either may be missing.
struct PageResult {
  std::optional<std::uint32_t> mainPage;       // 0-based, in document order
  std::optional<std::uint32_t> referencePage;  // 0-based, in document order
  std::vector<ZoneResult> zones;
  // Sums over the zones; for a page without a partner, its own nodes counted as wrong.
  std::uint64_t errors = 0;
  std::uint64_t count = 0;

  double errorRate() const { return extraction::errorRate(errors, count); }
};

struct ExtractionResult {
  std::vector<PageResult> pages;  // in the order of the recognised pages
  std::uint64_t errors = 0;
  std::uint64_t count = 0;

  // All errors over all counts (a micro-average, so a page weighs by its size).
  double errorRate() const { return extraction::errorRate(errors, count); }
  // The highest page rate; 0 without pages.
  double maxErrorRate() const {
    double highest = 0.0;
    for (const PageResult& page : pages) highest = std::max(highest, page.errorRate());
    return highest;
  }
};

}  // namespace qent::text::layout::comparison::extraction
