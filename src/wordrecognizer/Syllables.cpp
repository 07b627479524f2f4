// Syllables.cpp - the syllable walk: start, vowel nucleus, consonant cluster, end.
#include "wordrecognizer/Syllables.h"

#include "wordrecognizer/Characters.h"

#include <algorithm>
#include <string_view>

namespace qent::text::wordrecognizer {

namespace {

// Latin-1 rule lists, written as \x escapes so the source stays ASCII.
constexpr std::string_view kVowels = "aeiouy\xF6\xE4\xFC";
constexpr std::string_view kConsonants = "bcdfghjklmnpqrstvwxz\xDF";
constexpr std::string_view kVowelGroups[] = {"\xE4u", "ue", "oe", "io", "ie",
                                             "eu",    "ei", "au", "ai", "ae"};
constexpr std::string_view kNeverSplit[] = {"th", "rh", "qu", "ph", "ngs", "ck", "ch"};
constexpr std::string_view kEndGroups[] = {
    "xt",  "tz", "ts",  "st",  "sch", "rzt", "rz",  "rtz", "rt", "rst", "rn",   "rm",  "rl",
    "rkt", "rk", "pft", "pf",  "nz",  "nt",  "ns",  "nkt", "ngs", "ng", "nd",   "mpft", "mpf",
    "kt",  "ht", "hrts", "hrst", "hr", "hn", "hl",  "fts", "ftl", "ft", "fl",   "dt",  "ckt",
    "ck",  "chts", "cht", "chs", "ch"};
constexpr std::string_view kBeginGroups[] = {
    "zw", "wr", "tr",  "th",  "str", "st",  "spr", "sp", "schw", "schr", "schn", "schm",
    "schl", "sch", "rh", "qu", "pt",  "ps",  "pr",  "pl", "ph",   "pfl",  "pf",   "kr",
    "kn", "kl", "gr",  "gn",  "gl",  "fr",  "fl",  "ch", "br",   "bl"};

template <std::size_t N>
bool listed(const std::string_view (&list)[N], std::string_view text) {
  return std::find(std::begin(list), std::end(list), text) != std::end(list);
}

bool isVowel(char c) { return c != 0 && kVowels.find(c) != std::string_view::npos; }

std::string latin1Lower(const std::u16string& word) {
  std::string text;
  text.reserve(word.size());
  for (char16_t c : word) {
    const char16_t lower = toLower(c);
    text.push_back(lower <= 0xFF ? static_cast<char>(lower) : '\0');
  }
  return text;
}

// How many consonants of the cluster between two nuclei open the next syllable (at least
// one, so a consonant always starts the syllable after it).
std::size_t consonantsToNext(std::string_view cluster) {
  if (listed(kNeverSplit, cluster) || listed(kBeginGroups, cluster)) return cluster.size();
  // A group that closes a syllable keeps its consonants; the rest opens the next one.
  for (std::size_t length = cluster.size() - 1; length >= 2; --length) {
    if (listed(kEndGroups, cluster.substr(0, length))) return cluster.size() - length;
  }
  for (std::size_t length = cluster.size() - 1; length >= 2; --length) {
    const std::string_view tail = cluster.substr(cluster.size() - length);
    if (listed(kBeginGroups, tail) || listed(kNeverSplit, tail)) return length;
  }
  return 1;
}

}  // namespace

std::vector<std::size_t> syllableSplits(const std::u16string& word) {
  const std::string text = latin1Lower(word);
  std::vector<std::size_t> splits;
  enum class State { Start, Vowel, Consonant, End } state = State::Start;
  std::size_t nucleusEnd = 0;     // last character of the previous nucleus
  std::size_t clusterStart = 0;   // first character after it
  std::size_t i = 0;
  while (state != State::End) {
    if (i >= text.size()) {
      state = State::End;
      continue;
    }
    const char c = text[i];
    if (!isVowel(c)) {
      if (state == State::Vowel) {
        state = State::Consonant;
        clusterStart = i;
      }
      ++i;
      continue;
    }
    // A vowel: one nucleus of one or two characters.
    std::size_t length = 1;
    if (i + 1 < text.size() && isVowel(text[i + 1]) &&
        (text[i + 1] == c || listed(kVowelGroups, std::string_view(text).substr(i, 2)))) {
      length = 2;
    }
    if (state == State::Vowel) {
      splits.push_back(nucleusEnd);  // two nuclei side by side split between them
    } else if (state == State::Consonant) {
      std::string_view cluster = std::string_view(text).substr(clusterStart, i - clusterStart);
      const bool allConsonants =
          std::all_of(cluster.begin(), cluster.end(),
                      [](char k) { return k != 0 && kConsonants.find(k) != std::string_view::npos; });
      // Anything but letters (a hyphen, an apostrophe) is its own boundary.
      const std::size_t toNext = allConsonants ? consonantsToNext(cluster) : 1;
      splits.push_back(i - toNext - 1);
    }
    state = State::Vowel;
    nucleusEnd = i + length - 1;
    i += length;
  }
  std::erase_if(splits, [&](std::size_t position) { return position + 2 >= text.size(); });
  return splits;
}

std::uint32_t SyllableCounter::count(const std::u16string& word) {
  const auto found = cache_.find(word);
  if (found != cache_.end()) return found->second;
  const auto syllables = static_cast<std::uint32_t>(syllableSplits(word).size() + 1);
  cache_.emplace(word, syllables);
  return syllables;
}

}  // namespace qent::text::wordrecognizer
