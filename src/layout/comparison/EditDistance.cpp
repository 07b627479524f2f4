// EditDistance.cpp - Myers/Hyyrö bit-vector Levenshtein distance with prefix/suffix stripping.
#include "layout/comparison/EditDistance.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace qent::text::layout::comparison {

namespace {

constexpr std::uint32_t kNoSlot = 0xFFFFFFFFu;

// Fibonacci hashing of a code unit into a table of 2^bits slots.
inline std::uint32_t slotOf(char16_t unit, unsigned bits) {
  return (static_cast<std::uint32_t>(unit) * 0x9E3779B1u) >> (32 - bits);
}

// Table size for m pattern units: a power of two of at least 2m slots, so linear probing
// stays short. At least 16 slots keeps the shift in slotOf below 32.
inline unsigned tableBits(std::size_t m) {
  return std::max(4u, static_cast<unsigned>(std::bit_width(2 * m - 1)));
}

// The single-block case (1 <= m <= 64): pattern masks in a small open-addressing table on
// the stack; an empty slot has mask 0, since every unit of the pattern sets one bit.
std::size_t distanceOneBlock(std::u16string_view pattern, std::u16string_view text) {
  const std::size_t m = pattern.size();
  const unsigned bits = tableBits(m);
  const std::uint32_t tableMask = (1u << bits) - 1;
  std::array<char16_t, 128> keys;
  std::array<std::uint64_t, 128> masks;
  std::fill_n(masks.begin(), std::size_t{1} << bits, 0);
  for (std::size_t i = 0; i < m; ++i) {
    std::uint32_t slot = slotOf(pattern[i], bits);
    while (masks[slot] != 0 && keys[slot] != pattern[i]) slot = (slot + 1) & tableMask;
    keys[slot] = pattern[i];
    masks[slot] |= std::uint64_t{1} << i;
  }
  auto lookup = [&](char16_t unit) -> std::uint64_t {
    std::uint32_t slot = slotOf(unit, bits);
    while (masks[slot] != 0) {
      if (keys[slot] == unit) return masks[slot];
      slot = (slot + 1) & tableMask;
    }
    return 0;
  };

  const std::uint64_t last = std::uint64_t{1} << (m - 1);
  std::uint64_t pv = ~std::uint64_t{0};
  std::uint64_t mv = 0;
  std::size_t score = m;
  for (const char16_t unit : text) {
    const std::uint64_t eq = lookup(unit);
    const std::uint64_t xv = eq | mv;
    const std::uint64_t xh = (((eq & pv) + pv) ^ pv) | eq;
    std::uint64_t ph = mv | ~(xh | pv);
    std::uint64_t mh = pv & xh;
    if ((ph & last) != 0) {
      ++score;
    } else if ((mh & last) != 0) {
      --score;
    }
    // The top row of the matrix grows by one per column, so +1 enters from above.
    ph = (ph << 1) | 1;
    mh <<= 1;
    pv = mh | ~(xv | ph);
    mv = ph & xv;
  }
  return score;
}

// One 64-row block of one column; hin is the horizontal delta entering at the block's top
// row, the return value the delta leaving at its row `high`.
inline int advanceBlock(std::uint64_t& pv, std::uint64_t& mv, std::uint64_t eq, int hin,
                        std::uint64_t high) {
  const std::uint64_t xv = eq | mv;
  if (hin < 0) eq |= 1;
  const std::uint64_t xh = (((eq & pv) + pv) ^ pv) | eq;
  std::uint64_t ph = mv | ~(xh | pv);
  std::uint64_t mh = pv & xh;
  int hout = 0;
  if ((ph & high) != 0) {
    hout = 1;
  } else if ((mh & high) != 0) {
    hout = -1;
  }
  ph <<= 1;
  mh <<= 1;
  if (hin < 0) {
    mh |= 1;
  } else if (hin > 0) {
    ph |= 1;
  }
  pv = mh | ~(xv | ph);
  mv = ph & xv;
  return hout;
}

// m > 64: the pattern is cut into blocks of 64 rows and each column is advanced block by
// block, carrying the horizontal delta from one block into the next.
std::size_t distanceBlocked(std::u16string_view pattern, std::u16string_view text) {
  const std::size_t m = pattern.size();
  const std::size_t blocks = (m + 63) / 64;
  const unsigned bits = tableBits(m);
  const std::uint32_t tableMask = (1u << bits) - 1;
  std::vector<char16_t> keys(std::size_t{1} << bits);
  std::vector<std::uint32_t> rows(std::size_t{1} << bits, kNoSlot);
  // Masks of distinct unit d at [d * blocks, (d + 1) * blocks); row 0 is all zero and
  // serves every unit that the pattern does not contain.
  std::vector<std::uint64_t> masks(blocks);
  for (std::size_t i = 0; i < m; ++i) {
    std::uint32_t slot = slotOf(pattern[i], bits);
    while (rows[slot] != kNoSlot && keys[slot] != pattern[i]) slot = (slot + 1) & tableMask;
    if (rows[slot] == kNoSlot) {
      keys[slot] = pattern[i];
      rows[slot] = static_cast<std::uint32_t>(masks.size() / blocks);
      masks.resize(masks.size() + blocks, 0);
    }
    masks[rows[slot] * blocks + i / 64] |= std::uint64_t{1} << (i % 64);
  }
  auto lookup = [&](char16_t unit) -> const std::uint64_t* {
    std::uint32_t slot = slotOf(unit, bits);
    while (rows[slot] != kNoSlot) {
      if (keys[slot] == unit) return masks.data() + rows[slot] * blocks;
      slot = (slot + 1) & tableMask;
    }
    return masks.data();
  };

  std::vector<std::uint64_t> pv(blocks, ~std::uint64_t{0});
  std::vector<std::uint64_t> mv(blocks, 0);
  const std::uint64_t lastHigh = std::uint64_t{1} << ((m - 1) % 64);
  const std::uint64_t fullHigh = std::uint64_t{1} << 63;
  std::size_t score = m;
  for (const char16_t unit : text) {
    const std::uint64_t* eq = lookup(unit);
    int carry = 1;
    for (std::size_t b = 0; b + 1 < blocks; ++b) {
      carry = advanceBlock(pv[b], mv[b], eq[b], carry, fullHigh);
    }
    carry = advanceBlock(pv[blocks - 1], mv[blocks - 1], eq[blocks - 1], carry, lastHigh);
    score = static_cast<std::size_t>(static_cast<std::ptrdiff_t>(score) + carry);
  }
  return score;
}

}  // namespace

std::size_t editDistance(std::u16string_view a, std::u16string_view b) {
  // Equal ends cost nothing and OCR errors are sparse, so most of a text goes here.
  const auto [aEnd, bEnd] = std::mismatch(a.begin(), a.end(), b.begin(), b.end());
  const std::size_t prefix = static_cast<std::size_t>(aEnd - a.begin());
  a.remove_prefix(prefix);
  b.remove_prefix(prefix);
  std::size_t suffix = 0;
  while (suffix < a.size() && suffix < b.size() &&
         a[a.size() - 1 - suffix] == b[b.size() - 1 - suffix]) {
    ++suffix;
  }
  a.remove_suffix(suffix);
  b.remove_suffix(suffix);

  if (a.size() > b.size()) std::swap(a, b);
  if (a.empty()) return b.size();
  // The shorter text is the pattern: fewer blocks per column.
  if (a.size() <= 64) return distanceOneBlock(a, b);
  return distanceBlocked(a, b);
}

}  // namespace qent::text::layout::comparison

namespace qent::text::layout::comparison {

namespace {

std::size_t singleRowDistance(std::u32string_view a, std::u32string_view b) {
  if (a.size() > b.size()) std::swap(a, b);
  std::vector<std::size_t> row(a.size() + 1);
  for (std::size_t i = 0; i <= a.size(); ++i) row[i] = i;
  for (std::size_t j = 1; j <= b.size(); ++j) {
    std::size_t diagonal = row[0];
    row[0] = j;
    for (std::size_t i = 1; i <= a.size(); ++i) {
      const std::size_t above = row[i];
      row[i] = std::min({row[i] + 1, row[i - 1] + 1, diagonal + (a[i - 1] == b[j - 1] ? 0 : 1)});
      diagonal = above;
    }
  }
  return row[a.size()];
}

}  // namespace

std::size_t symbolEditDistance(std::u32string_view a, std::u32string_view b) {
  // Equal ends cost nothing; stripping them first keeps the fallback's square small.
  while (!a.empty() && !b.empty() && a.front() == b.front()) {
    a.remove_prefix(1);
    b.remove_prefix(1);
  }
  while (!a.empty() && !b.empty() && a.back() == b.back()) {
    a.remove_suffix(1);
    b.remove_suffix(1);
  }
  // Most texts are in the Basic Multilingual Plane: their symbols fit as they are.
  const auto small = [](std::u32string_view s) {
    return std::all_of(s.begin(), s.end(), [](char32_t c) { return c <= 0xFFFF; });
  };
  if (small(a) && small(b)) {
    return editDistance(std::u16string(a.begin(), a.end()), std::u16string(b.begin(), b.end()));
  }
  std::unordered_map<char32_t, char16_t> ids;
  std::u16string denseA, denseB;
  denseA.reserve(a.size());
  denseB.reserve(b.size());
  const auto renumber = [&ids](std::u32string_view from, std::u16string& to) {
    for (const char32_t symbol : from) {
      const auto [at, added] = ids.try_emplace(symbol, static_cast<char16_t>(ids.size()));
      if (added && ids.size() > 0xFFFF) return false;
      to.push_back(at->second);
    }
    return true;
  };
  if (!renumber(a, denseA) || !renumber(b, denseB)) return singleRowDistance(a, b);
  return editDistance(denseA, denseB);
}

}  // namespace qent::text::layout::comparison
