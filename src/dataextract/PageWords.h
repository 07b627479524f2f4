// PageWords.h - the words of a layout page by page, each with the line it belongs to: what
// region templates and entity extraction read.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace qent::text::layout {
class Node;
class Page;
class Line;
class Word;
}  // namespace qent::text::layout

namespace qent::dataextract {

struct PlacedWord {
  text::layout::Word* word;
  const text::layout::Line* line;  // the innermost line around the word; null outside lines
};

struct PageWords {
  text::layout::Page* page;  // null for the words outside every page
  std::uint32_t number;      // position of the page in the layout from 1; 0 outside pages
  std::vector<PlacedWord> words;  // document order
};

// The pages of the tree below and including `root`, in document order. A page nested in a
// page belongs to the outer one. Words outside every page form a last group of number 0
// (only when there are such words), so that nothing of a layout goes unread.
std::vector<PageWords> collectPageWords(text::layout::Node& root);

// A word's text: its own, or the texts of its glyphs when it has none of its own.
std::u16string wordText(const text::layout::Word& word);

}  // namespace qent::dataextract
