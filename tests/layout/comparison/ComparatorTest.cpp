// ComparatorTest.cpp - the comparison rules the differential test cannot reach: whole-word
// and entity comparison, counting without length differences, astral characters, glyph and
// content texts, nodes without area, nested pages and scaled alignment.
#include "base/QentException.h"
#include "layout/Nodes.h"
#include "layout/comparison/ComparisonFixture.h"

#include <gtest/gtest.h>

namespace qent::test {
namespace {

using text::layout::comparison::Alignment;
using text::layout::comparison::CompareLevel;
using text::layout::comparison::CompareMode;
using text::layout::comparison::CompareOptions;

std::string onePage(const std::string& words) {
  return "Content:node{Page{Line[0,0,500,20]{" + words + "}}}";
}

CompareOptions options(bool characterwise = true, bool countLengthDifference = true,
                       CompareMode mode = CompareMode::Text) {
  CompareOptions out;
  out.characterwise = characterwise;
  out.countLengthDifference = countLengthDifference;
  out.mode = mode;
  out.alignment = Alignment::None;
  return out;
}

// One word against one word on the same rectangle: "left counts, right counts, f1".
std::string pair(const std::string& left, const std::string& right, const CompareOptions& o) {
  ComparisonRun run(onePage("Word[0,0,50,20]" + left), onePage("Word[0,0,50,20]" + right), o);
  const auto* l = &run.left->root()->child(0).child(0).child(0);
  const auto* r = &run.right->root()->child(0).child(0).child(0);
  EXPECT_EQ(run.f1(l), run.f1(r));
  return run.counts(l) + " " + run.counts(r) + " " + run.f1(l);
}

TEST(ComparatorTest, CountsBothSidesOfAPair) {
  struct Case {
    const char* left;
    const char* right;
    bool characterwise;
    bool countLengthDifference;
    CompareMode mode;
    const char* want;
  };
  constexpr CompareMode kText = CompareMode::Text, kEntity = CompareMode::Entity;
  const Case cases[] = {
      {"\"ab\"", "\"abcd\"", true, false, kText, "2/0/0 4/2/2 0.666667"},
      {"\"abc\"", "\"abxd\"", true, false, kText, "3/1/1 4/2/2 0.571429"},
      {"\"\"", "\"\"", true, true, kText, "0/0/0 0/0/0 1.000000"},  // count 0 is rate 1
      {"\"abc\"", "\"ABC\"", false, true, kText, "1/1/0 1/1/0 0.000000"},
      {"\"ab\"", "\"abcd\"", false, true, kText, "1/1/0 1/1/2 0.000000"},
      {"\"ab\"", "\"abcd\"", false, false, kText, "1/1/1 1/1/1 0.000000"},
      // An astral character is two code units.
      {"\"a\xF0\x9D\x90\x80\"", "\"a\"", true, true, kText, "3/2/2 1/0/0 0.500000"},
      // The entity mode compares only the part of the mark before the first blank, whatever
      // the texts.
      {"\"ab\"(entity=\"PER B-1\")", "\"abc\"(entity=\"PER I-2\")", true, true, kEntity,
       "1/0/0 1/0/0 1.000000"},
      {"\"ab\"(entity=PER)", "\"abc\"(entity=ORG)", true, false, kEntity, "1/1/1 1/1/1 0.000000"},
      {"\"ab\"(entity=per)", "\"abc\"(entity=PER)", true, true, kEntity, "1/1/0 1/1/0 0.000000"},
      {"\"ab\"(entity=PER)", "\"abc\"", true, true, kEntity, "1/1/0 1/1/0 0.000000"},
      // No mark on either side counts nothing.
      {"\"ab\"", "\"abc\"", true, false, kEntity, "0/0/0 0/0/0 1.000000"}};
  for (const Case& c : cases) {
    EXPECT_EQ(pair(c.left, c.right, options(c.characterwise, c.countLengthDifference, c.mode)),
              c.want)
        << c.left << " vs " << c.right;
  }
}

TEST(ComparatorTest, PairsAndCountsWordsOfAPage) {
  struct Case {
    std::string left, right;
    const char* wantLeft;
    const char* wantRight;
  };
  const Case cases[] = {
      // Touching rectangles do not overlap; a right word without area stays unpaired.
      {"Word#L[0,0,10,10]\"ab\"", "Word#R[10,0,10,10]\"ab\"", "L=2/2/2>none", "R=2/2/2>none"},
      {"Word#L[0,0,10,10]\"ab\"", "Word#R[0,0,0,10]\"ab\"", "L=2/2/2>none", "R=2/2/2>none"},
      // A word reads its own text, then its glyphs', then its contents'.
      {"Word#L[0,0,10,10]\"ab\"{Glyph[0,0,5,10]\"a\",Glyph[5,0,5,10]\"b\"}",
       "Word#R[0,0,10,10]\"ab\"", "L=4/2/2>R", "R=2/0/0>L"},
      {"Word#L[0,0,10,10]\"a\"{Content:note\"z\",Glyph[0,0,5,10]\"b\"}",
       "Word#R[0,0,10,10]\"abz\"", "L=3/0/0>R", "R=3/0/0>L"}};
  for (const Case& c : cases) {
    ComparisonRun run(onePage(c.left), onePage(c.right), options());
    EXPECT_EQ(run.level(*run.left), c.wantLeft) << c.left;
    EXPECT_EQ(run.level(*run.right), c.wantRight) << c.right;
  }
  ComparisonRun nested("Content:node{Box[0,0,99,99]{Page{Word#a[0,0,10,10]\"ab\"}}}",
                       "Content:node{Page{Word#b[0,0,10,10]\"ab\"}}", options());
  EXPECT_EQ(nested.level(*nested.left), "a=2/0/0>b") << "pages below other nodes are paired";
}

TEST(ComparatorTest, LevelNoneComparesNothing) {
  CompareOptions none = options();
  none.level = CompareLevel::None;
  ComparisonRun run(onePage("Word#l[0,0,5,5]\"a\""), onePage("Word#r[0,0,5,5]\"b\""), none);
  EXPECT_EQ(run.counts(run.left->root()), "0/0/0");
  EXPECT_EQ(run.comparator->statistics(run.left->root())->recognitionRate, 1.0);
}

TEST(ComparatorTest, AggregatesUnitsNotRates) {
  // Page 1: 10 units, 0 errors; page 2: 2 units, 2 errors. The root's rate is 10/12, not
  // the mean of 1.0 and 0.0.
  ComparisonRun run(
      "Content:node{Page{Word#a[0,0,10,10]\"abcdefghij\"},Page{Word#b[0,0,10,10]\"xy\"}}",
      "Content:node{Page{Word#c[0,0,10,10]\"abcdefghij\"},Page{Word#d[0,0,10,10]\"uv\"}}",
      options());
  EXPECT_EQ(run.counts(run.left->root()), "12/2/0");
  EXPECT_DOUBLE_EQ(run.comparator->statistics(run.left->root())->recognitionRate, 10.0 / 12.0);
  EXPECT_EQ(run.f1(run.left->root()), base::formatFixed6(10.0 / 12.0));
}

TEST(ComparatorTest, ALeftNodeWithoutAreaIsAnError) {
  for (const char* rect : {"[0,0,0,10]", "[0,0,10,0]", ""}) {
    try {
      ComparisonRun run(onePage(std::string("Word") + rect + "\"a\""),
                        onePage("Word[0,0,10,10]\"a\""), options());
      ADD_FAILURE() << rect << " was accepted";
    } catch (const base::QentException& e) {
      EXPECT_STREQ(e.what(), "Width or Height of Rectangle must be > 0");
      EXPECT_EQ(e.code(), base::kErrorOption);
    }
  }
}

TEST(ComparatorTest, CenterAlignmentScalesByThePageSizes) {
  // The reference was made from a scan at twice the resolution.
  const std::string left =
      "Content:node{Page(w=100,h=100){Word#a[10,10,20,10]\"one\",Word#b[40,10,20,10]\"two\"}}";
  const std::string right =
      "Content:node{Page(w=200,h=200){Word#c[20,20,40,20]\"one\",Word#d[80,20,40,20]\"two\"}}";
  CompareOptions center = options();
  center.alignment = Alignment::Center;
  ComparisonRun aligned(left, right, center);
  EXPECT_EQ(aligned.level(*aligned.left), "a=3/0/0>c b=3/0/0>d");
  CompareOptions corner = options();
  corner.alignment = Alignment::Corner;
  ComparisonRun shifted(left, right, corner);
  // Unscaled, the left words are half the size: "two" overlaps no reference word.
  EXPECT_EQ(shifted.level(*shifted.left), "a=3/0/0>c b=3/3/3>none");
}

}  // namespace
}  // namespace qent::test
