// LayoutGenerator.h - realistic layouts made in code for benchmarks: pages of content
// areas, lines and words with ids, rectangles, confidences and texts from a fixed seed.
//
//   auto truth = bench::makeLayout({.pages = 300});                       // ~120,000 words
//   auto ocr = bench::makeLayout({.pages = 300, .textErrorRate = 0.05});   // same boxes,
//                                                                          // 5% wrong chars
// Two layouts made with the same shape and seed have the same structure and texts; the noise
// settings then change characters and jitter rectangles, so a recognition and its ground
// truth can be made for comparison benchmarks. With the default shape one page holds
// 4 areas x 8 lines x 12 or 13 words, and 300 pages write as about 17 MB of compact JSON.
#pragma once

#include <cstddef>
#include <memory>

namespace qent::text::layout {
class Layout;
}

namespace qent::bench {

struct LayoutShape {
  int pages = 300;
  int areasPerPage = 4;
  int linesPerArea = 8;
  int wordsPerLine = 12;  // every other line has one more
  bool glyphs = false;    // one Glyph per character below each word
  unsigned seed = 1;
  double textErrorRate = 0;  // chance that a character of a word is replaced
  int jitter = 0;            // rectangles move by up to this many pixels
  unsigned noiseSeed = 2;
};

std::unique_ptr<text::layout::Layout> makeLayout(const LayoutShape& shape = {});
std::size_t countWords(const text::layout::Layout& layout);

}  // namespace qent::bench
