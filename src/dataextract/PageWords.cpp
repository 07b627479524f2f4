// PageWords.cpp - one walk over the tree that sorts the words into their pages and lines.
#include "dataextract/PageWords.h"

#include "layout/NodeClass.h"
#include "layout/NodeText.h"
#include "layout/Nodes.h"
#include "layout/TreeWalk.h"

namespace qent::dataextract {

using text::layout::isA;
using text::layout::Line;
using text::layout::Node;
using text::layout::Page;
using text::layout::Word;

std::vector<PageWords> collectPageWords(Node& root) {
  std::vector<PageWords> pages;
  PageWords outside{nullptr, 0, {}};
  PageWords* current = nullptr;  // the open top-level page, if any
  std::vector<const Line*> lines;

  auto enter = [&](Node& node) {
    if (current == nullptr && isA<Page>(node)) {
      pages.push_back(PageWords{static_cast<Page*>(&node),
                                static_cast<std::uint32_t>(pages.size() + 1), {}});
      current = &pages.back();
    } else if (isA<Line>(node)) {
      lines.push_back(static_cast<const Line*>(&node));
    } else if (isA<Word>(node)) {
      PageWords& target = current != nullptr ? *current : outside;
      target.words.push_back(
          PlacedWord{static_cast<Word*>(&node), lines.empty() ? nullptr : lines.back()});
    }
  };
  auto leave = [&](Node& node) {
    if (current != nullptr && &node == current->page) {
      current = nullptr;
    } else if (!lines.empty() && &node == lines.back()) {
      lines.pop_back();
    }
  };
  // `current` points into `pages`, which grows only while no page is open.
  enter(root);
  text::layout::walkBelow(
      root,
      [&](Node& node, Node&) {
        enter(node);
        return true;
      },
      leave);
  if (!outside.words.empty()) pages.push_back(std::move(outside));
  return pages;
}

std::u16string wordText(const Word& word) {
  return word.text().empty() ? text::layout::nodeText(word) : word.text();
}

}  // namespace qent::dataextract
