// HtmlBench.cpp - writing a 300-page layout (about 120,000 words) as HTML: areas cut into
// rows and columns on every page, words written as text.
#include "layout/Layout.h"
#include "layout/Node.h"
#include "layout/format/html/HtmlWriter.h"
#include "support/LayoutGenerator.h"

#include <benchmark/benchmark.h>

namespace {

void BM_HtmlWrite(benchmark::State& state) {
  const auto layout = qent::bench::makeLayout({.pages = static_cast<int>(state.range(0))});
  std::string out;
  for (auto _ : state) {
    out = qent::text::layout::format::html::HtmlWriter().write(*layout);
    benchmark::DoNotOptimize(out.data());
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * out.size()));
  state.SetItemsProcessed(
      static_cast<std::int64_t>(state.iterations() * qent::bench::countWords(*layout)));
}
BENCHMARK(BM_HtmlWrite)->Arg(300)->Unit(benchmark::kMillisecond);

}  // namespace
