// DocumentPair.h - generates a ground-truth document and an OCR recognition of it with
// realistic damage, as layout trees or as JSON layout text, for the benchmarks.
//
// The truth is pages of lines of words (optionally with one glyph per character) on an A4
// page at 300 dpi. The recognition substitutes, drops and inserts characters at the given
// rate (with OCR's favourite confusions: rn/m, l/1, e/c, o/0, umlauts), splits and merges a
// few words, loses and invents a few, and shifts boxes by a pixel or two. The same seed
// gives the same pair.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace qent::text::layout {
class Layout;
}

namespace ormida::bench {

struct DocumentPairOptions {
  int pages = 300;
  int linesPerPage = 40;
  int wordsPerLine = 10;
  bool glyphs = false;
  double characterErrorRate = 0.05;
  std::uint64_t seed = 20261123;
};

struct GeneratedWord {
  std::int32_t left, top, width, height;
  std::u16string text;
};
struct GeneratedLine {
  std::vector<GeneratedWord> words;
};
struct GeneratedDocument {
  std::vector<std::vector<GeneratedLine>> pages;
  std::size_t wordCount() const;
  std::size_t characterCount() const;
};

struct GeneratedPair {
  GeneratedDocument truth;
  GeneratedDocument recognition;
};

GeneratedPair generateDocumentPair(const DocumentPairOptions& options);

// The document as a layout tree: root, pages, lines, words (and glyphs when asked).
std::unique_ptr<qent::text::layout::Layout> buildLayout(const GeneratedDocument& document,
                                                        bool glyphs, const std::string& idPrefix);
// The same tree as JSON layout text (glyphs written as the children of their words).
std::string writeJson(const GeneratedDocument& document, bool glyphs, const std::string& idPrefix);

}  // namespace ormida::bench
