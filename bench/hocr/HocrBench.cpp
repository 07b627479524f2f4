// HocrBench.cpp - reading and writing a 300-page hOCR document (about 14 MB) shaped like
// Tesseract's output: pages of content areas, paragraphs, lines with metrics, words with
// confidences. The layout is generated from a fixed seed and written once by our writer.
#include "hocr/HocrWriter.h"
#include "hocr/PugiHocrReader.h"
#include "layout/Layout.h"
#include "layout/Nodes.h"
#include "layout/format/PlainTextWriter.h"

#include <benchmark/benchmark.h>

#include <memory>
#include <random>
#include <string>

namespace {

using namespace qent::text::layout;

// `boxTexts`: give content areas and paragraphs their id as text, as the hOCR reader does.
std::unique_ptr<Layout> makeTesseractLikeLayout(int pages, bool boxTexts) {
  static const char16_t* const kWords[] = {
      u"Die",   u"Gemeinde", u"hat",       u"am",     u"15.",    u"März",  u"beschlossen,",
      u"dass",  u"die",      u"Straße",    u"über",   u"den",    u"Fluss", u"erneuert",
      u"wird.", u"Kosten:",  u"1.250,00",  u"Euro",   u"für",    u"Bürger", u"and",
      u"the",   u"council",  u"approved",  u"budget", u"items"};
  std::mt19937 random(20261123);
  auto root = std::make_unique<Content>();
  root->setTypeName(u"body");
  int wordNumber = 0;
  for (int p = 1; p <= pages; ++p) {
    auto& page = root->appendChild(std::make_unique<Page>());
    auto ascii = [](const std::string& s) { return std::u16string(s.begin(), s.end()); };
    page.setId(ascii("page_" + std::to_string(p)));
    page.setWidth(2480);
    page.setHeight(3508);
    page.setAuxiliaryNumber(static_cast<std::uint32_t>(p - 1));
    page.setAttribute(u"image", ascii("\"scan_" + std::to_string(p) + ".png\""));
    page.setAttribute(u"scan_res", u"300 300");
    int line = 0, par = 0;
    for (int b = 1; b <= 5; ++b) {
      auto& block = page.appendChild(std::make_unique<Box>());
      block.setTypeName(u"ocr_carea");
      block.setId(ascii("block_" + std::to_string(p) + "_" + std::to_string(b)));
      if (boxTexts) block.setText(std::u16string(block.id()));
      const int top = 200 + (b - 1) * 640;
      block.setRect({180, top, 2100, 600});
      for (int q = 0; q < 2; ++q) {
        auto& paragraph = block.appendChild(std::make_unique<Box>());
        paragraph.setTypeName(u"ocr_par");
        paragraph.setId(ascii("par_" + std::to_string(p) + "_" + std::to_string(++par)));
        if (boxTexts) paragraph.setText(std::u16string(paragraph.id()));
        paragraph.setAttribute(u"lang", u"deu");
        paragraph.setRect({180, top + q * 300, 2100, 280});
        for (int l = 0; l < 4; ++l) {
          auto& textLine = paragraph.appendChild(std::make_unique<Line>());
          textLine.setId(ascii("line_" + std::to_string(p) + "_" + std::to_string(++line)));
          const int y = top + q * 300 + l * 70;
          textLine.setRect({180, y, 2000, 52});
          textLine.setBaseline({0.002, -11});
          textLine.setMaxGlyphHeight(39);
          textLine.setMaxDescenders(11);
          textLine.setMaxAscenders(10);
          int x = 180;
          for (int w = 0; w < 9; ++w) {
            auto& word = textLine.appendChild(std::make_unique<Word>());
            word.setId(ascii("word_" + std::to_string(p) + "_" + std::to_string(++wordNumber)));
            word.setText(kWords[random() % std::size(kWords)]);
            const int width = 60 + static_cast<int>(random() % 120);
            word.setRect({x, y + static_cast<int>(random() % 4), width, 45});
            word.setConfidence(static_cast<double>(60 + random() % 40));
            x += width + 22;
          }
        }
      }
    }
  }
  auto layout = std::make_unique<Layout>(std::move(root));
  Layout::Versions versions{{"tesseract", "5.3.0"}};
  layout->setVersions(versions);
  return layout;
}

// The document is generated once and read back once, so the timed loops measure only
// reading or writing. Attributes as a file read from hOCR would carry them.
const Layout& benchLayout() {
  static const std::unique_ptr<Layout> layout = [] {
    const std::string text =
        qent::text::hocr::HocrWriter().write(*makeTesseractLikeLayout(300, true));
    return qent::text::hocr::PugiHocrReader().read(text);
  }();
  return *layout;
}

const std::string& benchDocument() {
  static const std::string text = qent::text::hocr::HocrWriter().write(benchLayout());
  return text;
}

std::size_t countWords(const Layout& layout) {
  std::size_t words = 0;
  std::vector<const Node*> stack{layout.root()};
  while (!stack.empty()) {
    const Node* node = stack.back();
    stack.pop_back();
    if (dynamic_cast<const Word*>(node) != nullptr) ++words;
    for (const auto& child : node->children()) stack.push_back(child.get());
  }
  return words;
}

void BM_HocrRead(benchmark::State& state) {
  const std::string& text = benchDocument();
  for (auto _ : state) {
    auto layout = qent::text::hocr::PugiHocrReader().read(text);
    benchmark::DoNotOptimize(layout.get());
    // Releasing the tree is the caller's business, not part of reading. glibc defers part of
    // that work (merging the freed small blocks) to the next large allocation, which would
    // be the reader's copy of the document; one such allocation here keeps the cost on the
    // releasing side, without handing the memory back to the system.
    state.PauseTiming();
    layout.reset();
    benchmark::DoNotOptimize(std::make_unique<char[]>(text.size()).get());
    state.ResumeTiming();
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * text.size()));
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * countWords(benchLayout())));
  state.counters["document_MB"] = static_cast<double>(text.size()) / 1e6;
}
BENCHMARK(BM_HocrRead)->Unit(benchmark::kMillisecond);

// The tolerant mode's way for hOCR that is not XML: pugixml refuses the document (an
// unquoted attribute), gumbo parses it, the same reader walks gumbo's tree.
void BM_HocrReadAsHtml(benchmark::State& state) {
  std::string text = benchDocument();
  text.replace(text.find("<body"), 5, "<body lang=en");
  using Reader = qent::text::hocr::PugiHocrReader;
  for (auto _ : state) {
    auto layout = Reader(Reader::Dialect::Tolerant).read(text);
    benchmark::DoNotOptimize(layout.get());
    state.PauseTiming();
    layout.reset();
    state.ResumeTiming();
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * text.size()));
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * countWords(benchLayout())));
}
BENCHMARK(BM_HocrReadAsHtml)->Unit(benchmark::kMillisecond);

void BM_HocrWrite(benchmark::State& state) {
  const Layout& layout = benchLayout();
  std::size_t size = 0;
  for (auto _ : state) {
    const std::string text = qent::text::hocr::HocrWriter().write(layout);
    size = text.size();
    benchmark::DoNotOptimize(text.data());
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * size));
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * countWords(layout)));
}
BENCHMARK(BM_HocrWrite)->Unit(benchmark::kMillisecond);

void BM_PlainTextWrite(benchmark::State& state) {
  // Boxes without text of their own, so the writer walks down to every word.
  static const std::unique_ptr<Layout> layout = makeTesseractLikeLayout(300, false);
  std::size_t size = 0;
  for (auto _ : state) {
    const std::u16string text = qent::text::layout::format::PlainTextWriter().write(*layout);
    size = text.size();
    benchmark::DoNotOptimize(text.data());
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * size * 2));
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * countWords(*layout)));
}
BENCHMARK(BM_PlainTextWrite)->Unit(benchmark::kMillisecond);

}  // namespace
