// QualityMeasuresTest.cpp - full-text quality, digram tables and the garbage rules.
#include "base/QentException.h"
#include "wordrecognizer/DigramTable.h"
#include "wordrecognizer/Garbage.h"
#include "wordrecognizer/TextStatistics.h"

#include <gtest/gtest.h>

#include <cmath>
#include <tuple>

namespace qent::text::wordrecognizer {
namespace {

// `words` main words of length 6, all large, with the given raw digram average (out of 9).
TextStatistics statistics(std::uint64_t words, double digramAverage, std::uint64_t smallWords = 0) {
  TextStatistics s;
  for (std::uint64_t i = 0; i < words; ++i) s.addWord(u"worten", 6, WordClass::Main, true, 2);
  for (std::uint64_t i = 0; i < smallWords; ++i) s.addWord(u"in", 2, WordClass::Small, false, 1);
  s.rawGlyphCount = words * 6 + smallWords * 2;
  s.rawDigrams = {100, static_cast<std::uint64_t>(digramAverage * 100), 0};
  s.finish();
  return s;
}

TEST(QualityMeasuresTest, QualityIsTheGeometricMeanOfFourFactors) {
  EXPECT_EQ(statistics(100, 9).fulltextQuality, 1.0);
  EXPECT_EQ(statistics(150, 9).fulltextQuality, 1.0);
  // Halving one factor: 0.5 ^ (1/4), rounded to four decimals.
  EXPECT_EQ(statistics(100, 4.5).fulltextQuality, 0.8409);
  EXPECT_EQ(statistics(50, 9).fulltextQuality, 0.8409);  // word factor 0.5
  // Small words lower the long-word rates: 600 of 900 characters are in long words.
  const TextStatistics empty = statistics(0, 0), small = statistics(100, 9, 150);
  EXPECT_EQ(std::tuple(empty.fulltextQuality, empty.glyphRatioLongWords, empty.longerGlyphRate),
            std::tuple(0.0, 0.0, 0.0));
  EXPECT_EQ(std::tuple(small.longerGlyphRate, small.glyphRatioLongWords), std::tuple(66.6667, 66.6667));
}

TEST(QualityMeasuresTest, OneLetterTokenCountsAsDigramWithoutScore) {
  const DigramTable table = DigramTable::parse("ab\n99\n99\n", "t");
  DigramSums sums;
  addDigrams(table, u"ab", sums);
  addDigrams(table, u"a", sums);
  EXPECT_EQ(std::tuple(sums.count, sums.sum, sums.squareSum), std::tuple(2u, 9u, 81u));
}

TEST(DigramTableTest, LooksUpBothCharactersLowerCased) {
  const DigramTable table = DigramTable::parse("# comment\r\n\r\naäß\r\n0 1 2\r\n345\r\n678\r\n", "t");
  EXPECT_EQ(table.score(u'a', u'\u00E4'), 1u);
  EXPECT_EQ(table.score(u'\u00C4', u'A'), 3u);
  EXPECT_EQ(table.score(u'\u00DF', u'\u00DF'), 8u);
  EXPECT_EQ(table.score(u'a', u'x'), 0u);
}

TEST(DigramTableTest, ErrorsNameTheTable) {
  const std::pair<const char*, const char*> cases[] = {
      {"# only a comment\n\n", "t.digram: digram score table has no data"},
      {"ab\n12\n", "t.digram: digram score table has inconsistent number of lines"},
      {"ab\n12\n123\n", "t.digram: digram score table has inconsistent number of values"},
      {"ab\n12\n1\n", "t.digram: digram score table has inconsistent number of values"},
      {"ab\n12\n1x\n", "t.digram: invalid digram score value (expectes '0' .. '9')"},
      {"aa\n12\n12\n", "t.digram: digram score table alphabet names the character 'a' twice"},
      {"a\xFF\n12\n12\n", "t.digram: digram score table alphabet is not valid UTF-8"},
  };
  for (const auto& [bytes, message] : cases) {
    try {
      DigramTable::parse(bytes, "t.digram");
      ADD_FAILURE() << "no error for " << bytes;
    } catch (const base::QentException& e) {
      EXPECT_EQ(std::string(e.what()), message);
      EXPECT_EQ(e.code(), base::kErrorOption);
    }
  }
  EXPECT_THROW(DigramTable::load("no/such/t.digram"), base::QentException);
}

TEST(GarbageTest, RulesTellDebrisFromWords) {
  const std::pair<std::u16string, bool> tokens[] = {
      {u"Haus", false}, {u"z.B.", false}, {u"11.05.2023", false}, {u"McDonald", false},
      {u"a", false}, {u",:;", true}, {u"~~i", false}, {u"~~~~i", true}, {u"aaaa", true},
      {u"1111", false}, {u"Xqzt", false}, {u"bcdfghjk", true}, {u"aeioua", true},
      {u"ab.c,d", true}, {u"iPhone", true}, {u"abCd", true}, {u"ab.Cd", false},
      {std::u16string(41, u'a') + u"b", true}, {u"Straßenbahn", false}};
  for (const auto& [token, garbage] : tokens) {
    EXPECT_EQ(isGarbage(token), garbage) << std::string(token.begin(), token.end());
  }
}

}  // namespace
}  // namespace qent::text::wordrecognizer
