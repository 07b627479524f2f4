// BestOfBench.cpp - the Best-Of merge of three 300-page recognitions of one document (about
// 120,000 words each, independent character errors and jittered boxes). Reports CPU time,
// words merged per second and the process's peak resident memory, inputs included.
#include "bestof/BestOfMerge.h"
#include "layout/Layout.h"
#include "layout/Nodes.h"
#include "support/LayoutGenerator.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <fstream>
#include <string>
#include <vector>

namespace {

#if defined(__linux__)
double peakMegabytes() {
  std::ifstream status("/proc/self/status");
  std::string line;
  while (std::getline(status, line)) {
    if (line.rfind("VmHWM:", 0) == 0) return std::stod(line.substr(6)) / 1024.0;
  }
  return -1;
}
#else
double peakMegabytes() { return -1; }
#endif

void BM_BestOfMerge300Pages(benchmark::State& state) {
  std::vector<std::unique_ptr<qent::text::layout::Layout>> inputs;
  std::vector<const qent::text::layout::Layout*> views;
  std::size_t words = 0;
  for (unsigned noise = 11; noise < 14; ++noise) {
    inputs.push_back(qent::bench::makeLayout(
        {.pages = 300, .textErrorRate = 0.05, .jitter = 6, .noiseSeed = noise}));
    views.push_back(inputs.back().get());
    words += qent::bench::countWords(*inputs.back());
  }
  qent::bestof::BestOfOptions options;
  const auto size = qent::bestof::largestPage(views);
  options.pageWidth = size ? size->width : 0;
  options.pageHeight = size ? size->height : 0;
  options.rasterFactorX = std::min(options.rasterFactorX, options.pageWidth / 2);
  options.rasterFactorY = std::min(options.rasterFactorY, options.pageHeight / 2);
  std::size_t merged = 0;
  for (auto _ : state) {
    auto layout = qent::bestof::mergeLayouts(views, options, {});
    merged = qent::bench::countWords(*layout);
    benchmark::DoNotOptimize(layout.get());
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * words));
  state.counters["input_words"] = static_cast<double>(words);
  state.counters["merged_words"] = static_cast<double>(merged);
  state.counters["peak_MB"] = peakMegabytes();
}
BENCHMARK(BM_BestOfMerge300Pages)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime();

}  // namespace
