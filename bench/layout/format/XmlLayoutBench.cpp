// XmlLayoutBench.cpp - reading and writing a 300-page ALTO document (about 120,000 words)
// and its PAGE twin. The layout is generated from a fixed seed and written once by our
// writers, outside the timed loops.
#include "layout/Layout.h"
#include "layout/Node.h"
#include "layout/format/alto/AltoReader.h"
#include "layout/format/alto/AltoWriter.h"
#include "layout/format/page/PageXmlReader.h"
#include "layout/format/page/PageXmlWriter.h"
#include "support/LayoutGenerator.h"

#include <benchmark/benchmark.h>

#include <memory>
#include <string>

namespace {

using qent::text::layout::Layout;
using namespace qent::text::layout::format;

const Layout& benchLayout() {
  static const std::unique_ptr<Layout> layout = qent::bench::makeLayout({.pages = 300});
  return *layout;
}

const std::string& altoDocument() {
  static const std::string text = AltoWriter().write(benchLayout());
  return text;
}

template <class Reader>
void readBenchmark(benchmark::State& state, const std::string& text) {
  std::size_t words = 0;
  for (auto _ : state) {
    auto layout = Reader().read(text);
    benchmark::DoNotOptimize(layout.get());
    // Releasing the tree is the caller's business, not part of reading. glibc defers part of
    // that work to the next large allocation, which would be the reader's copy of the
    // document; one such allocation here keeps the cost on the releasing side.
    state.PauseTiming();
    words = qent::bench::countWords(*layout);
    layout.reset();
    benchmark::DoNotOptimize(std::make_unique<char[]>(text.size()).get());
    state.ResumeTiming();
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * text.size()));
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * words));
  state.counters["document_MB"] = static_cast<double>(text.size()) / 1e6;
}

template <class Writer>
void writeBenchmark(benchmark::State& state) {
  std::size_t size = 0;
  for (auto _ : state) {
    const std::string text = Writer().write(benchLayout());
    size = text.size();
    benchmark::DoNotOptimize(text.data());
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * size));
  state.SetItemsProcessed(
      static_cast<std::int64_t>(state.iterations() * qent::bench::countWords(benchLayout())));
}

void BM_AltoRead(benchmark::State& state) { readBenchmark<AltoReader>(state, altoDocument()); }
BENCHMARK(BM_AltoRead)->Unit(benchmark::kMillisecond);

void BM_AltoWrite(benchmark::State& state) { writeBenchmark<AltoWriter>(state); }
BENCHMARK(BM_AltoWrite)->Unit(benchmark::kMillisecond);

// PAGE is a single-page format: one page of the layout, read and written many times over.
void BM_PageXmlRead(benchmark::State& state) {
  static const std::string text = PageXmlWriter().write(*qent::bench::makeLayout({.pages = 1}));
  readBenchmark<PageXmlReader>(state, text);
}
BENCHMARK(BM_PageXmlRead)->Unit(benchmark::kMicrosecond);

}  // namespace
