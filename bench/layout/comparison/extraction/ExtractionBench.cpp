// ExtractionBench.cpp - the extraction comparison on 300 form pages of 40 zones with 10 lines
// each (four words a line), against a recognition of the same shape that moves every
// rectangle by a few pixels and gets about 5 % of the characters wrong. Measures the
// comparison alone, the documents made once outside the timed loop.
#include "layout/Layout.h"
#include "layout/Nodes.h"
#include "layout/comparison/extraction/ExtractionComparison.h"

#include <benchmark/benchmark.h>

#include <memory>
#include <random>
#include <string>

namespace {

using namespace qent::text::layout;
using namespace qent::text::layout::comparison;

constexpr int kPages = 300;
constexpr int kZonesPerPage = 40;  // two columns of twenty
constexpr int kLinesPerZone = 10;
constexpr int kWordsPerLine = 4;

const char16_t* const kWords[] = {u"Rechnung", u"Nr.", u"Datum", u"Betrag", u"EUR",
                                  u"1.234,56", u"Kunde", u"M\u00fcnchen", u"Stra\u00dfe",
                                  u"netto", u"brutto", u"MwSt.", u"19%", u"2024-05-17"};

// The reference with its zones (noise 0), or a recognition of it.
std::unique_ptr<Layout> makeForms(bool recognition) {
  std::mt19937 words(1);
  std::mt19937 noise(2);
  auto shift = [&] { return recognition ? static_cast<int>(noise() % 7) - 3 : 0; };
  auto root = std::make_unique<Content>();
  root->setTypeName(u"node");
  for (int p = 0; p < kPages; ++p) {
    auto& page = root->appendChild(std::make_unique<Page>());
    page.setWidth(2480);
    page.setHeight(3508);
    for (int z = 0; z < kZonesPerPage; ++z) {
      const int zoneLeft = 100 + (z % 2) * 1200;
      const int zoneTop = 100 + (z / 2) * 165;
      Node* parent = &page;
      if (!recognition) {
        auto& zone = page.appendChild(std::make_unique<Box>());
        zone.setId(std::u16string(u"zone") + static_cast<char16_t>(u'A' + z % 26));
        zone.setRect(Rect{zoneLeft, zoneTop, 1100, 160});
        parent = &zone;
      }
      for (int l = 0; l < kLinesPerZone; ++l) {
        auto& line = parent->appendChild(std::make_unique<Line>());
        const int top = zoneTop + 2 + l * 16;
        line.setRect(Rect{zoneLeft + 10 + shift(), top + shift(), 1000, 14});
        int left = zoneLeft + 10;
        for (int w = 0; w < kWordsPerLine; ++w) {
          std::u16string text = kWords[words() % (sizeof kWords / sizeof kWords[0])];
          for (char16_t& c : text) {
            if (recognition && noise() % 20 == 0) c = static_cast<char16_t>(u'a' + noise() % 26);
          }
          auto& word = line.appendChild(std::make_unique<Word>());
          word.setRect(Rect{left + shift(), top, 200, 14});
          word.setText(std::move(text));
          left += 240;
        }
      }
    }
  }
  return std::make_unique<Layout>(std::move(root));
}

void BM_ExtractionComparisonLines(benchmark::State& state) {
  static const std::unique_ptr<Layout> reference = makeForms(false);
  static const std::unique_ptr<Layout> recognition = makeForms(true);
  const ExtractionOptions options;  // Line level, edit distance, removal, Corner
  double rate = 0;
  for (auto _ : state) {
    const auto result = extraction::compareExtraction(options, *recognition, *reference);
    rate = result.errorRate();
    benchmark::DoNotOptimize(rate);
  }
  state.SetItemsProcessed(state.iterations() * kPages * kZonesPerPage);
  state.counters["errorRate"] = rate;
}
BENCHMARK(BM_ExtractionComparisonLines)->Unit(benchmark::kMillisecond);

}  // namespace
