// ComparatorTest.cpp - pairing, counting, unpaired nodes, pages and aggregation of the
// comparison engine, on small trees stated as text.
#include "base/QentException.h"
#include "layout/Nodes.h"
#include "layout/comparison/ComparisonFixture.h"

#include <gtest/gtest.h>

#include <ostream>

namespace qent::test {
namespace {

using text::layout::comparison::Alignment;
using text::layout::comparison::CompareLevel;
using text::layout::comparison::CompareMode;
using text::layout::comparison::CompareOptions;

std::string onePage(const std::string& words) { return "Content:node{Page{Line[0,0,500,20]{" + words + "}}}"; }

CompareOptions options(bool characterwise = true, bool countLengthDifference = true,
                       CompareMode mode = CompareMode::Text) {
  CompareOptions out;
  out.characterwise = characterwise;
  out.countLengthDifference = countLengthDifference;
  out.mode = mode;
  out.alignment = Alignment::None;
  return out;
}

// One word against one word on the same rectangle.
struct TextCase {
  const char* left;
  const char* right;
  bool characterwise;
  bool countLengthDifference;
  const char* want;  // left counts, right counts, f1
};

void PrintTo(const TextCase& c, std::ostream* out) {
  *out << '"' << c.left << "\" vs \"" << c.right << '"' << (c.characterwise ? " chars" : " whole")
       << (c.countLengthDifference ? " +length" : "");
}

class TextPairTest : public ::testing::TestWithParam<TextCase> {};

TEST_P(TextPairTest, CountsBothSides) {
  const TextCase& c = GetParam();
  ComparisonRun run(onePage(std::string("Word#l[0,0,50,20]\"") + c.left + "\""),
                    onePage(std::string("Word#r[0,0,50,20]\"") + c.right + "\""),
                    options(c.characterwise, c.countLengthDifference));
  const auto* l = &run.left->root()->child(0).child(0).child(0);
  const auto* r = &run.right->root()->child(0).child(0).child(0);
  EXPECT_EQ(run.counts(l) + " " + run.counts(r) + " " + run.f1(l), c.want);
  EXPECT_EQ(run.f1(l), run.f1(r));
}

INSTANTIATE_TEST_SUITE_P(
    Texts, TextPairTest,
    ::testing::Values(
        TextCase{"abc", "abc", true, true, "3/0/0 3/0/0 1.000000"},
        TextCase{"abc", "abd", true, true, "3/1/0 3/1/0 0.666667"},
        TextCase{"abc", "xyz", true, true, "3/3/0 3/3/0 0.000000"},
        // good = 4 - 2 = 2: the shorter side is all good, the longer has two errors.
        TextCase{"ab", "abcd", true, true, "2/0/0 4/2/2 0.666667"},
        TextCase{"ab", "abcd", true, false, "2/0/0 4/2/2 0.666667"},
        TextCase{"abc", "abxd", true, true, "3/1/0 4/2/1 0.571429"},
        TextCase{"abc", "abxd", true, false, "3/1/1 4/2/2 0.571429"},
        TextCase{"", "", true, true, "0/0/0 0/0/0 1.000000"},  // count 0 is rate 1
        TextCase{"", "ab", true, true, "0/0/0 2/2/2 0.000000"},
        TextCase{"abc", "ABC", false, true, "1/1/0 1/1/0 0.000000"},  // exact comparison
        TextCase{"abc", "abc", false, true, "1/0/0 1/0/0 1.000000"},
        TextCase{"ab", "abcd", false, true, "1/1/0 1/1/2 0.000000"},
        TextCase{"ab", "abcd", false, false, "1/1/1 1/1/1 0.000000"},
        // An astral character is two code units.
        TextCase{"a\xF0\x9D\x90\x80", "a", true, true, "3/2/2 1/0/0 0.500000"}));

struct EntityCase {
  const char* left;
  const char* right;
  bool countLengthDifference;
  const char* want;
};

class EntityPairTest : public ::testing::TestWithParam<EntityCase> {};

TEST_P(EntityPairTest, ComparesTheEntityClass) {
  const EntityCase& c = GetParam();
  ComparisonRun run(onePage(std::string("Word#l[0,0,50,20]\"ab\"") + c.left),
                    onePage(std::string("Word#r[0,0,50,20]\"abc\"") + c.right),
                    options(true, c.countLengthDifference, CompareMode::Entity));
  const auto* l = &run.left->root()->child(0).child(0).child(0);
  const auto* r = &run.right->root()->child(0).child(0).child(0);
  EXPECT_EQ(run.counts(l) + " " + run.counts(r) + " " + run.f1(l), c.want);
}

INSTANTIATE_TEST_SUITE_P(
    Entities, EntityPairTest,
    ::testing::Values(
        EntityCase{"(entity=PER)", "(entity=PER)", true, "1/0/0 1/0/0 1.000000"},
        // Only the part before the first blank is the class.
        EntityCase{"(entity=\"PER B-1\")", "(entity=\"PER I-2\")", true, "1/0/0 1/0/0 1.000000"},
        EntityCase{"(entity=PER)", "(entity=ORG)", true, "1/1/0 1/1/0 0.000000"},
        EntityCase{"(entity=PER)", "(entity=ORG)", false, "1/1/1 1/1/1 0.000000"},
        EntityCase{"(entity=PER)", "", true, "1/1/0 1/1/0 0.000000"},
        EntityCase{"(entity=per)", "(entity=PER)", true, "1/1/0 1/1/0 0.000000"},
        // No annotation on either side counts nothing.
        EntityCase{"", "", false, "0/0/0 0/0/0 1.000000"}));

// Whole pages: which node pairs with which, and the counts of every word.
struct PageCase {
  const char* name;
  std::string left;
  std::string right;
  const char* wantLeft;
  const char* wantRight;
};

void PrintTo(const PageCase& c, std::ostream* out) { *out << c.name; }

class PagePairingTest : public ::testing::TestWithParam<PageCase> {};

TEST_P(PagePairingTest, PairsAndCounts) {
  const PageCase& c = GetParam();
  ComparisonRun run(c.left, c.right, options());
  EXPECT_EQ(run.level(*run.left), c.wantLeft);
  EXPECT_EQ(run.level(*run.right), c.wantRight);
}

INSTANTIATE_TEST_SUITE_P(
    Pages, PagePairingTest,
    ::testing::Values(
        PageCase{"equal halves: the identical text wins the tie",
                 onePage("Word#L[0,0,20,10]\"foo\""),
                 onePage("Word#A[0,0,10,10]\"bar\",Word#B[10,0,10,10]\"foo\""),
                 "L=3/0/0>B", "A=3/3/3>none B=3/0/0>L"},
        PageCase{"equal halves, no identical text: the last candidate wins",
                 onePage("Word#L[0,0,20,10]\"foo\""),
                 onePage("Word#A[10,0,10,10]\"bar\",Word#B[0,0,10,10]\"fox\""),
                 "L=3/1/0>B", "A=3/3/3>none B=3/1/0>L"},
        PageCase{"a word split by the OCR pairs with its larger part",
                 onePage("Word#L[0,0,20,10]\"foobar\""),
                 onePage("Word#A[0,0,7,10]\"fo\",Word#B[8,0,12,10]\"obar\""),
                 "L=6/2/2>B", "A=2/2/2>none B=4/0/0>L"},
        PageCase{"no fallback to a second-best partner",
                 onePage("Word#L1[0,0,10,10]\"a\",Word#L2[5,0,10,10]\"b\""),
                 onePage("Word#R1[0,0,10,10]\"a\",Word#R2[12,0,10,10]\"b\""),
                 "L1=1/0/0>R1 L2=1/1/1>none", "R1=1/0/0>L1 R2=1/1/1>none"},
        PageCase{"touching rectangles do not overlap",
                 onePage("Word#L[0,0,10,10]\"ab\""), onePage("Word#R[10,0,10,10]\"ab\""),
                 "L=2/2/2>none", "R=2/2/2>none"},
        PageCase{"a right word without area stays unpaired",
                 onePage("Word#L[0,0,10,10]\"ab\""), onePage("Word#R[0,0,0,10]\"ab\""),
                 "L=2/2/2>none", "R=2/2/2>none"},
        PageCase{"a word reads its own text and then its glyphs'",
                 onePage("Word#L[0,0,10,10]\"ab\"{Glyph[0,0,5,10]\"a\",Glyph[5,0,5,10]\"b\"}"),
                 onePage("Word#R[0,0,10,10]\"ab\""), "L=4/2/2>R", "R=2/0/0>L"},
        PageCase{"content texts follow the fragment texts",
                 onePage("Word#L[0,0,10,10]\"a\"{Content:note\"z\",Glyph[0,0,5,10]\"b\"}"),
                 onePage("Word#R[0,0,10,10]\"abz\""), "L=3/0/0>R", "R=3/0/0>L"}));

TEST(ComparatorTest, ComparesGlyphsAndLinesAtTheirLevel) {
  const std::string tree =
      "Content:node{Page{Line#line1[0,0,20,10]{Word#w[0,0,20,10]{Glyph#g1[0,0,10,10]\"a\","
      "Glyph#g2[10,0,10,10]\"b\"}}}}";
  const std::string other =
      "Content:node{Page{Line#line2[0,0,20,10]{Word#v[0,0,20,10]{Glyph#h1[0,0,10,10]\"a\","
      "Glyph#h2[10,0,10,10]\"c\"}}}}";
  CompareOptions glyphs = options();
  glyphs.level = CompareLevel::Glyph;
  ComparisonRun atGlyphs(tree, other, glyphs);
  EXPECT_EQ(atGlyphs.level(*atGlyphs.left), "g1=1/0/0>h1 g2=1/1/0>h2");
  // Page and root sum their glyphs: 2 units, 1 error.
  EXPECT_EQ(atGlyphs.counts(atGlyphs.left->root()), "2/1/0");
  EXPECT_EQ(atGlyphs.counts(&atGlyphs.left->root()->child(0)), "2/1/0");

  CompareOptions lines = options();
  lines.level = CompareLevel::Line;
  ComparisonRun atLines(tree, other, lines);
  EXPECT_EQ(atLines.level(*atLines.left), "line1=2/1/0>line2");
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
  const auto* stats = run.comparator->statistics(run.left->root());
  ASSERT_NE(stats, nullptr);
  EXPECT_EQ(run.counts(run.left->root()), "12/2/0");
  EXPECT_DOUBLE_EQ(stats->recognitionRate, 10.0 / 12.0);
  EXPECT_EQ(run.f1(run.left->root()), base::formatFixed6(10.0 / 12.0));
}

TEST(ComparatorTest, PagesMissingOnOneSideCountAsWrong) {
  ComparisonRun run("Content:node{Page{Word#a[0,0,10,10]\"ab\"},Page{Word#b[0,0,10,10]\"xyz\"}}",
                    "Content:node{Page{Word#c[0,0,10,10]\"ab\"}}", options());
  ASSERT_EQ(run.comparator->pagePairs().size(), 2u);
  EXPECT_TRUE(run.comparator->isPlaceholder(run.comparator->pagePairs()[1].second));
  EXPECT_EQ(run.level(*run.left), "a=2/0/0>c b=3/3/3>none");
  const auto* secondPage = &run.left->root()->child(1);
  EXPECT_EQ(run.counts(secondPage), "3/3/3");
  EXPECT_EQ(run.f1(secondPage), "0.000000");
  EXPECT_EQ(run.counts(run.left->root()), "5/3/3");
}

TEST(ComparatorTest, PagesNestedBelowOtherNodesArePaired) {
  ComparisonRun run("Content:node{Box[0,0,99,99]{Page{Word#a[0,0,10,10]\"ab\"}}}",
                    "Content:node{Page{Word#b[0,0,10,10]\"ab\"}}", options());
  EXPECT_EQ(run.level(*run.left), "a=2/0/0>b");
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

TEST(ComparatorTest, CornerAlignmentFindsAShiftedRecognition) {
  const std::string left = onePage("Word#a[10,10,40,20]\"one\",Word#b[60,10,40,20]\"two\"");
  const std::string right =
      "Content:node{Page{Line[100,50,500,20]{Word#c[110,60,40,20]\"one\",Word#d[160,60,40,20]"
      "\"two\"}}}";
  ComparisonRun unaligned(left, right, options());
  EXPECT_EQ(unaligned.level(*unaligned.left), "a=3/3/3>none b=3/3/3>none");
  CompareOptions corner = options();
  corner.alignment = Alignment::Corner;
  ComparisonRun aligned(left, right, corner);
  EXPECT_EQ(aligned.level(*aligned.left), "a=3/0/0>c b=3/0/0>d");
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

TEST(ComparatorTest, StatisticsAreWrittenOntoBothLayouts) {
  ComparisonRun run(onePage("Word#a[0,0,10,10]\"abc\",Word#b[20,0,10,10]\"x\""),
                    onePage("Word#c[0,0,10,10]\"abd\""), options());
  run.comparator->createStatistics();
  const auto& root = run.left->root()->attributes();
  EXPECT_EQ(base::utf16ToUtf8(root.at(u"comp_count")), "4");
  EXPECT_EQ(base::utf16ToUtf8(root.at(u"comp_errors")), "2");
  EXPECT_EQ(base::utf16ToUtf8(root.at(u"comp_extId")), "none");
  EXPECT_FALSE(root.contains(u"comp_f1Measure"));
  const auto& line = run.left->root()->child(0).child(0);
  EXPECT_TRUE(line.attributes().empty()) << "only the level and the roots are annotated";
  const auto& a = line.child(0).attributes();
  EXPECT_EQ(base::utf16ToUtf8(a.at(u"comp_extId")), "c");
  EXPECT_EQ(base::utf16ToUtf8(a.at(u"comp_f1Measure")), "0.666667");
  const auto& b = line.child(1).attributes();
  EXPECT_EQ(base::utf16ToUtf8(b.at(u"comp_extId")), "none");
  EXPECT_EQ(b.at(u"comp_count"), b.at(u"comp_errors"));
  const auto& c = run.right->root()->child(0).child(0).child(0).attributes();
  EXPECT_EQ(base::utf16ToUtf8(c.at(u"comp_extId")), "a");
}

}  // namespace
}  // namespace qent::test
