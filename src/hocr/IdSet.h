// IdSet.h - a set of element ids for writers that must keep ids unique in a document.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace qent::text::hocr {

// Open addressing over one character arena: a document with a hundred thousand words costs
// no allocation per id, where a node-based set would allocate and scatter every entry. A
// slot is 8 bytes (a 32-bit hash and where the id starts in the arena, its length stored
// there in front of it) and the table is filled to three quarters, so the set of a
// thousand-page document's ids stays a few megabytes beside the tree it describes.
class IdSet {
public:
  // Room for `count` ids without growing the table (and the arena, for ids of usual length).
  void reserve(std::size_t count);
  // Adds the id; false when it was there already.
  bool insert(std::string_view id);
  bool contains(std::string_view id) const;
  std::size_t size() const { return size_; }

private:
  struct Slot {
    std::uint32_t hash = 0;   // compared first, so probing rarely touches the arena
    std::uint32_t start = 0;  // arena offset + 1 of the id's length prefix; 0: empty slot
  };

  std::size_t find(std::string_view id, std::uint32_t hash) const;
  std::string_view idAt(const Slot& slot) const;
  void rehash(std::size_t slotCount);

  std::string arena_;
  std::vector<Slot> slots_;
  std::size_t size_ = 0;
};

}  // namespace qent::text::hocr
