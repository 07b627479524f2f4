// WordRecognitionBench.cpp - word recognition of a generated 300-page German document
// (~120,000 words), dictionary loading included, as a job runs it. Argument: per mille of
// characters replaced, so the OCR-noise run has many distinct (misspelled) words to check.
#include "support/LayoutGenerator.h"

#include "base/platform/platform.h"
#include "layout/Layout.h"
#include "layout/format/Document.h"
#include "wordrecognizer/RecognizerSettings.h"
#include "wordrecognizer/WordRecognition.h"

#include <benchmark/benchmark.h>

namespace {

namespace wr = qent::text::wordrecognizer;

void BM_WordRecognition(benchmark::State& state) {
  auto layout = qent::bench::makeLayout(
      {.pages = 300, .textErrorRate = static_cast<double>(state.range(0)) / 1000});
  const std::size_t words = qent::bench::countWords(*layout);
  qent::text::layout::format::Document document("bench", std::move(layout));
  wr::RecognizerSettings settings;
  settings.statisticsPerPage = true;
  settings.format = wr::ReportFormat::Json;
  for (auto _ : state) {
    // Debian's de_DE from its standard folder, stop words and digrams from the shipped data.
    wr::ResourceFolders folders({}, {},
                                wr::ResourceFolders::dataFoldersOf(qent::base::platform::modulePath()));
    const wr::RecognitionOutput output = wr::recognizeDocument(document, settings, folders, {});
    benchmark::DoNotOptimize(output.report.data());
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * words));
}
BENCHMARK(BM_WordRecognition)->Arg(0)->Arg(50)->Unit(benchmark::kMillisecond);

}  // namespace
