// ComparisonBench.cpp - the layout comparison on a 300-page document pair (about 120,000
// words per side, ~5% character errors): the engine alone with its fast algorithms and with
// the obvious quadratic ones, at word, glyph and line level.
#include "layout/Layout.h"
#include "layout/comparison/Comparator.h"
#include "layout/comparison/LayoutComparison.h"
#include "support/DocumentPair.h"
#include "support/NaiveComparison.h"

#include <benchmark/benchmark.h>


namespace {

using namespace qent::text::layout;
using namespace qent::text::layout::comparison;

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
    if (naive) comparator->setKernels(ormida::bench::naiveKernels());
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
