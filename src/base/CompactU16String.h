// CompactU16String.h - an owned UTF-16 string that is one pointer wide.
//
// Nearly every node of a large layout has an id, and ids like "ocr_0_12_3" are longer than
// the seven units a std::u16string holds without the heap: such an id cost the node 32
// bytes for the string plus its heap block. This keeps the length in front of the units
// on the heap, so the node pays 8 bytes and the same block, and an empty string holds no
// block at all. It is read as a std::u16string_view and replaced whole; it offers no
// editing, since ids are set once.
#pragma once

#include <cstdint>
#include <cstring>
#include <limits>
#include <new>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace qent::base {

class CompactU16String {
public:
  CompactU16String() = default;
  explicit CompactU16String(std::u16string_view text) { assign(text); }
  CompactU16String(const CompactU16String& other) { assign(other.view()); }
  CompactU16String(CompactU16String&& other) noexcept
      : block_(std::exchange(other.block_, nullptr)) {}
  CompactU16String& operator=(CompactU16String other) noexcept {
    std::swap(block_, other.block_);
    return *this;
  }
  ~CompactU16String() { ::operator delete(block_); }

  bool empty() const { return block_ == nullptr; }
  std::u16string_view view() const {
    if (block_ == nullptr) return {};
    std::uint32_t size;
    std::memcpy(&size, block_, sizeof size);
    return {units(block_), size};
  }

  // The text may be a view of this string itself: the new block is filled before the old
  // one is released.
  void assign(std::u16string_view text) {
    void* fresh = nullptr;
    if (!text.empty()) {
      if (text.size() > std::numeric_limits<std::uint32_t>::max()) {
        throw std::length_error("CompactU16String: more than 2^32 - 1 units");
      }
      const auto size = static_cast<std::uint32_t>(text.size());
      fresh = ::operator new(sizeof size + text.size() * sizeof(char16_t));
      std::memcpy(fresh, &size, sizeof size);
      std::memcpy(units(fresh), text.data(), text.size() * sizeof(char16_t));
    }
    ::operator delete(std::exchange(block_, fresh));
  }

private:
  // The units start 4 bytes into the block, aligned for char16_t.
  static char16_t* units(void* block) {
    return reinterpret_cast<char16_t*>(static_cast<char*>(block) + sizeof(std::uint32_t));
  }
  static const char16_t* units(const void* block) {
    return reinterpret_cast<const char16_t*>(static_cast<const char*>(block) +
                                             sizeof(std::uint32_t));
  }

  void* block_ = nullptr;
};

}  // namespace qent::base
