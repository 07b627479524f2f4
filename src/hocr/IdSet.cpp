// IdSet.cpp - a set of element ids with open addressing over one character arena.
#include "hocr/IdSet.h"

#include <cstring>
#include <functional>
#include <limits>
#include <stdexcept>

namespace qent::text::hocr {

namespace {

std::uint32_t hashOf(std::string_view id) {
  const std::size_t full = std::hash<std::string_view>()(id);
  return static_cast<std::uint32_t>(full ^ (full >> 32));
}

// Grown before the table is more than three quarters full: linear probing stays short there.
bool tooFull(std::size_t entries, std::size_t slots) { return entries * 4 > slots * 3; }

}  // namespace

void IdSet::reserve(std::size_t count) {
  std::size_t slots = 16;
  while (tooFull(count, slots)) slots *= 2;
  if (slots > slots_.size()) rehash(slots);
  // Room for ids of a dozen characters: an arena grown by doubling would hold up to twice
  // what it needs, and three times that while it moves.
  arena_.reserve(count * (sizeof(std::uint32_t) + 12));
}

std::string_view IdSet::idAt(const Slot& slot) const {
  std::uint32_t length = 0;
  std::memcpy(&length, arena_.data() + slot.start - 1, sizeof length);
  return std::string_view(arena_).substr(slot.start - 1 + sizeof length, length);
}

std::size_t IdSet::find(std::string_view id, std::uint32_t hash) const {
  const std::size_t mask = slots_.size() - 1;
  for (std::size_t i = hash & mask;; i = (i + 1) & mask) {
    const Slot& slot = slots_[i];
    if (slot.start == 0 || (slot.hash == hash && idAt(slot) == id)) return i;
  }
}

bool IdSet::contains(std::string_view id) const {
  if (slots_.empty()) return false;
  return slots_[find(id, hashOf(id))].start != 0;
}

bool IdSet::insert(std::string_view id) {
  if (slots_.empty() || tooFull(size_ + 1, slots_.size())) {
    rehash(slots_.empty() ? 16 : slots_.size() * 2);
  }
  const std::uint32_t hash = hashOf(id);
  Slot& slot = slots_[find(id, hash)];
  if (slot.start != 0) return false;
  const auto length = static_cast<std::uint32_t>(id.size());
  // Offsets are 32 bits wide: four gigabytes of ids would be a document no writer finishes.
  if (id.size() > std::numeric_limits<std::uint32_t>::max() ||
      arena_.size() + sizeof length + id.size() >= std::numeric_limits<std::uint32_t>::max()) {
    throw std::length_error("too many element ids for one document");
  }
  slot.hash = hash;
  slot.start = static_cast<std::uint32_t>(arena_.size() + 1);
  arena_.append(reinterpret_cast<const char*>(&length), sizeof length);
  arena_.append(id);
  ++size_;
  return true;
}

void IdSet::rehash(std::size_t slotCount) {
  std::vector<Slot> old;
  old.swap(slots_);
  slots_.assign(slotCount, Slot{});
  for (const Slot& slot : old) {
    if (slot.start != 0) slots_[find(idAt(slot), slot.hash)] = slot;
  }
}

}  // namespace qent::text::hocr
