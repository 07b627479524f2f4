// EntityExtractionBench.cpp - entity extraction with the shipped configuration over a
// 300-page letter-like document (about 120,000 words) with entities planted on every page.
// The target: at most one second of CPU for the whole document.
#include "base/Unicode.h"
#include "dataextract/EntityConfiguration.h"
#include "dataextract/EntityExtractor.h"
#include "layout/Nodes.h"

#include <benchmark/benchmark.h>

#include <filesystem>
#include <memory>
#include <random>
#include <string>

namespace {

using namespace qent::text::layout;

std::unique_ptr<Node> makeLetters(int pages, int wordsPerPage) {
  static const char* const kWords[] = {
      "Sehr", "geehrte", "Frau", "Meyer,", "wir", "danken", "für", "Ihre", "Bestellung",
      "vom", "14.03.2026", "über", "1.234,56", "EUR.", "Bitte", "überweisen", "Sie", "den",
      "Betrag", "auf", "das", "Konto", "IBAN", "DE89", "3704", "0044", "0532", "0130", "00",
      "Telefon", "+49", "40", "1234567", "oder", "info@nordlicht.de", "Thomas", "Wagner",
      "Rechnung", "Nr.", "4711", "Seite", "2", "the", "council", "approved", "budget"};
  std::mt19937 random(20261125);
  auto root = std::make_unique<Node>();
  for (int p = 0; p < pages; ++p) {
    Page& page = root->appendChild(std::make_unique<Page>());
    Line* line = nullptr;
    for (int w = 0; w < wordsPerPage; ++w) {
      if (w % 10 == 0) line = &page.appendChild(std::make_unique<Line>());
      Word& word = line->appendChild(std::make_unique<Word>());
      // Mostly in order, so the planted entities stay whole, with some shuffled words.
      const std::size_t index = random() % 4 == 0 ? random() % std::size(kWords)
                                                  : static_cast<std::size_t>(w) % std::size(kWords);
      word.setText(qent::base::utf8ToUtf16(kWords[index]));
      word.setRect({(w % 10) * 200, (w / 10) * 60, 180, 50});
    }
  }
  return root;
}

void BM_EntityExtraction(benchmark::State& state) {
  const auto configuration = qent::dataextract::EntityConfiguration::load(
      std::filesystem::path(ORMIDA_SOURCE_DIR) / "data" / "entities" / "default.json");
  const auto root = makeLetters(static_cast<int>(state.range(0)), 400);
  std::size_t entities = 0;
  for (auto _ : state) {
    const std::string result = qent::dataextract::extractEntities(*root, configuration);
    entities = result.size();
    benchmark::DoNotOptimize(result.data());
  }
  state.counters["json_bytes"] = static_cast<double>(entities);
  state.SetItemsProcessed(state.iterations() * state.range(0) * 400);
}
BENCHMARK(BM_EntityExtraction)->Arg(300)->Unit(benchmark::kMillisecond);

}  // namespace
