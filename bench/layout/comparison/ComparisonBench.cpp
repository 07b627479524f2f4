// ComparisonBench.cpp - the layout comparison on a 300-page document pair (about 120,000
// words per side, ~5% character errors): the engine alone with its fast algorithms and with
// the obvious quadratic ones, at word, glyph and line level.
#include "layout/Layout.h"
#include "layout/comparison/Comparator.h"
#include "layout/comparison/LayoutComparison.h"
#include "support/DocumentPair.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

using namespace qent::text::layout;
using namespace qent::text::layout::comparison;

// The quadratic forms the engine's algorithms replace: every left rectangle against every
// right one, and the full single-row dynamic programme.
CandidateLists allPairsCandidates(std::span<const MatchRect> left, std::span<const MatchRect> right) {
  CandidateLists out;
  out.leftToRight.resize(left.size());
  out.rightToLeft.resize(right.size());
  std::vector<double> leftBest(left.size(), 0.0), rightBest(right.size(), 0.0);
  for (std::uint32_t l = 0; l < left.size(); ++l) {
    for (std::uint32_t r = 0; r < right.size(); ++r) {
      const double overlap = overlapRatio(left[l], right[r]);
      if (overlap < kOverlapEpsilon) continue;
      if (overlap > leftBest[l]) {
        leftBest[l] = overlap;
        out.leftToRight[l].assign(1, r);
      } else if (std::fabs(overlap - leftBest[l]) < kOverlapEpsilon) {
        out.leftToRight[l].push_back(r);
      }
      if (overlap > rightBest[r]) {
        rightBest[r] = overlap;
        out.rightToLeft[r].assign(1, l);
      } else if (std::fabs(overlap - rightBest[r]) < kOverlapEpsilon) {
        out.rightToLeft[r].push_back(l);
      }
    }
  }
  return out;
}

std::size_t singleRowDistance(std::u16string_view a, std::u16string_view b) {
  if (a.size() > b.size()) std::swap(a, b);
  std::vector<std::size_t> row(a.size() + 1);
  for (std::size_t i = 0; i <= a.size(); ++i) row[i] = i;
  for (std::size_t j = 1; j <= b.size(); ++j) {
    std::size_t diagonal = row[0];
    row[0] = j;
    for (std::size_t i = 1; i <= a.size(); ++i) {
      const std::size_t above = row[i];
      row[i] = std::min({row[i] + 1, row[i - 1] + 1, diagonal + (a[i - 1] == b[j - 1] ? 0 : 1)});
      diagonal = above;
    }
  }
  return row[a.size()];
}

struct Documents {
  std::unique_ptr<Layout> recognition;
  std::unique_ptr<Layout> truth;
  std::size_t words;
};

const Documents& documents(bool glyphs) {
  static Documents cache[2];
  Documents& documents = cache[glyphs ? 1 : 0];
  if (!documents.truth) {
    ormida::bench::DocumentPairOptions options;
    options.glyphs = glyphs;
    const auto pair = ormida::bench::generateDocumentPair(options);
    documents.recognition = ormida::bench::buildLayout(pair.recognition, glyphs, "ocr");
    documents.truth = ormida::bench::buildLayout(pair.truth, glyphs, "gt");
    documents.words = pair.truth.wordCount();
  }
  return documents;
}

void runEngine(benchmark::State& state, CompareLevel level, bool naive) {
  const Documents& docs = documents(level == CompareLevel::Glyph);
  CompareOptions options;
  options.level = level;
  for (auto _ : state) {
    auto comparator = makeComparator(options, *docs.recognition, *docs.truth);
    if (naive) comparator->setKernels({&allPairsCandidates, &singleRowDistance});
    comparator->compare();
    benchmark::DoNotOptimize(comparator->statistics(docs.recognition->root()));
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * docs.words));
  state.counters["words"] = static_cast<double>(docs.words);
}

void BM_CompareEngineWords(benchmark::State& state) { runEngine(state, CompareLevel::Word, false); }
void BM_CompareEngineWordsNaive(benchmark::State& state) { runEngine(state, CompareLevel::Word, true); }
void BM_CompareEngineGlyphs(benchmark::State& state) { runEngine(state, CompareLevel::Glyph, false); }
void BM_CompareEngineGlyphsNaive(benchmark::State& state) { runEngine(state, CompareLevel::Glyph, true); }
void BM_CompareEngineLines(benchmark::State& state) { runEngine(state, CompareLevel::Line, false); }
void BM_CompareEngineLinesNaive(benchmark::State& state) { runEngine(state, CompareLevel::Line, true); }

}  // namespace

BENCHMARK(BM_CompareEngineWords)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CompareEngineWordsNaive)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CompareEngineGlyphs)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CompareEngineGlyphsNaive)->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK(BM_CompareEngineLines)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CompareEngineLinesNaive)->Unit(benchmark::kMillisecond);
