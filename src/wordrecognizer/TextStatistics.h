// TextStatistics.h - the counts and measures of one page or of the whole document.
//
// The recognizer adds every token and every classified word; finish() then derives the
// ratios, digram scores and the full-text quality once. A zero divisor leaves a value at 0.
#pragma once

#include "wordrecognizer/Readability.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace qent::text::wordrecognizer {

enum class WordClass { Stop, Small, Main, Rejected };

struct ClassCount {
  std::uint64_t words = 0;
  std::uint64_t characters = 0;
  void add(std::uint64_t length) {
    ++words;
    characters += length;
  }
};

struct DigramSums {
  std::uint64_t count = 0;
  std::uint64_t sum = 0;
  std::uint64_t squareSum = 0;
};

struct GarbageRange {
  std::uint64_t first = 0;  // token indices, inclusive
  std::uint64_t last = 0;
  std::u16string text;      // the tokens joined by blanks
};

class TextStatistics {
public:
  ClassCount small, large, main, stop, rejected, total;
  std::uint64_t rawGlyphCount = 0;
  DigramSums rawDigrams, filteredDigrams;
  ReadabilityCounts readability;
  std::map<std::u16string, std::uint64_t> mainFrequency, stopFrequency, rejectedFrequency;
  std::vector<std::uint64_t> mainPerLength, totalPerLength;  // index = length in characters
  std::vector<GarbageRange> garbage;
  std::string language;

  // Derived by finish(), rounded to four decimals.
  double glyphRatioLongWords = 0;
  double longerGlyphRate = 0;
  double rawDigramArithmetic = 0, rawDigramGeometric = 0;
  double filteredDigramArithmetic = 0, filteredDigramGeometric = 0;
  double fulltextQuality = 0;

  // A classified word with its length in characters and its syllables.
  void addWord(const std::u16string& word, std::uint64_t length, WordClass wordClass, bool large,
               std::uint32_t syllables);
  // A run of garbage tokens closed by the recognizer.
  void addGarbage(GarbageRange range) { garbage.push_back(std::move(range)); }
  // Whether words were counted since the last sentence end.
  bool sentenceOpen() const { return wordsSinceSentenceEnd_ > 0; }
  void closeSentence();
  void finish();

private:
  std::uint64_t wordsSinceSentenceEnd_ = 0;
};

// Digram accumulation of one token (raw) or one word (filtered) into `sums`.
class DigramTable;
void addDigrams(const DigramTable& table, const std::u16string& text, DigramSums& sums);

// Four decimals, half up.
double roundFour(double value);

}  // namespace qent::text::wordrecognizer
