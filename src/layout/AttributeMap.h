// AttributeMap.h - the free attributes of a layout node: sorted key/value pairs in one block,
// whose frequent keys are shared instead of stored per node.
#pragma once

#include <compare>
#include <cstddef>
#include <initializer_list>
#include <iterator>
#include <memory>
#include <optional>
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

// Keys sorted by their UTF-16 code units and unique, like the std::map it replaces. All
// entries live in one block of UTF-16 code units, one after the other: a frequent key is a
// single unit (its place in the shared table), a length is one unit (three when it is
// 65,535 or more), and the texts follow. The two attributes every hOCR word carries ("bbox"
// and "x_wconf") take one 64-byte heap block, where separate keys and std::u16string values
// took 176 bytes. Values are handed out as views, valid until the map changes; every change
// writes a new block, so code that sets several attributes sets them at once (update).
class AttributeMap {
public:
  // What iterating gives: views of one entry.
  struct Entry {
    std::u16string_view first;   // the key
    std::u16string_view second;  // the value
    friend bool operator==(const Entry&, const Entry&) = default;
  };
  using value_type = Entry;
  // What assign takes.
  using Entries = std::vector<std::pair<AttributeKey, std::u16string>>;
  using Change = std::pair<std::u16string_view, std::u16string_view>;

  class const_iterator {
  public:
    using iterator_category = std::forward_iterator_tag;
    using value_type = Entry;
    using difference_type = std::ptrdiff_t;
    using pointer = const Entry*;
    using reference = const Entry&;

    const_iterator() = default;
    const Entry& operator*() const { return entry_; }
    const Entry* operator->() const { return &entry_; }
    const_iterator& operator++() {
      at_ = next_;
      load();
      return *this;
    }
    const_iterator operator++(int) {
      const_iterator before = *this;
      ++*this;
      return before;
    }
    friend bool operator==(const const_iterator& a, const const_iterator& b) {
      return a.at_ == b.at_;
    }

  private:
    friend class AttributeMap;
    const_iterator(const char16_t* at, const char16_t* end) : at_(at), end_(end) { load(); }
    void load();

    const char16_t* at_ = nullptr;
    const char16_t* end_ = nullptr;
    const char16_t* next_ = nullptr;
    Entry entry_;
  };
  using iterator = const_iterator;

  AttributeMap() = default;
  AttributeMap(const AttributeMap& other);
  AttributeMap(AttributeMap&& other) noexcept = default;
  AttributeMap& operator=(const AttributeMap& other);
  AttributeMap& operator=(AttributeMap&& other) noexcept = default;

  const_iterator begin() const;
  const_iterator end() const;
  std::size_t size() const;
  bool empty() const { return block_ == nullptr; }
  void clear() { block_.reset(); }

  const_iterator find(std::u16string_view key) const;
  std::size_t count(std::u16string_view key) const { return find(key) != end() ? 1 : 0; }
  // The value of key; empty when absent.
  std::u16string_view value(std::u16string_view key) const;
  std::optional<std::u16string_view> get(std::u16string_view key) const;
  void insert_or_assign(std::u16string_view key, std::u16string_view value) {
    update({{key, value}});
  }
  // Sets every key to its value (the last of equal keys wins) in one new block. The values
  // may view this map itself.
  void update(std::initializer_list<Change> changes);
  void erase(std::u16string_view key);

  // Replaces the contents by these entries, in any order; of equal keys the last one wins,
  // as if each had been set in turn. One sort instead of an insertion each.
  void assign(Entries entries);

  friend bool operator==(const AttributeMap& a, const AttributeMap& b);

private:
  // Writes the block of these entries, sorted and unique.
  void build(const std::vector<Entry>& entries);

  std::unique_ptr<char16_t[]> block_;  // null when empty
};

}  // namespace qent::text::layout
