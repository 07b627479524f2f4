// AddressRecognitionBench.cpp - address recognition over long generated documents: every
// run of up to ten lines of every block goes through the grammar, so the cost grows with
// the lines of a page rather than with its addresses.
#include "dataextract/address/AddressRecognizer.h"
#include "layout/Layout.h"
#include "layout/Nodes.h"
#include "support/LayoutGenerator.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>

namespace {

void BM_AddressRecognition(benchmark::State& state) {
  const auto layout = qent::bench::makeLayout({.pages = static_cast<int>(state.range(0))});
  for (auto _ : state) {
    const std::string result = qent::dataextract::recognizeAddresses(*layout->root());
    benchmark::DoNotOptimize(result.data());
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() *
                                                    qent::bench::countWords(*layout)));
}
BENCHMARK(BM_AddressRecognition)->Arg(1)->Arg(300)->Unit(benchmark::kMillisecond);

}  // namespace
