// AttributeMap.cpp - the table of shared attribute keys and the one-block encoding.
#include "layout/AttributeMap.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <functional>
#include <stdexcept>

namespace qent::text::layout {

namespace {

// The keys that large layouts repeat on every node, all in one array so that a key can tell
// by its address whether it points here. Sorted, for a binary search.
constexpr char16_t kSharedKeys[] =
    u"additional_versions\0baseline\0bbox\0class\0comp_count\0comp_errors\0comp_extId\0"
    u"comp_f1Measure\0dir\0font-family\0font-size\0font-style\0font-weight\0id\0image\0lang\0"
    u"ppageno\0scan_res\0style\0textangle\0title\0x_ascenders\0x_checked\0x_confs\0"
    u"x_descenders\0x_entity\0x_font\0x_fsize\0x_lconf\0x_rejected\0x_sensibility\0x_size\0"
    u"x_wconf\0";

struct SharedKeys {
  std::vector<std::u16string_view> keys;
  SharedKeys() {
    const char16_t* at = kSharedKeys;
    const char16_t* end = kSharedKeys + std::size(kSharedKeys) - 1;
    while (at < end) {
      const std::u16string_view key(at);
      keys.push_back(key);
      at += key.size() + 1;
    }
    std::sort(keys.begin(), keys.end());
  }
};

const SharedKeys& sharedKeys() {
  static const SharedKeys shared;
  return shared;
}

const char16_t* sharedCopy(std::u16string_view key) {
  const auto& keys = sharedKeys().keys;
  const auto found = std::lower_bound(keys.begin(), keys.end(), key);
  return found != keys.end() && *found == key ? found->data() : nullptr;
}

}  // namespace

AttributeKey::AttributeKey(std::u16string_view key) : size_(key.size()) {
  if (key.empty()) return;
  if (const char16_t* shared = sharedCopy(key)) {
    data_ = shared;
    return;
  }
  auto* owned = new char16_t[key.size()];
  std::memcpy(owned, key.data(), key.size() * sizeof(char16_t));
  data_ = owned;
}

AttributeKey::~AttributeKey() {
  if (owned()) delete[] data_;
}

bool AttributeKey::owned() const {
  if (data_ == nullptr || size_ == 0) return false;
  const std::less<const char16_t*> before;
  return before(data_, kSharedKeys) || !before(data_, kSharedKeys + std::size(kSharedKeys));
}

namespace {

// The block: its length in units and its entry count (each two units), then the entries.
constexpr std::size_t kHeader = 4;
constexpr char16_t kOwnedKey = 0x8000;   // a key unit at or above: the key's text follows
constexpr char16_t kLongKey = 0x7FFF;    // owned key length that says: the length follows
constexpr char16_t kLongValue = 0xFFFF;  // value length that says: the length follows

std::uint32_t read32(const char16_t* at) {
  return static_cast<std::uint32_t>(at[0]) | static_cast<std::uint32_t>(at[1]) << 16;
}
void write32(char16_t* at, std::size_t value) {
  at[0] = static_cast<char16_t>(value & 0xFFFF);
  at[1] = static_cast<char16_t>(value >> 16);
}

// The key's place in the shared table, or -1.
int sharedIndex(std::u16string_view key) {
  const auto& keys = sharedKeys().keys;
  const auto found = std::lower_bound(keys.begin(), keys.end(), key);
  return found != keys.end() && *found == key ? static_cast<int>(found - keys.begin()) : -1;
}

std::size_t lengthUnits(std::size_t length, char16_t escape) { return length >= escape ? 3 : 1; }

char16_t* writeLength(char16_t* out, std::size_t length, char16_t escape, char16_t flag) {
  if (length < escape) {
    *out = static_cast<char16_t>(flag | length);
    return out + 1;
  }
  out[0] = static_cast<char16_t>(flag | escape);
  write32(out + 1, length);
  return out + 3;
}

char16_t* writeText(char16_t* out, std::u16string_view text) {
  std::copy(text.begin(), text.end(), out);
  return out + text.size();
}

}  // namespace

void AttributeMap::const_iterator::load() {
  if (at_ == end_) return;
  const char16_t* at = at_;
  const char16_t unit = *at++;
  if (unit < kOwnedKey) {
    entry_.first = sharedKeys().keys[unit];
  } else {
    std::size_t length = unit & kLongKey;
    if (length == kLongKey) {
      length = read32(at);
      at += 2;
    }
    entry_.first = std::u16string_view(at, length);
    at += length;
  }
  std::size_t length = *at++;
  if (length == kLongValue) {
    length = read32(at);
    at += 2;
  }
  entry_.second = std::u16string_view(at, length);
  next_ = at + length;
}

AttributeMap::AttributeMap(const AttributeMap& other) {
  if (other.block_ == nullptr) return;
  const std::size_t units = read32(other.block_.get());
  block_ = std::make_unique_for_overwrite<char16_t[]>(units);
  std::copy(other.block_.get(), other.block_.get() + units, block_.get());
}

AttributeMap& AttributeMap::operator=(const AttributeMap& other) {
  if (this != &other) *this = AttributeMap(other);
  return *this;
}

AttributeMap::const_iterator AttributeMap::begin() const {
  if (block_ == nullptr) return {};
  return {block_.get() + kHeader, block_.get() + read32(block_.get())};
}

AttributeMap::const_iterator AttributeMap::end() const {
  if (block_ == nullptr) return {};
  const char16_t* end = block_.get() + read32(block_.get());
  return {end, end};
}

std::size_t AttributeMap::size() const { return block_ != nullptr ? read32(block_.get() + 2) : 0; }

AttributeMap::const_iterator AttributeMap::find(std::u16string_view key) const {
  for (const_iterator it = begin(), stop = end(); it != stop; ++it) {
    if (it->first == key) return it;
    if (key < it->first) break;
  }
  return end();
}

std::u16string_view AttributeMap::value(std::u16string_view key) const {
  return get(key).value_or(std::u16string_view());
}

std::optional<std::u16string_view> AttributeMap::get(std::u16string_view key) const {
  const const_iterator found = find(key);
  if (found == end()) return std::nullopt;
  return found->second;
}

void AttributeMap::update(std::initializer_list<Change> changes) {
  std::vector<Change> sorted(changes);
  std::stable_sort(sorted.begin(), sorted.end(),
                   [](const Change& a, const Change& b) { return a.first < b.first; });
  std::vector<Entry> merged;
  merged.reserve(size() + sorted.size());
  const_iterator it = begin();
  const const_iterator stop = end();
  for (std::size_t i = 0; i < sorted.size(); ++i) {
    // Of equal keys the last counts.
    if (i + 1 < sorted.size() && sorted[i + 1].first == sorted[i].first) continue;
    const std::u16string_view key = sorted[i].first;
    for (; it != stop && it->first < key; ++it) merged.push_back(*it);
    if (it != stop && it->first == key) ++it;
    merged.push_back({key, sorted[i].second});
  }
  for (; it != stop; ++it) merged.push_back(*it);
  build(merged);
}

void AttributeMap::erase(std::u16string_view key) {
  std::vector<Entry> kept;
  for (const Entry& entry : *this) {
    if (entry.first != key) kept.push_back(entry);
  }
  if (kept.size() != size()) build(kept);
}

void AttributeMap::assign(Entries entries) {
  std::stable_sort(entries.begin(), entries.end(),
                   [](const auto& a, const auto& b) { return a.first < b.first; });
  std::vector<Entry> kept;
  kept.reserve(entries.size());
  for (std::size_t i = 0; i < entries.size(); ++i) {
    // Of each run of equal keys the last, which a sequence of sets would have left.
    if (i + 1 < entries.size() && entries[i + 1].first == entries[i].first) continue;
    kept.push_back({entries[i].first.view(), entries[i].second});
  }
  build(kept);
}

void AttributeMap::build(const std::vector<Entry>& entries) {
  if (entries.empty()) {
    block_.reset();
    return;
  }
  std::vector<int> shared(entries.size());
  std::size_t units = kHeader;
  for (std::size_t i = 0; i < entries.size(); ++i) {
    const auto& [key, value] = entries[i];
    shared[i] = sharedIndex(key);
    units += shared[i] >= 0 ? 1 : lengthUnits(key.size(), kLongKey) + key.size();
    units += lengthUnits(value.size(), kLongValue) + value.size();
  }
  if (units > UINT32_MAX) throw std::length_error("the attributes of a node exceed 4 GB");
  // The entries may view the block being replaced: it goes only once the new one is full.
  auto block = std::make_unique_for_overwrite<char16_t[]>(units);
  write32(block.get(), units);
  write32(block.get() + 2, entries.size());
  char16_t* out = block.get() + kHeader;
  for (std::size_t i = 0; i < entries.size(); ++i) {
    const auto& [key, value] = entries[i];
    if (shared[i] >= 0) {
      *out++ = static_cast<char16_t>(shared[i]);
    } else {
      out = writeText(writeLength(out, key.size(), kLongKey, kOwnedKey), key);
    }
    out = writeText(writeLength(out, value.size(), kLongValue, 0), value);
  }
  block_ = std::move(block);
}

bool operator==(const AttributeMap& a, const AttributeMap& b) {
  if (a.block_ == nullptr || b.block_ == nullptr) return a.block_ == b.block_;
  const std::size_t units = read32(a.block_.get());
  return units == read32(b.block_.get()) &&
         std::equal(a.block_.get(), a.block_.get() + units, b.block_.get());
}

}  // namespace qent::text::layout
