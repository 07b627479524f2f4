// StatisticsTable.h - the comparison's records, one per node, found by the node's address.
//
// A comparison keeps a record for every compared node and every node above them: hundreds of
// thousands for a long document. A node-based hash map spends most of the comparison in
// allocation and pointer chasing, so the records live in large chunks (their addresses stay
// valid while the table grows) and an open-addressing index of record numbers, keyed by the
// node's address, finds them with one probe in most cases. A slot is only the record number:
// four bytes, so the index of a thousand-page comparison is a few megabytes, not the sixty it
// took with the address beside every number. The records' nodes are kept apart from the
// records, in one array in record order: a probe that passes other records' slots (and a
// lookup of a node without a record passes several) then reads 8 bytes each, not a record
// of 64 somewhere in a hundred megabytes, which made long comparisons slower per page.
#pragma once

#include "layout/comparison/NodeStatistics.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace qent::text::layout::comparison {

class StatisticsTable {
public:
  StatisticsTable();

  // The record of node, or null when it has none.
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
  void grow();
  NodeStatistics& recordAt(std::uint32_t index) const {
    return chunks_[index / kChunkSize][index % kChunkSize];
  }

  std::vector<Slot> slots_;
  std::vector<std::unique_ptr<NodeStatistics[]>> chunks_;
  std::vector<const Node*> nodes_;  // the node of each record, by record number
};

}  // namespace qent::text::layout::comparison
