// TextStatistics.cpp - counting words and deriving the quality measures.
#include "wordrecognizer/TextStatistics.h"

#include "wordrecognizer/DigramTable.h"

#include <cmath>

namespace qent::text::wordrecognizer {

namespace {

void countLength(std::vector<std::uint64_t>& perLength, std::uint64_t length) {
  if (perLength.size() <= length) perLength.resize(length + 1, 0);
  ++perLength[length];
}

}  // namespace

double roundFour(double value) { return std::floor(value * 10000 + 0.5) / 10000; }

void addDigrams(const DigramTable& table, const std::u16string& text, DigramSums& sums) {
  if (text.size() < 2) {
    // A single character is a digram without a score: it lowers the average.
    if (!text.empty()) ++sums.count;
    return;
  }
  for (std::size_t i = 0; i + 1 < text.size(); ++i) {
    const std::uint64_t score = table.score(text[i], text[i + 1]);
    ++sums.count;
    sums.sum += score;
    sums.squareSum += score * score;
  }
}

void TextStatistics::addWord(const std::u16string& word, std::uint64_t length, WordClass wordClass,
                             bool isLarge, std::uint32_t syllables) {
  switch (wordClass) {
    case WordClass::Stop:
      stop.add(length);
      ++stopFrequency[word];
      break;
    case WordClass::Small: small.add(length); break;
    case WordClass::Main:
      main.add(length);
      ++mainFrequency[word];
      countLength(mainPerLength, length);
      if (isLarge) large.add(length);
      break;
    case WordClass::Rejected:
      rejected.add(length);
      ++rejectedFrequency[word];
      return;  // rejected words are counted apart from the total and from readability
  }
  total.add(length);
  countLength(totalPerLength, length);
  ++readability.totalWords;
  readability.totalSyllables += syllables;
  if (syllables == 1) ++readability.oneSyllableWords;
  if (syllables >= 3) ++readability.polysyllableWords;
  if (length > 6) ++readability.longWords;
  ++wordsSinceSentenceEnd_;
}

void TextStatistics::closeSentence() {
  if (wordsSinceSentenceEnd_ == 0) return;
  ++readability.totalSentences;
  wordsSinceSentenceEnd_ = 0;
}

void TextStatistics::finish() {
  if (total.characters + rejected.characters > 0) {
    glyphRatioLongWords = 100.0 * static_cast<double>(large.characters) /
                          static_cast<double>(total.characters + rejected.characters);
  }
  if (rawGlyphCount > 0) {
    longerGlyphRate = 100.0 * static_cast<double>(total.characters - small.characters) /
                      static_cast<double>(rawGlyphCount);
  }
  auto scores = [](const DigramSums& sums, double& arithmetic, double& geometric) {
    if (sums.count == 0) return;
    arithmetic = static_cast<double>(sums.sum) / static_cast<double>(sums.count);
    geometric = std::sqrt(static_cast<double>(sums.squareSum) / static_cast<double>(sums.count));
  };
  scores(rawDigrams, rawDigramArithmetic, rawDigramGeometric);
  scores(filteredDigrams, filteredDigramArithmetic, filteredDigramGeometric);
  const double wordFactor =
      total.words <= 100 ? static_cast<double>(total.words) / 100.0 : 1.0;
  fulltextQuality = std::pow(glyphRatioLongWords / 100 * wordFactor * (rawDigramArithmetic / 9) *
                                 (longerGlyphRate / 100),
                             0.25);
  glyphRatioLongWords = roundFour(glyphRatioLongWords);
  longerGlyphRate = roundFour(longerGlyphRate);
  rawDigramArithmetic = roundFour(rawDigramArithmetic);
  rawDigramGeometric = roundFour(rawDigramGeometric);
  filteredDigramArithmetic = roundFour(filteredDigramArithmetic);
  filteredDigramGeometric = roundFour(filteredDigramGeometric);
  fulltextQuality = roundFour(fulltextQuality);
}

}  // namespace qent::text::wordrecognizer
