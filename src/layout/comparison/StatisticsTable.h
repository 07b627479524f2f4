// StatisticsTable.h - the comparison's records, one per node.
//
// A comparison keeps a record for every compared node and every node above them: hundreds of
// thousands for a long document, looked up several times each. A node-based hash map spent
// most of the comparison in allocation and pointer chasing, and even an open-addressing
// index, whose probes land anywhere in megabytes, made a long comparison slower per page
// than a short one. So the records live in large chunks (their addresses stay valid while
// the table grows), their nodes in one array in record order, and the table leaves each node
// its record number as the node's lookup hint: a lookup reads the hint, checks it against
// the array, and is done. A node never given a hint has no record.
//
// A hint can also be another table's, when two comparisons of the same layout are alive at
// once and the later one overwrote it. The first such lookup builds an index of record
// numbers keyed by the node's address (four bytes a slot), which the table keeps from then
// on; a comparison that never meets a foreign hint never pays for it.
#pragma once

#include "layout/comparison/NodeStatistics.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace qent::text::layout::comparison {

class StatisticsTable {
public:
  StatisticsTable() = default;

  // The record of node, or null when it has none. May build the index, so not even lookups
  // may run on two threads at once; nothing in a comparison does.
  const NodeStatistics* find(const Node* node) const;
  NodeStatistics* find(const Node* node);
  bool contains(const Node* node) const { return find(node) != nullptr; }
  // The record of node, created all zero when it has none. The reference stays valid for the
  // table's lifetime.
  NodeStatistics& obtain(Node& node);
  std::size_t size() const { return nodes_.size(); }

private:
  static constexpr std::size_t kChunkSize = 4096;
  using Slot = std::uint32_t;  // record number + 1; 0 marks an empty slot

  std::size_t slotOf(const Node* node) const;
  void buildIndex() const;
  void insert(std::uint32_t index) const;
  void place(Slot entry) const;
  NodeStatistics& recordAt(std::uint32_t index) const {
    return chunks_[index / kChunkSize][index % kChunkSize];
  }

  mutable std::vector<Slot> slots_;  // empty until a foreign hint asks for it
  std::vector<std::unique_ptr<NodeStatistics[]>> chunks_;
  std::vector<const Node*> nodes_;  // the node of each record, by record number
};

}  // namespace qent::text::layout::comparison
