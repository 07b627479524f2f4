// TextVoteTest.cpp - the text voted for a word from its readings.
#include "bestof/TextVote.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using qent::bestof::Ballot;
using qent::bestof::voteText;

struct VoteCase {
  const char* label;
  std::vector<Ballot> ballots;
  std::u16string want;
};

class TextVoteTest : public ::testing::TestWithParam<VoteCase> {};

TEST_P(TextVoteTest, VotesTheText) { EXPECT_EQ(voteText(GetParam().ballots), GetParam().want); }

INSTANTIATE_TEST_SUITE_P(
    Readings, TextVoteTest,
    ::testing::Values(
        VoteCase{"Majority", {{u"hello", 0.1, 0}, {u"hcllo", 0.9, 1}, {u"hello", 0.1, 2}}, u"hello"},
        VoteCase{"TieGoesToConfidence", {{u"cat", 0.4, 0}, {u"cot", 0.9, 1}}, u"cot"},
        VoteCase{"ThenToTheEarlierInput", {{u"cat", -1, 1}, {u"cot", -1, 0}}, u"cot"},
        // No two readings agree, but every character has a majority.
        VoteCase{"PerCharacter", {{u"hcllo", 1, 0}, {u"hel1o", 1, 1}, {u"he1lo", 1, 2}}, u"hello"},
        VoteCase{"InsertionOutvoted", {{u"hel-lo", 1, 0}, {u"helo", 1, 1}, {u"hallo", 1, 2}},
                 u"hello"},
        VoteCase{"DeletionOutvoted", {{u"wrld", 1, 0}, {u"wor1d", 1, 1}, {u"world", 1, 2}},
                 u"world"},
        VoteCase{"NotANumber", {{u"12a", 1, 0}, {u"1b3", 1, 1}, {u"c23", 1, 2}, {u"123", 1, 3}},
                 u"123"},
        VoteCase{"OneReading", {{u"only", 0.5, 3}}, u"only"}),
    [](const auto& row) { return std::string(row.param.label); });

// A long text (a line read as one word) is not aligned cell by cell; the backbone stands.
TEST(TextVoteLimitTest, LongReadingsKeepTheBackbone) {
  const std::u16string a(1200, u'a'), b(1200, u'b');
  std::u16string c = a;
  c[5] = u'x';
  const std::vector<Ballot> ballots{{b, 1, 0}, {c, 1, 1}, {a, 0.5, 2}};
  EXPECT_EQ(voteText(ballots), c);
}

}  // namespace
