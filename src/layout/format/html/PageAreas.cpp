// PageAreas.cpp - areas, groups of loose lines and flowing items of a page.
#include "layout/format/html/PageAreas.h"

#include "layout/NodeClass.h"
#include "layout/Nodes.h"
#include "layout/TreeWalk.h"

#include <algorithm>

namespace qent::text::layout::format::html {

namespace {

bool isWrapper(const Node& node) {
  const NodeClass c = node.nodeClass();
  if (c == NodeClass::Node || c == NodeClass::Image) return true;
  return c == NodeClass::Content && static_cast<const Content&>(node).text().empty();
}

// The node's rectangle when it has an area.
bool boundsOf(const Node& node, XyCut::Bounds& out) {
  if (!isA<Fragment>(node)) return false;
  const Rect& rect = static_cast<const Fragment&>(node).rect();
  if (rect.width <= 0 || rect.height <= 0) return false;
  out = {rect.left, rect.top, rect.right(), rect.bottom()};
  return true;
}

double median(std::vector<std::int64_t>& values) {
  if (values.empty()) return 0;
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return static_cast<double>(*middle);
}

// The median height of the lines with geometry; without such lines, of the words. Words
// are visited only then: they are most of a page, and reading them costs most of the walk.
double medianLineHeight(const std::vector<Node*>& items) {
  std::vector<std::int64_t> heights;
  for (const bool words : {false, true}) {
    auto note = [&](const Node& node) {
      XyCut::Bounds b;
      if ((words ? isA<Word>(node) : isA<Line>(node)) && boundsOf(node, b)) {
        heights.push_back(b.height());
      }
      // Glyphs say nothing about line heights.
      return words ? !isA<Word>(node) : !isA<Line>(node);
    };
    for (Node* item : items) {
      if (note(*item)) walkBelow(*item, [&](Node& node, Node&) { return note(node); }, [](Node&) {});
    }
    if (!heights.empty()) break;
  }
  return median(heights);
}

std::int64_t overlap(std::int64_t start1, std::int64_t end1, std::int64_t start2,
                     std::int64_t end2) {
  return std::min(end1, end2) - std::max(start1, start2);
}

// Builds the groups of loose lines and words as the items come, in document order.
class LooseLines {
public:
  LooseLines(PageAreas& page) : page_(page) {}

  void addWord(Node* word, const XyCut::Bounds& b) {
    if (!words_.empty()) {
      const XyCut::Bounds& last = wordBounds_;
      const bool sameLine = 2 * overlap(last.top, last.bottom, b.top, b.bottom) >=
                                std::min(last.height(), b.height()) &&
                            b.left >= last.left;
      if (!sameLine) endWords();
    }
    if (words_.empty()) lineBounds_ = b;
    lineBounds_.include(b);
    wordBounds_ = b;
    words_.push_back(word);
  }

  void addLine(Node* line, const XyCut::Bounds& b) {
    endWords();
    addToArea({line}, b);
  }

  // Something else came between: the current groups end.
  void end() {
    endWords();
    if (!group_.lines.empty()) page_.areas.push_back(std::move(group_));
    group_ = Area();
  }

private:
  void endWords() {
    if (words_.empty()) return;
    std::vector<Node*> words = std::move(words_);
    words_.clear();
    addToArea(std::move(words), lineBounds_);
  }

  void addToArea(std::vector<Node*> line, const XyCut::Bounds& b) {
    if (!group_.lines.empty()) {
      const std::int64_t gap = b.top - lastLine_.bottom;
      const std::int64_t narrower = std::min(lastLine_.width(), b.width());
      const bool joins = static_cast<double>(gap) <= page_.medianLineHeight &&
                         10 * overlap(lastLine_.left, lastLine_.right, b.left, b.right) >=
                             3 * narrower;
      if (!joins) end();
    }
    if (group_.lines.empty()) group_.bounds = b;
    group_.bounds.include(b);
    group_.lines.push_back(std::move(line));
    lastLine_ = b;
  }

  PageAreas& page_;
  Area group_;
  XyCut::Bounds lastLine_;
  std::vector<Node*> words_;
  XyCut::Bounds wordBounds_;
  XyCut::Bounds lineBounds_;
};

}  // namespace

std::vector<Node*> itemsBelow(Node& start) {
  std::vector<Node*> items;
  walkBelow(
      start,
      [&](Node& node, Node&) {
        if (isWrapper(node)) return true;
        items.push_back(&node);
        return false;
      },
      [](Node&) {});
  return items;
}

PageAreas collectAreas(const std::vector<Node*>& items) {
  PageAreas page;
  page.medianLineHeight = medianLineHeight(items);
  LooseLines loose(page);
  for (Node* item : items) {
    XyCut::Bounds b;
    if (!boundsOf(*item, b)) {
      // Without geometry an item has no place on the page: it follows the areas.
      page.flow.push_back(item);
    } else if (isA<Word>(*item) || isA<Glyph>(*item)) {
      loose.addWord(item, b);
    } else if (isA<Line>(*item)) {
      loose.addLine(item, b);
    } else {
      loose.end();
      page.areas.push_back(Area{item, {}, b});
    }
  }
  loose.end();
  return page;
}

}  // namespace qent::text::layout::format::html
