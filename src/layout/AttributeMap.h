// AttributeMap.h - the free attributes of a layout node: a small sorted vector of key/value
// pairs, whose frequent keys are shared instead of stored per node.
#pragma once

#include "base/CompactVector.h"

#include <compare>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qent::text::layout {

// The key of one attribute. A long document carries the same few keys on every word (the
// hOCR properties, the comparison's statistics); those point into one fixed table and cost
// no allocation, any other key owns a copy of exactly its length.
class AttributeKey {
public:
  AttributeKey() = default;
  explicit AttributeKey(std::u16string_view key);
  AttributeKey(const AttributeKey& other) : AttributeKey(other.view()) {}
  AttributeKey(AttributeKey&& other) noexcept
      : data_(std::exchange(other.data_, nullptr)), size_(std::exchange(other.size_, 0)) {}
  AttributeKey& operator=(AttributeKey other) noexcept {
    std::swap(data_, other.data_);
    std::swap(size_, other.size_);
    return *this;
  }
  ~AttributeKey();

  std::u16string_view view() const { return {data_, size_}; }
  operator std::u16string_view() const { return view(); }
  std::u16string str() const { return std::u16string(view()); }
  bool empty() const { return size_ == 0; }
  std::size_t size() const { return size_; }

  friend bool operator==(const AttributeKey& a, std::u16string_view b) { return a.view() == b; }
  friend bool operator==(const AttributeKey& a, const AttributeKey& b) {
    return a.view() == b.view();
  }
  friend std::strong_ordering operator<=>(const AttributeKey& a, const AttributeKey& b) {
    return a.view() <=> b.view();
  }

private:
  bool owned() const;

  const char16_t* data_ = u"";
  std::size_t size_ = 0;
};

// Keys sorted by their UTF-16 code units and unique, like the std::map it replaces, with
// the part of that interface the library uses. Lookups are binary searches; an insertion in
// the middle moves the later entries, so code that adds many attributes at once hands them
// over together (assign) instead of one by one.
class AttributeMap {
public:
  using value_type = std::pair<AttributeKey, std::u16string>;
  // What assign takes; the map itself keeps its entries in a one-pointer vector, since
  // most nodes of a large document have none.
  using Entries = std::vector<value_type>;
  using iterator = base::CompactVector<value_type>::iterator;
  using const_iterator = base::CompactVector<value_type>::const_iterator;

  iterator begin() { return entries_.begin(); }
  iterator end() { return entries_.end(); }
  const_iterator begin() const { return entries_.begin(); }
  const_iterator end() const { return entries_.end(); }
  std::size_t size() const { return entries_.size(); }
  bool empty() const { return entries_.empty(); }
  void clear() { entries_.clear(); }
  void reserve(std::size_t count) { entries_.reserve(count); }

  iterator find(std::u16string_view key);
  const_iterator find(std::u16string_view key) const;
  std::size_t count(std::u16string_view key) const { return find(key) != end() ? 1 : 0; }
  // The value of key, inserted empty when absent.
  std::u16string& operator[](std::u16string_view key);
  std::pair<iterator, bool> insert_or_assign(std::u16string_view key, std::u16string value);
  // The same, trying `hint` (the position the key would take) first: entries that come in
  // key order go in without a search.
  iterator insert_or_assign(const_iterator hint, std::u16string_view key, std::u16string value);
  iterator erase(const_iterator at) { return entries_.erase(at); }

  // Replaces the contents by these entries, in any order; of equal keys the last one wins,
  // as if each had been set in turn. One sort instead of an insertion each.
  void assign(Entries entries);

  friend bool operator==(const AttributeMap&, const AttributeMap&) = default;

private:
  iterator lowerBound(std::u16string_view key);

  base::CompactVector<value_type> entries_;
};

}  // namespace qent::text::layout
