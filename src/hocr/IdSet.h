// IdSet.h - a set of element ids for writers that must keep ids unique in a document.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace qent::text::hocr {

// Open addressing over one character arena: a document with a hundred thousand words costs
// no allocation per id, where a node-based set would allocate and scatter every entry.
class IdSet {
public:
  // Room for `count` ids without growing.
  void reserve(std::size_t count);
  // Adds the id; false when it was there already.
  bool insert(std::string_view id);
  bool contains(std::string_view id) const;
  std::size_t size() const { return size_; }

private:
  struct Slot {
    std::size_t hash = 0;    // compared first, so probing rarely touches the arena
    std::size_t offset = 0;
    std::size_t length = 0;  // length + 1; 0 marks an empty slot
  };

  std::size_t find(std::string_view id, std::size_t hash) const;
  void rehash(std::size_t slotCount);

  std::string arena_;
  std::vector<Slot> slots_;
  std::size_t size_ = 0;
};

}  // namespace qent::text::hocr
