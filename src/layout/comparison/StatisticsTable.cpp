// StatisticsTable.cpp - chunked record storage found through node hints, with an address index
// built only when a hint is not this table's.
#include "layout/comparison/StatisticsTable.h"

#include "layout/Node.h"

#include <bit>

namespace qent::text::layout::comparison {

namespace {
constexpr std::size_t kInitialSlots = 1024;
}

std::size_t StatisticsTable::slotOf(const Node* node) const {
  // The address mixed by a multiplication (Fibonacci hashing), top bits taken. Slots taken
  // straight from the address bits kept nodes visited in allocation order side by side, but
  // with linear probing they also formed runs that every later node had to walk to the end
  // of: for some node sizes the comparison of a long document turned quadratic.
  const auto bits = static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(node));
  // The slot count is a power of two: its trailing zeros are the bits of a slot number.
  const int shift = 64 - std::countr_zero(slots_.size());
  return static_cast<std::size_t>(((bits >> 4) * 0x9E3779B97F4A7C15ull) >> shift);
}

const NodeStatistics* StatisticsTable::find(const Node* node) const {
  if (node == nullptr) return nullptr;
  // The hint is this table's record number + 1 when this table gave it; a node never given
  // one has no record anywhere. Any other hint is some other table's, and the index decides.
  const std::uint32_t hint = node->lookupHint();
  if (hint == 0) return nullptr;
  if (hint <= nodes_.size() && nodes_[hint - 1] == node) return &recordAt(hint - 1);
  if (slots_.empty()) buildIndex();
  for (std::size_t slot = slotOf(node);; slot = (slot + 1) & (slots_.size() - 1)) {
    const Slot entry = slots_[slot];
    if (entry == 0) return nullptr;
    if (nodes_[entry - 1] == node) return &recordAt(entry - 1);
  }
}

NodeStatistics* StatisticsTable::find(const Node* node) {
  return const_cast<NodeStatistics*>(static_cast<const StatisticsTable&>(*this).find(node));
}

NodeStatistics& StatisticsTable::obtain(Node& node) {
  if (NodeStatistics* known = find(&node)) return *known;
  const auto index = static_cast<std::uint32_t>(size());
  if (index % kChunkSize == 0) chunks_.push_back(std::make_unique<NodeStatistics[]>(kChunkSize));
  nodes_.push_back(&node);
  if (!slots_.empty()) insert(index);
  node.setLookupHint(index + 1);
  return recordAt(index);
}

void StatisticsTable::buildIndex() const {
  std::size_t slots = kInitialSlots;
  while (4 * size() > 3 * slots) slots *= 2;
  slots_.assign(slots, 0);
  for (std::uint32_t index = 0; index < size(); ++index) insert(index);
}

void StatisticsTable::insert(std::uint32_t index) const {
  // At most three quarters full, so that probes stay short.
  if (4 * (index + 1) > 3 * slots_.size()) {
    std::vector<Slot> old(slots_.size() * 2);
    old.swap(slots_);
    for (const Slot entry : old) {
      if (entry != 0) place(entry);
    }
  }
  place(index + 1);
}

void StatisticsTable::place(Slot entry) const {
  std::size_t slot = slotOf(nodes_[entry - 1]);
  while (slots_[slot] != 0) slot = (slot + 1) & (slots_.size() - 1);
  slots_[slot] = entry;
}

}  // namespace qent::text::layout::comparison
