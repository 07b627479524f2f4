// HocrProperties.cpp - the hOCR property grammar, hand-parsed on views into the document.
#include "hocr/HocrProperties.h"

#include "base/NumberConversion.h"

#include <algorithm>
#include <limits>

namespace qent::text::hocr {

bool isHocrSpace(char c) {
  return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r';
}

std::string_view trimHocrSpace(std::string_view text) {
  std::size_t begin = 0;
  std::size_t end = text.size();
  while (begin < end && isHocrSpace(text[begin])) ++begin;
  while (end > begin && isHocrSpace(text[end - 1])) --end;
  return text.substr(begin, end - begin);
}

bool hasHocrPrefix(std::string_view text) {
  return text.starts_with("ocr_") || text.starts_with("ocrx_");
}

namespace {

std::uint64_t lengthBit(std::string_view key) {
  return std::uint64_t{1} << std::min<std::size_t>(key.size(), 63);
}

}  // namespace

void PropertyMap::add(std::string_view text, char delimiter, bool replace) {
  // Collect the pieces with their position, then sort by key and keep the last of each
  // run of equal keys: "the last one wins" without a quadratic search on hostile titles.
  scratch_.clear();
  std::size_t start = 0;
  while (true) {
    const std::size_t end = std::min(text.find(';', start), text.size());
    const std::string_view piece = trimHocrSpace(text.substr(start, end - start));
    const std::size_t split = piece.find(delimiter);
    Entry entry;
    if (split == std::string_view::npos) {
      entry.key = piece;
    } else {
      entry.key = trimHocrSpace(piece.substr(0, split));
      entry.value = trimHocrSpace(piece.substr(split + 1));
    }
    scratch_.emplace_back(entry, scratch_.size());
    if (end == text.size()) break;
    start = end + 1;
  }
  std::sort(scratch_.begin(), scratch_.end(), [](const auto& a, const auto& b) {
    return a.first.key != b.first.key ? a.first.key < b.first.key : a.second < b.second;
  });

  merged_.clear();
  merged_.reserve(entries_.size() + scratch_.size());
  std::size_t old = 0;
  for (std::size_t i = 0; i < scratch_.size(); ++i) {
    if (i + 1 < scratch_.size() && scratch_[i + 1].first.key == scratch_[i].first.key) continue;
    const Entry& entry = scratch_[i].first;
    while (old < entries_.size() && entries_[old].key < entry.key) merged_.push_back(entries_[old++]);
    if (old < entries_.size() && entries_[old].key == entry.key) {
      merged_.push_back(replace ? entry : entries_[old]);
      ++old;
    } else {
      merged_.push_back(entry);
    }
  }
  while (old < entries_.size()) merged_.push_back(entries_[old++]);
  entries_.swap(merged_);
  taken_.assign(entries_.size(), false);
  lengths_ = 0;
  for (const Entry& entry : entries_) lengths_ |= lengthBit(entry.key);
}

std::size_t PropertyMap::find(std::string_view key) const {
  // Handlers ask for a dozen properties an element rarely has; most are refused here.
  if ((lengths_ & lengthBit(key)) == 0) return entries_.size();
  const auto it = std::lower_bound(entries_.begin(), entries_.end(), key,
                                   [](const Entry& e, std::string_view k) { return e.key < k; });
  if (it == entries_.end() || it->key != key) return entries_.size();
  return static_cast<std::size_t>(it - entries_.begin());
}

bool PropertyMap::contains(std::string_view key) const {
  const std::size_t i = find(key);
  return i < entries_.size() && !taken_[i];
}

std::string_view PropertyMap::take(std::string_view key) {
  const std::size_t i = find(key);
  if (i == entries_.size() || taken_[i]) return {};
  taken_[i] = true;
  return entries_[i].value;
}

std::vector<std::string_view> splitAtSpace(std::string_view value) {
  std::vector<std::string_view> pieces;
  std::size_t i = 0;
  while (true) {
    std::size_t end = i;
    while (end < value.size() && !isHocrSpace(value[end])) ++end;
    if (end == value.size()) {
      // The text after the last separator counts only when it is not empty.
      if (end > i || pieces.empty()) pieces.push_back(value.substr(i));
      break;
    }
    pieces.push_back(value.substr(i, end - i));
    i = end;
    while (i < value.size() && isHocrSpace(value[i])) ++i;
    if (i == value.size()) break;
  }
  return pieces;
}

std::array<std::int32_t, 4> readFourIntegers(std::string_view value) {
  std::array<std::int32_t, 4> numbers{0, 0, 0, 0};
  std::size_t i = 0;
  for (std::int32_t& number : numbers) {
    while (i < value.size() && isHocrSpace(value[i])) ++i;
    bool negative = false;
    if (i < value.size() && (value[i] == '+' || value[i] == '-')) {
      negative = value[i] == '-';
      ++i;
    }
    const std::size_t digits = i;
    std::int64_t magnitude = 0;
    bool overflow = false;
    for (; i < value.size() && value[i] >= '0' && value[i] <= '9'; ++i) {
      if (!overflow) {
        magnitude = magnitude * 10 + (value[i] - '0');
        if (magnitude > std::int64_t{1} << 32) overflow = true;
      }
    }
    if (i == digits) break;  // a failed extraction leaves this and every later number 0
    const std::int64_t signedValue = negative ? -magnitude : magnitude;
    if (overflow || signedValue > std::numeric_limits<std::int32_t>::max() ||
        signedValue < std::numeric_limits<std::int32_t>::min()) {
      number = negative ? std::numeric_limits<std::int32_t>::min()
                        : std::numeric_limits<std::int32_t>::max();
      break;  // out of range: the limit is stored and the stream stops
    }
    number = static_cast<std::int32_t>(signedValue);
  }
  return numbers;
}

std::optional<std::array<std::uint8_t, 3>> parseColor(std::string_view text) {
  std::string compact;
  compact.reserve(text.size());
  for (const char c : text) {
    if (c == ' ') continue;
    compact.push_back(c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c);
  }
  if (!compact.starts_with("rgb(")) return std::nullopt;
  const std::size_t open = compact.find('(');
  const std::size_t close = compact.find(')');
  if (close == std::string::npos || close < open) return std::nullopt;
  const std::string_view inner = std::string_view(compact).substr(open + 1, close - open - 1);

  std::array<std::string_view, 3> pieces;
  std::size_t count = 0;
  std::size_t start = 0;
  while (true) {
    const std::size_t comma = std::min(inner.find(',', start), inner.size());
    if (count == pieces.size()) return std::nullopt;
    pieces[count++] = trimHocrSpace(inner.substr(start, comma - start));
    if (comma == inner.size()) break;
    start = comma + 1;
  }
  if (count != pieces.size()) return std::nullopt;
  std::array<std::uint8_t, 3> rgb{};
  for (std::size_t k = 0; k < rgb.size(); ++k) {
    rgb[k] = static_cast<std::uint8_t>(base::parseInt(pieces[k]));
  }
  return rgb;
}

std::uint32_t fontStyleCode(std::string_view name) {
  if (name == "normal") return 1;
  if (name == "italic") return 2;
  if (name == "oblique") return 3;
  return 0;
}

std::uint32_t fontWeightCode(std::string_view name) {
  if (name == "light") return 1;
  if (name == "normal") return 2;
  if (name == "bold") return 3;
  return 0;
}

std::string_view fontStyleName(std::uint32_t code) {
  switch (code) {
    case 1: return "normal";
    case 2: return "italic";
    case 3: return "oblique";
    default: return {};
  }
}

std::string_view fontWeightName(std::uint32_t code) {
  switch (code) {
    case 1: return "light";
    case 2: return "normal";
    case 3: return "bold";
    default: return {};
  }
}

std::vector<std::pair<std::string, std::string>> parseVersions(std::string_view content) {
  std::vector<std::pair<std::string, std::string>> versions;
  std::size_t start = 0;
  while (true) {
    const std::size_t end = std::min(content.find(';', start), content.size());
    const std::string_view piece = trimHocrSpace(content.substr(start, end - start));
    const std::size_t colon = piece.find(':');
    if (colon == std::string_view::npos) {
      versions.emplace_back(std::string(piece), std::string(piece));
    } else {
      versions.emplace_back(std::string(piece.substr(0, colon)),
                            std::string(piece.substr(colon + 1)));
    }
    if (end == content.size()) break;
    start = end + 1;
  }
  return versions;
}

}  // namespace qent::text::hocr
