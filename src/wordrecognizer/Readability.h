// Readability.h - Flesch reading ease (German form) and the four Wiener Sachtextformel
// values from the counts of a text, each on a 0 to 100 scale with its difficulty class.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace qent::text::wordrecognizer {

struct ReadabilityCounts {
  std::uint64_t totalWords = 0;
  std::uint64_t totalSyllables = 0;
  std::uint64_t totalSentences = 0;
  std::uint64_t oneSyllableWords = 0;
  std::uint64_t polysyllableWords = 0;  // three syllables or more
  std::uint64_t longWords = 0;          // more than six characters
};

struct Readability {
  int fre = 0;
  std::array<int, 4> wstf{};  // mapped onto 0..100, higher is harder
};

Readability computeReadability(const ReadabilityCounts& counts);
std::string_view freClass(int fre);
std::string_view wstfClass(int mappedWstf);

}  // namespace qent::text::wordrecognizer
