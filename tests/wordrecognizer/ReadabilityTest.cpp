// ReadabilityTest.cpp - the readability formulas on their worked examples, and syllables.
#include "wordrecognizer/Readability.h"
#include "wordrecognizer/Syllables.h"

#include <gtest/gtest.h>

namespace qent::text::wordrecognizer {
namespace {

struct ReadabilityCase {
  const char* title;
  ReadabilityCounts counts;
  int fre;
  std::array<int, 4> wstf;
};

TEST(ReadabilityTest, WorkedExamples) {
  const ReadabilityCase cases[] = {
      // No words: FRE 180 is cut to 100, every WSTF grade is clamped to 4 and maps to 0.
      {"empty", {}, 100, {0, 0, 0, 0}},
      // One sentence of 20 words and 40 syllables: 180 - 20 - 58.5 * 2 = 43.
      {"twenty words", {20, 40, 1, 0, 0, 0}, 43, {0, 0, 0, 0}},
      // All words polysyllabic and long in one 100-word sentence: every grade above 15.
      {"hard", {100, 400, 1, 0, 100, 100}, 0, {100, 100, 100, 100}},
      // FRE = 180 - 10 - 58.5 * 2 = 53. MS 50, ASL 10, IW 50, ES 50: WSTF1 = 9.675+1.672+6.485-1.635-0.875 = 15.322 -> 100;
      // WSTF3 = 14.815 + 1.905 - 1.1144 = 15.6056 -> 100; WSTF4 = 13.72+2.656-1.693 = 14.683
      // -> (10.683 / 11) * 100 = 97.1 -> 97; WSTF2 = 10.035+1.682+6.865-2.779 = 15.803.
      {"mixed", {100, 200, 10, 50, 50, 50}, 53, {100, 100, 100, 97}},
  };
  for (const ReadabilityCase& c : cases) {
    const Readability r = computeReadability(c.counts);
    EXPECT_EQ(r.fre, c.fre) << c.title;
    EXPECT_EQ(r.wstf, c.wstf) << c.title;
  }
}

TEST(ReadabilityTest, ClassesIncludeTheirLowerBound) {
  const std::pair<int, const char*> fre[] = {{90, "Very easy"}, {89, "Light"}, {30, "Heavy"},
                                             {29, "Very difficult"}};
  for (const auto& [value, name] : fre) EXPECT_EQ(freClass(value), name) << value;
  const std::pair<int, const char*> wstf[] = {{13, "Very easy"}, {14, "Light"}, {84, "Very difficult"}};
  for (const auto& [value, name] : wstf) EXPECT_EQ(wstfClass(value), name) << value;
}

TEST(SyllablesTest, CountsGermanWords) {
  const std::pair<std::u16string, std::uint32_t> words[] = {
      {u"Haus", 1}, {u"Boot", 1}, {u"Tee", 1}, {u"Idee", 2}, {u"Hunde", 2}, {u"Name", 2},
      {u"machen", 2}, {u"Fenster", 2}, {u"Rechnungsnummer", 4}, {u"Bauer", 2},
      {u"Bürgermeister", 4}, {u"unterschrieben", 4}, {u"z.B.", 1}, {u"4711", 1}};
  SyllableCounter counter;
  for (const auto& [word, syllables] : words) {
    EXPECT_EQ(counter.count(word), syllables) << std::string(word.begin(), word.end());
  }
  // The position is the last character before the split: ma|chen, Wurst|brot, Fens|ter.
  EXPECT_EQ(syllableSplits(u"machen"), (std::vector<std::size_t>{1}));
  EXPECT_EQ(syllableSplits(u"Wurstbrot"), (std::vector<std::size_t>{4}));
  EXPECT_EQ(syllableSplits(u"Fenster"), (std::vector<std::size_t>{3}));
}



}  // namespace
}  // namespace qent::text::wordrecognizer
