// NodeMarkup.h - the HTML elements of one area's (or one flowing item's) subtree.
#pragma once

#include "layout/format/html/PageAreas.h"
#include "layout/format/html/XyCut.h"

#include <string>
#include <string_view>
#include <vector>

namespace qent::base::xml {
class XmlWriter;
}

namespace qent::text::layout {
class Node;
}

namespace qent::text::layout::format::html {

class CssBuilder;

// Writes subtrees as semantic HTML: headings h1..h6, tables, lists and links by box kind,
// paragraphs as p with their lines separated by <br />, any other line as div.line, words
// as text separated by blanks (in a span when they carry a font, weight, style or colour),
// pictures as img (or a sized empty div.img without a source). Where the tree does not
// fit the HTML content model (a line directly in a table, a paragraph holding a table),
// the missing elements are supplied (tbody, tr, td, li) or a div is written instead, so
// that an HTML parser builds the same tree as an XML parser. The tree is walked without
// recursion; every node's text is written once.
//
// Borrows the writer and the style sheet builder for its lifetime.
class NodeMarkup {
public:
  NodeMarkup(base::xml::XmlWriter& writer, CssBuilder& css) : writer_(writer), css_(css) {}

  // Sizes are relative to the page's median line height (none when 0).
  void startPage(double medianLineHeight) { medianLineHeight_ = medianLineHeight; }
  // The area as div.area with the id (the node's own element when that is a div).
  void writeArea(const Area& area, std::string_view id);
  // Items without geometry, one after the other; they are not aligned.
  void writeFlow(const std::vector<Node*>& items);

private:
  struct Open {
    std::string_view tag;
    std::size_t owner = 0;     // the frame that closes it
    bool phrasing = false;     // lines are separated by <br />, not elements
    bool header = false;       // cells are th
    bool implicit = false;     // a tbody the tree has no node for
    bool needsSpace = false;   // a word was written: the next one needs a blank
    bool hadLine = false;      // a line was written: the next one needs a <br />
  };

  void writeNode(Node& node);
  bool enter(Node& node);
  void leave();
  void place(std::string_view tag);
  void open(std::string_view tag, std::size_t owner, std::string_view classes = {});
  void closeFrame();
  void writeInline(const Node& node);
  void writeText(std::u16string_view text);
  void addClasses(const Node& node, std::string& classes);
  void addLineClasses(const std::vector<XyCut::Bounds>& lines, std::string& classes);
  std::string_view elementOf(const Node& node) const;
  bool anchorOpen() const;

  base::xml::XmlWriter& writer_;
  CssBuilder& css_;
  double medianLineHeight_ = 0;
  XyCut::Bounds area_;
  bool aligned_ = false;  // inside an area, whose bounds lines are aligned against
  std::string areaId_;                  // given to the next element opened
  std::vector<XyCut::Bounds> lineBounds_;  // reused for every line container
  std::vector<Open> open_;
  std::size_t depth_ = 0;  // frames entered
  std::string text_;       // reused for every text written
};

}  // namespace qent::text::layout::format::html
