// IdSet.cpp - a set of element ids with open addressing over one character arena.
#include "hocr/IdSet.h"

#include <functional>

namespace qent::text::hocr {

namespace {

std::size_t hashOf(std::string_view id) { return std::hash<std::string_view>()(id); }

}  // namespace

void IdSet::reserve(std::size_t count) {
  std::size_t slots = 16;
  while (slots < count * 2) slots *= 2;
  if (slots > slots_.size()) rehash(slots);
}

std::size_t IdSet::find(std::string_view id, std::size_t hash) const {
  const std::size_t mask = slots_.size() - 1;
  for (std::size_t i = hash & mask;; i = (i + 1) & mask) {
    const Slot& slot = slots_[i];
    if (slot.length == 0) return i;
    if (slot.hash == hash && slot.length - 1 == id.size() &&
        std::string_view(arena_).substr(slot.offset, id.size()) == id) {
      return i;
    }
  }
}

bool IdSet::contains(std::string_view id) const {
  if (slots_.empty()) return false;
  return slots_[find(id, hashOf(id))].length != 0;
}

bool IdSet::insert(std::string_view id) {
  if ((size_ + 1) * 2 > slots_.size()) rehash(slots_.empty() ? 16 : slots_.size() * 2);
  const std::size_t hash = hashOf(id);
  Slot& slot = slots_[find(id, hash)];
  if (slot.length != 0) return false;
  slot.hash = hash;
  slot.offset = arena_.size();
  slot.length = id.size() + 1;
  arena_.append(id);
  ++size_;
  return true;
}

void IdSet::rehash(std::size_t slotCount) {
  std::vector<Slot> old;
  old.swap(slots_);
  slots_.assign(slotCount, Slot{});
  for (const Slot& slot : old) {
    if (slot.length == 0) continue;
    const std::string_view id = std::string_view(arena_).substr(slot.offset, slot.length - 1);
    slots_[find(id, slot.hash)] = slot;
  }
}

}  // namespace qent::text::hocr
