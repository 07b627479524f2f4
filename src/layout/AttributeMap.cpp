// AttributeMap.cpp - the table of shared attribute keys and the sorted-vector operations.
#include "layout/AttributeMap.h"

#include <algorithm>
#include <cstring>
#include <functional>

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

AttributeMap::iterator AttributeMap::lowerBound(std::u16string_view key) {
  return std::lower_bound(entries_.begin(), entries_.end(), key,
                          [](const value_type& e, std::u16string_view k) { return e.first.view() < k; });
}

AttributeMap::iterator AttributeMap::find(std::u16string_view key) {
  const iterator at = lowerBound(key);
  return at != entries_.end() && at->first == key ? at : entries_.end();
}

AttributeMap::const_iterator AttributeMap::find(std::u16string_view key) const {
  return const_cast<AttributeMap*>(this)->find(key);
}

std::u16string& AttributeMap::operator[](std::u16string_view key) {
  iterator at = lowerBound(key);
  if (at == entries_.end() || at->first != key) {
    at = entries_.emplace(at, AttributeKey(key), std::u16string());
  }
  return at->second;
}

std::pair<AttributeMap::iterator, bool> AttributeMap::insert_or_assign(std::u16string_view key,
                                                                       std::u16string value) {
  iterator at = lowerBound(key);
  if (at != entries_.end() && at->first == key) {
    at->second = std::move(value);
    return {at, false};
  }
  return {entries_.emplace(at, AttributeKey(key), std::move(value)), true};
}

AttributeMap::iterator AttributeMap::insert_or_assign(const_iterator hint, std::u16string_view key,
                                                      std::u16string value) {
  const bool fits = (hint == entries_.begin() || std::prev(hint)->first.view() < key) &&
                    (hint == entries_.end() || key <= hint->first.view());
  if (!fits) return insert_or_assign(key, std::move(value)).first;
  const iterator at = entries_.begin() + (hint - entries_.cbegin());
  if (at != entries_.end() && at->first == key) {
    at->second = std::move(value);
    return at;
  }
  return entries_.emplace(at, AttributeKey(key), std::move(value));
}

void AttributeMap::assign(Entries entries) {
  std::stable_sort(entries.begin(), entries.end(),
                   [](const value_type& a, const value_type& b) { return a.first < b.first; });
  // Of each run of equal keys keep the last, which a sequence of sets would have left.
  // Walked backwards, unique keeps the first of each run, and the kept entries end up at
  // the back in their order.
  const auto first = std::unique(entries.rbegin(), entries.rend(),
                                 [](const value_type& a, const value_type& b) {
                                   return a.first == b.first;
                                 }).base();
  base::CompactVector<value_type> kept;
  kept.reserve(static_cast<std::size_t>(entries.end() - first));
  for (auto at = first; at != entries.end(); ++at) kept.push_back(std::move(*at));
  entries_ = std::move(kept);
}

}  // namespace qent::text::layout
