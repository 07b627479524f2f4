// EditDistanceTest.cpp - the bit-parallel distance against the plain dynamic programme.
#include "layout/comparison/EditDistance.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <string>
#include <tuple>
#include <vector>

namespace qent::text::layout::comparison {
namespace {

// The textbook single-row Levenshtein programme: the shorter text indexes the row.
std::size_t referenceDistance(std::u16string_view a, std::u16string_view b) {
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

// A few known distances keep the reference honest; the random pairs below do the rest.
TEST(EditDistanceTest, KnownDistancesBothWays) {
  const std::tuple<std::u16string, std::u16string, std::size_t> cases[] = {
      {u"", u"abc", 3}, {u"kitten", u"sitting", 3}, {u"flaw", u"lawn", 2},
      // An astral letter is two code units; precomposed and decomposed forms differ.
      {u"a\U0001D400b", u"axyb", 2}, {u"\u00E9", u"e\u0301", 2},
      // Long texts cross the 64-unit block boundary.
      {std::u16string(65, u'x') + u"y" + std::u16string(64, u'x'), std::u16string(130, u'x'), 1}};
  for (const auto& [a, b, want] : cases) {
    EXPECT_EQ(referenceDistance(a, b), want);
    EXPECT_EQ(editDistance(a, b), want);
    EXPECT_EQ(editDistance(b, a), want);
  }
}

// Random texts over an alphabet small enough to make many matches, with Latin letters,
// an umlaut, a private-use unit, and astral characters (surrogate pairs).
class TextSource {
public:
  explicit TextSource(std::uint64_t seed) : random_(seed) {}

  std::size_t length() {
    const unsigned kind = pick(100);
    if (kind < 75) return pick(24);
    if (kind < 95) return 50 + pick(100);  // around and across one block
    return 150 + pick(300);                // several blocks
  }

  std::u16string text(std::size_t length) {
    std::u16string out;
    while (out.size() < length) appendUnit(out);
    return out;
  }

  // A copy of `source` with OCR-like damage: substitutions, insertions, deletions.
  std::u16string damage(const std::u16string& source) {
    std::u16string out;
    const unsigned rate = 1 + pick(30);
    for (const char16_t unit : source) {
      const unsigned roll = pick(100);
      if (roll < rate / 3) continue;
      if (roll < 2 * rate / 3) {
        appendUnit(out);
        continue;
      }
      out.push_back(unit);
      if (roll < rate) appendUnit(out);
    }
    return out;
  }

  unsigned pick(unsigned bound) { return static_cast<unsigned>(random_() % bound); }

private:
  void appendUnit(std::u16string& out) {
    static constexpr char16_t kUnits[] = {u'a', u'b', u'c', u'e', u'n', u'r',
                                          u' ', u'\u00FC', u'\uE000', u'1'};
    if (pick(12) == 0) {
      // U+1D400..U+1D403 share one high surrogate, so units match in half a pair.
      out.push_back(u'\xD835');
      out.push_back(static_cast<char16_t>(0xDC00 + pick(4)));
    } else {
      out.push_back(kUnits[pick(std::size(kUnits))]);
    }
  }

  std::mt19937_64 random_;
};

TEST(EditDistanceTest, MatchesTheDynamicProgrammeOnRandomPairs) {
  TextSource source(20261123);
  for (int round = 0; round < 100000; ++round) {
    const std::u16string a = source.text(source.length());
    const std::u16string b = source.pick(2) == 0 ? source.damage(a) : source.text(source.length());
    const std::size_t want = referenceDistance(a, b);
    const std::size_t got = editDistance(a, b);
    if (got != want) {
      ADD_FAILURE() << "round " << round << ": lengths " << a.size() << " and " << b.size()
                    << ", distance " << got << " instead of " << want;
      return;
    }
  }
}

// Symbols beyond 16 bits (word and cluster ids) are renumbered before the fast kernel; the
// result must be that of the programme over the symbols themselves.
TEST(EditDistanceTest, SymbolDistanceMatchesTheProgrammeOverSymbols) {
  std::mt19937_64 random(20261125);
  for (int round = 0; round < 2000; ++round) {
    const std::uint32_t alphabet = 3 + random() % 40;
    const std::size_t length = random() % 90;
    std::u32string a, b;
    for (std::size_t i = 0; i < length; ++i) {
      a.push_back(static_cast<char32_t>(0x10FFF0 + random() % alphabet));
      b.push_back(random() % 4 == 0 ? static_cast<char32_t>(0x10FFF0 + random() % alphabet) : a[i]);
    }
    if (random() % 3 == 0) b.resize(random() % (b.size() + 1));
    std::u16string mappedA, mappedB;
    for (const char32_t c : a) mappedA.push_back(static_cast<char16_t>(c - 0x10FFF0 + 1));
    for (const char32_t c : b) mappedB.push_back(static_cast<char16_t>(c - 0x10FFF0 + 1));
    ASSERT_EQ(symbolEditDistance(a, b), referenceDistance(mappedA, mappedB)) << "round " << round;
  }
}

}  // namespace
}  // namespace qent::text::layout::comparison
