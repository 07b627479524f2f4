// WebAnnoCloudOcrBench.cpp - speed of the WebAnno TSV writer and reader and of the cloud-OCR
// reader on generated documents.
#include "layout/Layout.h"
#include "layout/Node.h"
#include "layout/format/CloudOcrReader.h"
#include "layout/format/WebAnnoReader.h"
#include "layout/format/WebAnnoWriter.h"
#include "support/CloudOcrAnswer.h"
#include "support/LayoutGenerator.h"

#include <benchmark/benchmark.h>

#include <string>

namespace {

using qent::text::layout::format::CloudOcrReader;
using qent::text::layout::format::WebAnnoReader;
using qent::text::layout::format::WebAnnoWriter;

void BM_WebAnnoWrite(benchmark::State& state) {
  const auto layout = qent::bench::makeLayout({.pages = static_cast<int>(state.range(0))});
  std::string out;
  for (auto _ : state) {
    out = WebAnnoWriter().write(*layout);
    benchmark::DoNotOptimize(out.data());
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * out.size()));
  state.SetItemsProcessed(
      static_cast<std::int64_t>(state.iterations() * qent::bench::countWords(*layout)));
  state.counters["MB"] = static_cast<double>(out.size()) / 1e6;
}
BENCHMARK(BM_WebAnnoWrite)->Arg(300)->Unit(benchmark::kMillisecond);

void BM_WebAnnoRead(benchmark::State& state) {
  const std::string tsv = WebAnnoWriter().write(*qent::bench::makeLayout());
  std::size_t words = 0;
  for (auto _ : state) {
    auto layout = WebAnnoReader().read(tsv);
    benchmark::DoNotOptimize(layout.get());
    state.PauseTiming();
    words = qent::bench::countWords(*layout);
    layout.reset();  // freeing the tree is the caller's cost, not the reader's
    state.ResumeTiming();
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * tsv.size()));
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * words));
}
BENCHMARK(BM_WebAnnoRead)->Unit(benchmark::kMillisecond);

// Pages of about 400 words with a symbol per character, as the service answers them.
void BM_CloudOcrRead(benchmark::State& state) {
  const std::string json = qent::bench::makeCloudOcrAnswer(
      *qent::bench::makeLayout({.pages = static_cast<int>(state.range(0))}));
  std::size_t words = 0;
  for (auto _ : state) {
    auto layout = CloudOcrReader().read(json);
    benchmark::DoNotOptimize(layout.get());
    state.PauseTiming();
    words = qent::bench::countWords(*layout);
    layout.reset();
    state.ResumeTiming();
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * json.size()));
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * words));
  state.counters["MB"] = static_cast<double>(json.size()) / 1e6;
}
BENCHMARK(BM_CloudOcrRead)->Arg(30)->Unit(benchmark::kMillisecond);

}  // namespace
