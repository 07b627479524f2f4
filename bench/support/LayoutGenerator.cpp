// LayoutGenerator.cpp - the benchmark layouts.
#include "support/LayoutGenerator.h"

#include "layout/IteratorTemplate.h"
#include "layout/Layout.h"
#include "layout/Nodes.h"

#include <random>
#include <string>

namespace qent::bench {

using namespace qent::text::layout;

namespace {

const char16_t* const kVocabulary[] = {
    u"Rechnung", u"Nr.", u"Datum", u"der", u"die", u"und", u"Betrag", u"EUR", u"1.234,56",
    u"Kunde", u"Gr\u00f6\u00dfe", u"M\u00fcnchen", u"Stra\u00dfe", u"invoice", u"total",
    u"the", u"of", u"payment", u"due", u"within", u"days", u"Seite", u"von", u"Lieferung",
    u"Menge", u"St\u00fcck", u"Preis", u"netto", u"brutto", u"MwSt.", u"19%", u"2024-05-17"};
constexpr int kVocabularySize = sizeof kVocabulary / sizeof kVocabulary[0];

std::u16string id(const char* kind, int a, int b = -1, int c = -1, int d = -1) {
  std::string text = kind;
  for (const int part : {a, b, c, d}) {
    if (part >= 0) text += "_" + std::to_string(part);
  }
  return std::u16string(text.begin(), text.end());
}

}  // namespace

std::unique_ptr<Layout> makeLayout(const LayoutShape& shape) {
  std::mt19937 random(shape.seed);
  std::mt19937 noise(shape.noiseSeed);
  auto chance = [&](double p) { return std::uniform_real_distribution<double>(0, 1)(noise) < p; };
  auto jitter = [&] {
    return shape.jitter == 0 ? 0 : std::uniform_int_distribution<int>(-shape.jitter, shape.jitter)(noise);
  };

  auto root = std::make_unique<Content>();
  root->setTypeName(u"node");
  root->reserveChildren(static_cast<std::size_t>(shape.pages));
  for (int p = 0; p < shape.pages; ++p) {
    auto& page = root->appendChild(std::make_unique<Page>());
    page.setId(id("page", p + 1));
    page.setWidth(2480);
    page.setHeight(3508);
    page.setLanguage("de");
    page.setIndexInLayout(static_cast<std::uint32_t>(p));
    for (int a = 0; a < shape.areasPerPage; ++a) {
      auto& area = page.appendChild(std::make_unique<Box>());
      area.setId(id("block", p + 1, a + 1));
      const int areaTop = 200 + a * 800;
      area.setRect(Rect{150, areaTop, 2180, shape.linesPerArea * 90});
      for (int l = 0; l < shape.linesPerArea; ++l) {
        auto& line = area.appendChild(std::make_unique<Line>());
        line.setId(id("line", p + 1, a + 1, l + 1));
        const int lineTop = areaTop + l * 90;
        line.setRect(Rect{150 + jitter(), lineTop + jitter(), 2180, 60});
        line.setAttribute(u"x_size", u"58.5");
        const int words = shape.wordsPerLine + (l % 2);
        int left = 150;
        for (int w = 0; w < words; ++w) {
          std::u16string text = kVocabulary[random() % kVocabularySize];
          const int width = 20 * static_cast<int>(text.size()) + 10;
          const double confidence = 50 + static_cast<int>(random() % 100) / 2.0;
          for (char16_t& c : text) {
            if (shape.textErrorRate > 0 && chance(shape.textErrorRate)) {
              c = static_cast<char16_t>(u'a' + noise() % 26);
            }
          }
          auto& word = line.appendChild(std::make_unique<Word>());
          word.setId(id("word", p + 1, a + 1, l + 1, w + 1));
          word.setRect(Rect{left + jitter(), lineTop + jitter(), width, 60});
          word.setConfidence(confidence);
          word.setFontSize(l == 0 ? 12 : 10);
          if (shape.glyphs) {
            int glyphLeft = left;
            for (const char16_t c : text) {
              auto& glyph = word.appendChild(std::make_unique<Glyph>());
              glyph.setText(std::u16string(1, c));
              glyph.setRect(Rect{glyphLeft, lineTop, 18, 60});
              glyph.setConfidence(confidence);
              glyphLeft += 20;
            }
          }
          word.setText(std::move(text));
          left += width + 25;
        }
      }
    }
  }
  return std::make_unique<Layout>(std::move(root));
}

std::size_t countWords(const Layout& layout) {
  std::size_t count = 0;
  for (IteratorTemplate<Word> it(layout.root()); !it.atEnd(); ++it) ++count;
  return count;
}

}  // namespace qent::bench
