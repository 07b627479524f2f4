// JsonBench.cpp - speed of the JSON layout reader and writer on a 300-page document, and
// the reader's peak memory.
#include "layout/Layout.h"
#include "layout/format/JSONReader.h"
#include "layout/format/JSONWriter.h"
#include "support/LayoutGenerator.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <fstream>
#include <string>

#if defined(__linux__)
#include <malloc.h>
#endif

namespace {

using qent::text::layout::format::JSONReader;
using qent::text::layout::format::JSONWriter;

const std::string& document() {
  static const std::string json = [] {
    auto layout = qent::bench::makeLayout();
    return JSONWriter().write(*layout);
  }();
  return json;
}

void BM_JsonWrite(benchmark::State& state) {
  const auto layout = qent::bench::makeLayout({.pages = static_cast<int>(state.range(0))});
  std::string out;
  for (auto _ : state) {
    out = JSONWriter().write(*layout);
    benchmark::DoNotOptimize(out.data());
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * out.size()));
  state.SetItemsProcessed(
      static_cast<std::int64_t>(state.iterations() * qent::bench::countWords(*layout)));
  state.counters["MB"] = static_cast<double>(out.size()) / 1e6;
}
BENCHMARK(BM_JsonWrite)->Arg(300)->Unit(benchmark::kMillisecond);

void BM_JsonRead(benchmark::State& state) {
  const std::string& json = document();
  std::size_t words = 0;
  for (auto _ : state) {
    auto layout = JSONReader().read(json);
    benchmark::DoNotOptimize(layout.get());
    state.PauseTiming();
    words = qent::bench::countWords(*layout);
    layout.reset();  // freeing the tree is the caller's cost, not the reader's
    state.ResumeTiming();
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * json.size()));
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * words));
}
BENCHMARK(BM_JsonRead)->Unit(benchmark::kMillisecond);

#if defined(__linux__)
// Resident memory in kB from /proc/self/status ("VmRSS" now, "VmHWM" the peak).
long statusKb(const char* field) {
  std::ifstream status("/proc/self/status");
  std::string line;
  while (std::getline(status, line)) {
    if (line.rfind(field, 0) == 0) return std::stol(line.substr(std::string(field).size() + 1));
  }
  return -1;
}

// Peak resident memory while reading, beyond what the process held before (the input text
// included). Resets the kernel's peak mark first, so earlier benchmarks do not count.
void BM_JsonReadPeakMemory(benchmark::State& state) {
  const std::string& json = document();
  double peakMb = 0;
  for (auto _ : state) {
    state.PauseTiming();
    malloc_trim(0);
    const long before = statusKb("VmRSS:");
    std::ofstream("/proc/self/clear_refs") << "5";
    state.ResumeTiming();
    auto layout = JSONReader().read(json);
    state.PauseTiming();
    const long peak = statusKb("VmHWM:");
    if (before < 0 || peak < 0) {
      state.SkipWithError("no /proc/self/status");
      break;
    }
    peakMb = static_cast<double>(peak - before) / 1024.0;
    layout.reset();
    state.ResumeTiming();
  }
  state.counters["file_MB"] = static_cast<double>(json.size()) / 1e6;
  state.counters["peak_MB"] = peakMb;
  state.counters["peak_per_file"] = peakMb * 1024 * 1024 / static_cast<double>(json.size());
}
BENCHMARK(BM_JsonReadPeakMemory)->Iterations(1)->Unit(benchmark::kMillisecond);
#endif

}  // namespace
