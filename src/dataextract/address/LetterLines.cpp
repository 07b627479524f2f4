// LetterLines.cpp - layout words gathered into lines, lines grouped into blocks.
#include "dataextract/address/LetterLines.h"

#include "dataextract/PageWords.h"
#include "dataextract/address/AddressGrammar.h"
#include "layout/Nodes.h"

#include <algorithm>
#include <cstdlib>
#include <map>

namespace qent::dataextract {

namespace {

using text::layout::Rect;

Rect unite(const Rect& a, const Rect& b) {
  if (!a.hasGeometry()) return b;
  if (!b.hasGeometry()) return a;
  const std::int64_t left = std::min(a.left, b.left), top = std::min(a.top, b.top);
  const std::int64_t right = std::max(a.right(), b.right());
  const std::int64_t bottom = std::max(a.bottom(), b.bottom());
  return Rect{static_cast<std::int32_t>(left), static_cast<std::int32_t>(top),
              static_cast<std::int32_t>(std::min<std::int64_t>(right - left, INT32_MAX)),
              static_cast<std::int32_t>(std::min<std::int64_t>(bottom - top, INT32_MAX))};
}

void append(LetterLine& line, const std::u16string& word, const Rect& rect) {
  if (word.empty()) return;
  if (!line.text.empty()) line.text += u' ';
  line.text += word;
  line.rect = unite(line.rect, rect);
}

// A word this far right of the line's last word starts another column: OCR engines join
// a letterhead and the address field beside it into one line when they share a baseline.
bool startsColumn(const LetterLine& line, const Rect& word) {
  if (!line.rect.hasGeometry() || !word.hasGeometry()) return false;
  const std::int64_t height = std::max(line.rect.height, word.height);
  return word.left - line.rect.right() > 3 * height;
}

// The words of each layout line in document order, cut where a wide gap separates two
// columns; words outside lines join the line they overlap vertically, so a flat list of
// words still yields lines.
std::vector<LetterLine> linesOf(const PageWords& page) {
  std::vector<LetterLine> lines;
  std::map<const text::layout::Line*, std::size_t> index;  // to the line's last part
  for (const PlacedWord& placed : page.words) {
    const std::u16string text = wordText(*placed.word);
    const Rect& rect = placed.word->rect();
    if (placed.line != nullptr) {
      auto [it, added] = index.try_emplace(placed.line, lines.size());
      if (added || startsColumn(lines[it->second], rect)) {
        it->second = lines.size();
        lines.emplace_back();
      }
      append(lines[it->second], text, rect);
      continue;
    }
    auto overlapping = std::find_if(lines.rbegin(), lines.rend(), [&](const LetterLine& line) {
      const std::int64_t middle = rect.top + std::int64_t{rect.height} / 2;
      return rect.hasGeometry() && line.rect.hasGeometry() && middle >= line.rect.top &&
             middle < line.rect.bottom();
    });
    if (overlapping == lines.rend()) {
      lines.emplace_back();
      append(lines.back(), text, rect);
    } else {
      append(*overlapping, text, rect);
    }
  }
  lines.erase(std::remove_if(lines.begin(), lines.end(),
                             [](const LetterLine& line) { return line.text.empty(); }),
              lines.end());
  return lines;
}

// A line continues a block when it starts below the block's last line after a gap of at
// most about one line height, and their left edges agree within two line heights (the
// return address above a window is often set a little apart).
bool continues(const LetterLine& last, const LetterLine& next) {
  const std::int64_t height = std::max(last.rect.height, next.rect.height);
  const std::int64_t gap = next.rect.top - last.rect.bottom();
  return gap >= -height / 2 && gap <= height * 3 / 2 &&
         std::llabs(std::int64_t{next.rect.left} - last.rect.left) <= height * 2;
}

void groupPlaced(LetterPage& page) {
  std::stable_sort(page.lines.begin(), page.lines.end(), [](const LetterLine& a, const LetterLine& b) {
    return a.rect.top != b.rect.top ? a.rect.top < b.rect.top : a.rect.left < b.rect.left;
  });
  for (std::size_t i = 0; i < page.lines.size(); ++i) {
    const LetterLine& line = page.lines[i];
    std::vector<std::size_t>* best = nullptr;
    std::int64_t bestGap = 0;
    for (auto& block : page.blocks) {
      const LetterLine& last = page.lines[block.back()];
      if (!line.rect.hasGeometry() || !last.rect.hasGeometry() || !continues(last, line)) continue;
      const std::int64_t gap = std::llabs(line.rect.top - last.rect.bottom());
      if (best == nullptr || gap < bestGap) {
        best = &block;
        bestGap = gap;
      }
    }
    if (best != nullptr) {
      best->push_back(i);
    } else {
      page.blocks.push_back({i});
    }
  }
}

}  // namespace

std::vector<LetterPage> letterPagesOf(text::layout::Node& root) {
  std::vector<LetterPage> pages;
  for (const PageWords& words : collectPageWords(root)) {
    LetterPage page;
    page.number = words.number;
    page.lines = linesOf(words);
    Rect extent;
    for (const LetterLine& line : page.lines) extent = unite(extent, line.rect);
    const bool sized = words.page != nullptr && words.page->width() > 0 && words.page->height() > 0;
    page.width = sized ? words.page->width() : static_cast<double>(extent.right());
    page.height = sized ? words.page->height() : static_cast<double>(extent.bottom());
    groupPlaced(page);
    pages.push_back(std::move(page));
  }
  return pages;
}

LetterPage letterPageOfText(std::u16string_view text) {
  LetterPage page;
  std::size_t start = 0;
  bool blank = true;
  while (start <= text.size()) {
    const std::size_t end = std::min(text.find(u'\n', start), text.size());
    const auto found = addressLines(text.substr(start, end - start));
    if (found.empty()) {
      blank = true;
    } else {
      if (blank) page.blocks.emplace_back();
      blank = false;
      page.blocks.back().push_back(page.lines.size());
      page.lines.push_back(LetterLine{found.front(), {}});
    }
    start = end + 1;
  }
  return page;
}

}  // namespace qent::dataextract
