// CharacterAlignmentTest.cpp - the report's alignment and confusion counting against a
// deliberately simple reference, on seeded random texts.
#include "layout/comparison/report/CharacterAlignment.h"

#include "layout/comparison/EditDistance.h"
#include "layout/comparison/report/ConfusionCounter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace {

using namespace qent::text::layout::comparison::report;

// The textbook full-table Levenshtein distance.
std::size_t referenceDistance(const std::u16string& a, const std::u16string& b) {
  std::vector<std::vector<std::size_t>> d(a.size() + 1, std::vector<std::size_t>(b.size() + 1));
  for (std::size_t i = 0; i <= a.size(); ++i) d[i][0] = i;
  for (std::size_t j = 0; j <= b.size(); ++j) d[0][j] = j;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    for (std::size_t j = 1; j <= b.size(); ++j) {
      d[i][j] = std::min(
          {d[i - 1][j] + 1, d[i][j - 1] + 1, d[i - 1][j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1)});
    }
  }
  return d[a.size()][b.size()];
}

std::u16string randomText(std::mt19937& random, std::size_t maxLength,
                          std::u16string_view alphabet) {
  std::uniform_int_distribution<std::size_t> length(0, maxLength), pick(0, alphabet.size() - 1);
  std::u16string text(length(random), u' ');
  for (char16_t& c : text) c = alphabet[pick(random)];
  return text;
}

// The runs must spell out both texts, keep only equal units, change every substituted unit,
// and cost exactly the distance.
void expectValidAlignment(const std::u16string& truth, const std::u16string& recognised) {
  const CharacterAlignment alignment = alignCharacters(truth, recognised);
  std::u16string truthSide, recognisedSide;
  std::size_t cost = 0;
  for (const EditRun& run : alignment.runs) {
    const auto t = std::u16string_view(truth).substr(run.truthStart, run.truthLength);
    const auto r =
        std::u16string_view(recognised).substr(run.recognisedStart, run.recognisedLength);
    truthSide += t;
    recognisedSide += r;
    switch (run.kind) {
      case EditKind::Match: EXPECT_EQ(t, r); break;
      case EditKind::Substitution:
        ASSERT_EQ(t.size(), r.size());
        for (std::size_t i = 0; i < t.size(); ++i) EXPECT_NE(t[i], r[i]);
        cost += t.size();
        break;
      case EditKind::Insertion:
        EXPECT_TRUE(t.empty());
        cost += r.size();
        break;
      case EditKind::Deletion:
        EXPECT_TRUE(r.empty());
        cost += t.size();
        break;
    }
  }
  EXPECT_EQ(truthSide, truth);
  EXPECT_EQ(recognisedSide, recognised);
  const std::size_t distance = referenceDistance(truth, recognised);
  EXPECT_EQ(cost, distance);
  EXPECT_EQ(alignment.edits, distance);
  EXPECT_EQ(qent::text::layout::comparison::editDistance(truth, recognised), distance);
}

TEST(CharacterAlignmentTest, IsAMinimalEditScriptOfRandomTexts) {
  std::mt19937 random(20261125);
  for (int i = 0; i < 2000; ++i) {
    const std::u16string truth = randomText(random, 14, u"abc ");
    const std::u16string recognised = randomText(random, 14, u"abc ");
    SCOPED_TRACE(testing::Message() << "case " << i);
    expectValidAlignment(truth, recognised);
    if (HasFatalFailure()) return;
  }
}

TEST(CharacterAlignmentTest, TooLongToAlignStillCountsExactly) {
  const std::u16string truth(5000, u'a'), recognised(5000, u'b');
  const CharacterAlignment alignment = alignCharacters(u"x" + truth, u"x" + recognised + u"y");
  EXPECT_EQ(alignment.edits, 5001u);
  ASSERT_EQ(alignment.runs.size(), 3u);
  EXPECT_EQ(alignment.runs[1].kind, EditKind::Deletion);
  EXPECT_EQ(alignment.runs[2].kind, EditKind::Insertion);
}

// Confusions planted into random text whose alphabet cannot take part in them, each between
// a ">" and a "<" that no other piece contains, are all found and nothing else is.
TEST(ConfusionCounterTest, FindsPlantedConfusions) {
  using Pieces = std::pair<std::u16string, std::u16string>;
  const std::vector<Pieces> plants = {
      {u"m", u"rn"}, {u"l", u"1"}, {u"ri", u"n"}, {u"0", u""}, {u"", u"."}};
  std::mt19937 random(7);
  std::map<Pieces, std::size_t> planted, found;
  ConfusionCounter counter;
  for (int line = 0; line < 300; ++line) {
    std::u16string truth = u">", recognised = u">";
    std::uniform_int_distribution<std::size_t> which(0, plants.size());
    for (int piece = 0; piece < 6; ++piece) {
      std::u16string filler = u"<";
      filler += randomText(random, 3, u"abcde");
      filler += u">";
      truth += filler;
      recognised += filler;
      if (const std::size_t p = which(random); p < plants.size()) {
        truth += plants[p].first;
        recognised += plants[p].second;
        ++planted[plants[p]];
      }
    }
    counter.add(truth, recognised, alignCharacters(truth, recognised));
  }
  for (const Confusion& c : counter.mostFrequent(100)) found[{c.truth, c.recognised}] = c.count;
  EXPECT_EQ(found, planted);
}

// Four substitutions cost as much as the two confusions around the kept "x"; only the
// latter says what the engine confused.
TEST(ConfusionCounterTest, KeepsTheCharacterBetweenTwoConfusions) {
  ConfusionCounter counter;
  const std::u16string truth = u"mxri", recognised = u"rnxn";
  counter.add(truth, recognised, alignCharacters(truth, recognised));
  std::u16string found;
  for (const Confusion& c : counter.mostFrequent(10)) found += c.truth + u">" + c.recognised + u" ";
  EXPECT_EQ(found, u"m>rn ri>n ");
}

TEST(ConfusionCounterTest, LeavesOutGarbledStretchesAndKeepsTheLimit) {
  ConfusionCounter counter;
  const std::u16string truth = u"a tree b", recognised = u"a #%&!?@ b";
  counter.add(truth, recognised, alignCharacters(truth, recognised));
  EXPECT_TRUE(counter.mostFrequent(10).empty());
  for (const auto& [t, r] : {std::pair{u"xay", u"xby"}, {u"xcy", u"xdy"}, {u"xcy", u"xdy"}}) {
    counter.add(t, r, alignCharacters(t, r));
  }
  const std::vector<Confusion> top = counter.mostFrequent(1);
  ASSERT_EQ(top.size(), 1u);
  EXPECT_EQ(top[0].truth + u">" + top[0].recognised, u"c>d");
  EXPECT_EQ(top[0].count, 2u);
}

}  // namespace
