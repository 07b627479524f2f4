// MoveSinglePageCopier.h - cuts one page out of a layout: a deep copy in which only the
// wanted page survives, its subtree moved rather than copied.
#pragma once

#include "layout/DeepCopier.h"

#include <cstdint>

namespace qent::text::layout {

// Pages are counted in document order from 0 as the copier meets them, nested pages too.
// The wanted page is shallow-copied and receives the visited page's children (the source
// page is left empty); every other page is left out with its subtree; every node outside
// pages is deep-copied. One copier serves one page index, once.
class MoveSinglePageCopier : public DeepCopier {
public:
  using DeepCopier::visit;
  explicit MoveSinglePageCopier(std::uint32_t wantedIndex) : wantedIndex_(wantedIndex) {}
  ~MoveSinglePageCopier() override;

  void visit(Page& node) override;

private:
  std::uint32_t wantedIndex_;
  std::uint32_t counter_ = 0;
};

}  // namespace qent::text::layout
