// BestOfMergeTest.cpp - the merge against its inputs on generated recognitions with
// independent errors, measured by the library's own comparison; and the vote threshold.
#include "bestof/BestOfMerge.h"
#include "bestof/LineBuilder.h"
#include "bestof/WordClusters.h"

#include "layout/Layout.h"
#include "layout/Nodes.h"
#include "layout/comparison/Comparator.h"
#include "layout/comparison/LayoutComparison.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

using namespace qent::text::layout;
using qent::bestof::BestOfOptions;
using qent::bestof::mergeLayouts;

constexpr int kPageWidth = 2480, kPageHeight = 3508, kHeight = 40, kCharWidth = 20;

struct GroundWord {
  std::u16string text;
  Rect rect;
};
using GroundPage = std::vector<GroundWord>;

std::vector<GroundPage> makeTruth(unsigned seed) {
  std::mt19937 random(seed);
  std::vector<GroundPage> pages(5);
  for (GroundPage& page : pages) {
    for (int line = 0; line < 30; ++line) {
      int left = 100;
      for (int w = 0; w < 10; ++w) {
        std::u16string text(2 + random() % 8, u'a');
        for (char16_t& c : text) c = static_cast<char16_t>(u'a' + random() % 26);
        const int width = static_cast<int>(text.size()) * kCharWidth;
        page.push_back({text, {left, 150 + line * 100, width, kHeight}});
        left += width + 30;
      }
    }
  }
  return pages;
}

struct Noise {
  unsigned seed;
  double scale = 1;  // the recognition's page is this much of the truth's
  double charErrors = 0.05, missing = 0.02, splits = 0.02, jitter = 0.2;
};

// One recognition of the truth, with errors independent of every other seed's.
std::unique_ptr<Layout> recognise(const std::vector<GroundPage>& truth, const Noise& noise) {
  std::mt19937 random(noise.seed);
  std::uniform_real_distribution<double> unit(0, 1);
  auto root = std::make_unique<Content>();
  root->setTypeName(u"node");
  for (const GroundPage& ground : truth) {
    Page& page = root->appendChild(std::make_unique<Page>());
    page.setWidth(static_cast<std::uint32_t>(kPageWidth * noise.scale));
    page.setHeight(static_cast<std::uint32_t>(kPageHeight * noise.scale));
    Line& line = page.appendChild(std::make_unique<Line>());
    auto add = [&](std::u16string text, Rect r) {
      const double shift = noise.jitter * kHeight;
      r.left += static_cast<int>((unit(random) * 2 - 1) * shift);
      r.top += static_cast<int>((unit(random) * 2 - 1) * shift);
      Word& word = line.appendChild(std::make_unique<Word>());
      word.setRect({static_cast<int>(r.left * noise.scale), static_cast<int>(r.top * noise.scale),
                    static_cast<int>(r.width * noise.scale), static_cast<int>(r.height * noise.scale)});
      word.setConfidence(50 + unit(random) * 50);
      word.setText(std::move(text));
    };
    for (GroundWord word : ground) {
      if (unit(random) < noise.missing) continue;
      for (char16_t& c : word.text) {
        if (unit(random) < noise.charErrors) c = static_cast<char16_t>(u'a' + random() % 26);
      }
      if (word.text.size() > 1 && unit(random) < noise.splits) {
        const int cut = 1 + static_cast<int>(random() % (word.text.size() - 1));
        Rect r = word.rect;
        add(word.text.substr(0, cut), {r.left, r.top, cut * kCharWidth - 5, r.height});
        add(word.text.substr(cut), {r.left + cut * kCharWidth + 5, r.top,
                                    r.width - cut * kCharWidth - 5, r.height});
      } else {
        add(word.text, word.rect);
      }
    }
  }
  return std::make_unique<Layout>(std::move(root));
}

// Characters wrong on either side over characters on both sides, by a word-level comparison
// with the edit distance: a missing word, a split half and a misread letter all count.
double errorRate(Layout& recognition, Layout& truth) {
  comparison::CompareOptions options;
  options.alignment = comparison::Alignment::None;
  auto comparator = comparison::makeComparator(options, recognition, truth);
  comparator->compare();
  const auto* left = comparator->statistics(recognition.root());
  const auto* right = comparator->statistics(truth.root());
  return static_cast<double>(left->errors + right->errors) /
         static_cast<double>(left->count + right->count);
}

TEST(BestOfMergeTest, HalvesTheErrorRateOfTheBestInput) {
  for (const unsigned seed : {1u, 7u, 23u}) {
    const std::vector<GroundPage> ground = makeTruth(seed);
    auto truth = recognise(ground, {seed, 1, 0, 0, 0, 0});
    // The third engine delivers a page image at half the resolution.
    const std::vector<Noise> noises{{seed * 3 + 1}, {seed * 3 + 2}, {seed * 3 + 3, 0.5}};
    std::vector<std::unique_ptr<Layout>> inputs;
    double best = 1;
    for (Noise noise : noises) {
      inputs.push_back(recognise(ground, noise));
      noise.scale = 1;  // measured on the truth's scale
      best = std::min(best, errorRate(*recognise(ground, noise), *truth));
    }
    BestOfOptions options;
    options.pageWidth = kPageWidth;
    options.pageHeight = kPageHeight;
    const std::vector<const Layout*> views{inputs[0].get(), inputs[1].get(), inputs[2].get()};
    auto merged = mergeLayouts(views, options, {});
    const double mergedRate = errorRate(*merged, *truth);
    EXPECT_GT(best, 0.05) << "seed " << seed << ": the inputs must be noisy";
    EXPECT_LT(mergedRate, best / 2) << "seed " << seed << ": best input " << best;
  }
}

// A word split by one engine joins with its larger half only; the word beside it stays apart.
TEST(BestOfMergeTest, ClustersTakeOneWordPerInput) {
  using qent::bestof::Candidate;
  const std::vector<Candidate> words{{0, {0, 0, 100, 30}, u"hello", 1},
                                     {1, {0, 0, 58, 30}, u"hell", 1},
                                     {1, {62, 0, 100, 30}, u"o", 1},
                                     {0, {100, 0, 160, 30}, u"you", 1}};
  const qent::bestof::RasterGeometry raster{1000, 1000, 100, 100, 0.9, 0.7};
  const std::vector<std::vector<std::uint32_t>> want{{0, 1}, {2}, {3}};
  EXPECT_EQ(qent::bestof::clusterWords(words, raster, 0.2), want);
}

// A short word joins the tall ones beside it; the next row, a word beyond the gap and a word
// of another size start lines of their own. Lines top to bottom, words left to right.
TEST(BestOfMergeTest, SetsWordsIntoLines) {
  const std::vector<comparison::MatchRect> words{
      {100, 100, 140, 120},  // 0 "a": x-height only, begins the line
      {150, 92, 250, 128},   // 1 tall
      {260, 94, 330, 126},   // 2
      {700, 94, 800, 126},   // 3 beyond two line heights
      {100, 150, 200, 186},  // 4 next row
      {340, 100, 420, 150},  // 5 taller by 40 %, reaching below the line
      {430, 60, 470, 90}};   // 6 above the line, half its height
  const std::vector<std::vector<std::uint32_t>> want{{6}, {0, 1, 2}, {3}, {5}, {4}};
  EXPECT_EQ(qent::bestof::buildLines(words, {0.7, 0.1, 2.0}), want);
}

// Two of three for the default 0.7, never none, never more than there are.
TEST(BestOfMergeTest, RequiredVotes) {
  struct Case {
    float threshold;
    std::size_t inputs, want;
  };
  for (const Case& c : {Case{0.7f, 3, 2}, Case{0.7f, 10, 7}, Case{1.0f, 4, 4}, Case{0.7f, 1, 1},
                        Case{0.0f, 5, 1}, Case{-2.0f, 3, 1}, Case{0.5f, 2, 1}, Case{3.0f, 3, 3}}) {
    EXPECT_EQ(qent::bestof::requiredVotes(c.threshold, c.inputs), c.want)
        << c.threshold << " of " << c.inputs;
  }
}

}  // namespace
