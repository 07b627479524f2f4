// LetterLines.h - the text lines of a letter page with their rectangles, and the blocks of
// lines that may form an address.
#pragma once

#include "layout/Rect.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace qent::text::layout {
class Node;
}

namespace qent::dataextract {

struct LetterLine {
  std::u16string text;
  text::layout::Rect rect;  // no geometry when the line came from plain text
};

struct LetterPage {
  std::uint32_t number = 0;  // from 1 in layouts; 0 for plain text
  double width = 0;          // the page's size, else the extent of its lines; 0 for text
  double height = 0;
  std::vector<LetterLine> lines;
  // Runs of lines (indices into `lines`) that lie together: close below each other and
  // left-aligned on a layout, between blank lines in a text.
  std::vector<std::vector<std::size_t>> blocks;
};

// The pages of a layout with their lines (the words of a layout line, joined by blanks).
std::vector<LetterPage> letterPagesOf(text::layout::Node& root);
// A plain text as one page without geometry.
LetterPage letterPageOfText(std::u16string_view text);

}  // namespace qent::dataextract
