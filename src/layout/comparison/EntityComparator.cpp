// EntityComparator.cpp - counts and errors of an entity annotation pair.
#include "layout/comparison/EntityComparator.h"

#include "layout/Fragment.h"

#include <string_view>

namespace qent::text::layout::comparison {

namespace {

std::string_view entityClass(const Node& node) {
  const auto* fragment = dynamic_cast<const Fragment*>(&node);
  if (fragment == nullptr) return {};
  const std::string_view entity = fragment->xEntity();
  return entity.substr(0, entity.find(' '));
}

}  // namespace

EntityComparator::~EntityComparator() = default;

void EntityComparator::compareNodes(const Item& left, const Item& right) {
  NodeStatistics& l = *left.stats;
  NodeStatistics& r = *right.stats;
  const std::string_view leftClass = entityClass(*left.node);
  const std::string_view rightClass = entityClass(*right.node);
  std::uint64_t count = 0;
  std::uint64_t good = 0;
  if (!leftClass.empty() || !rightClass.empty()) {
    count = 1;
    good = leftClass == rightClass ? 1 : 0;
  }
  l.count = count;
  r.count = count;
  l.errors = count - good;
  r.errors = count - good;
  const bool sameLength = left.text.size() == right.text.size();
  l.lengthDifference = sameLength || countLengthDifference() ? 0 : l.errors;
  r.lengthDifference = sameLength || countLengthDifference() ? 0 : r.errors;
  l.updateRates();
  r.updateRates();
  setPairF1(l, r);
}

}  // namespace qent::text::layout::comparison
