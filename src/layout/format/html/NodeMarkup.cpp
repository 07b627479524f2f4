// NodeMarkup.cpp - semantic HTML elements for layout nodes, kept valid for HTML parsers.
#include "layout/format/html/NodeMarkup.h"

#include "base/Unicode.h"
#include "base/xml/XmlText.h"
#include "base/xml/XmlWriter.h"
#include "layout/NodeClass.h"
#include "layout/NodeText.h"
#include "layout/Nodes.h"
#include "layout/TreeWalk.h"
#include "layout/format/html/CssBuilder.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <limits>

namespace qent::text::layout::format::html {

namespace {

constexpr std::size_t kNoOwner = std::numeric_limits<std::size_t>::max();
constexpr std::array<std::string_view, 6> kHeadings = {"h1", "h2", "h3", "h4", "h5", "h6"};

// Box kinds by their table numbers; a box read under a name (kind 25) gets the kind of
// that name, so "ocrx_table" from hOCR is a table as much as kind 7 from code.
enum Kind : std::uint32_t {
  kHeaderRow = 1, kCell = 2, kBody = 3, kFoot = 4, kHead = 5, kRow = 6, kTable = 7,
  kH1 = 9, kH6 = 14, kList = 15, kListItem = 16, kLink = 18
};

std::uint32_t kindOf(const Box& box) {
  return box.boxKind() == Box::kCustomKind ? Box::kindForName(box.typeName()) : box.boxKind();
}

bool isParagraph(const Box& box) {
  const std::u16string& name = box.typeName();
  return name == u"ocr_par" || name == u"paragraph";
}

bool isInline(const Node& node) { return isA<Word>(node) || isA<Glyph>(node); }

// Whether the node holds only lines of words, or words: what a p or h1 may hold.
bool holdsOnlyText(const Node& node) {
  for (std::size_t i = 0; i < node.childCount(); ++i) {
    const Node& child = node.child(i);
    if (isInline(child)) continue;
    if (!isA<Line>(child)) return false;
    for (std::size_t k = 0; k < child.childCount(); ++k) {
      if (!isInline(child.child(k))) return false;
    }
  }
  return true;
}

bool isSection(std::string_view tag) { return tag == "thead" || tag == "tbody" || tag == "tfoot"; }
bool isStructural(std::string_view tag) {
  return tag == "table" || isSection(tag) || tag == "tr" || tag == "ul";
}

// Links go only to the web, to mail or into the document: a layout is data from outside,
// and a "javascript:" link would run in the reader's browser.
bool isSafeLink(std::u16string_view href) {
  for (const std::u16string_view scheme : {u"http://", u"https://", u"mailto:", u"#"}) {
    if (href.size() >= scheme.size()) {
      bool same = true;
      for (std::size_t i = 0; i < scheme.size() && same; ++i) {
        char16_t c = href[i];
        if (c >= u'A' && c <= u'Z') c = static_cast<char16_t>(c - u'A' + u'a');
        same = c == scheme[i];
      }
      if (same) return true;
    }
  }
  return false;
}

// The text a node shows when it has no children. A box read from hOCR holds its id as
// text when it has none of its own; that is no text to show.
std::u16string_view leafText(const Node& node) {
  if (isA<Box>(node)) {
    const auto& box = static_cast<const Box&>(node);
    return box.text() == box.id() ? std::u16string_view() : std::u16string_view(box.text());
  }
  if (isA<Fragment>(node)) return static_cast<const Fragment&>(node).text();
  return {};
}

void addClass(std::string& classes, std::string_view name) {
  if (name.empty()) return;
  if (!classes.empty()) classes += ' ';
  classes += name;
}

}  // namespace

bool NodeMarkup::anchorOpen() const {
  return std::any_of(open_.begin(), open_.end(), [](const Open& o) { return o.tag == "a"; });
}

std::string_view NodeMarkup::elementOf(const Node& node) const {
  const Open& parent = open_.back();
  switch (node.nodeClass()) {
    case NodeClass::Word:
    case NodeClass::Glyph:
    case NodeClass::Content:
    case NodeClass::Image:
    case NodeClass::Node: return {};
    case NodeClass::Line: return parent.phrasing ? std::string_view() : "div";
    case NodeClass::Picture:
      return static_cast<const Picture&>(node).imageSource().empty() ? "div" : "img";
    case NodeClass::Box: break;
    default: return "div";
  }
  const auto& box = static_cast<const Box&>(node);
  const std::uint32_t kind = kindOf(box);
  const bool hasChildren = node.childCount() > 0;
  if (kind >= kH1 && kind <= kH6) return holdsOnlyText(node) ? kHeadings[kind - kH1] : "div";
  switch (kind) {
    case kTable: return hasChildren ? "table" : "div";
    case kRow:
    case kHeaderRow:
      return hasChildren && (parent.tag == "table" || isSection(parent.tag)) ? "tr" : "div";
    case kBody: return hasChildren && parent.tag == "table" ? "tbody" : "div";
    case kFoot: return hasChildren && parent.tag == "table" ? "tfoot" : "div";
    case kHead: return hasChildren && parent.tag == "table" ? "thead" : "div";
    case kCell: return parent.tag == "tr" ? (parent.header ? "th" : "td") : "div";
    case kList: return hasChildren ? "ul" : "div";
    case kListItem: return parent.tag == "ul" ? "li" : "div";
    case kLink: return anchorOpen() ? "div" : "a";
    default: break;
  }
  return isParagraph(box) && holdsOnlyText(node) ? "p" : "div";
}

void NodeMarkup::open(std::string_view tag, std::size_t owner, std::string_view classes) {
  writer_.startElement(tag);
  if (!classes.empty()) writer_.attribute("class", classes);
  Open entry;
  entry.tag = tag;
  entry.owner = owner;
  entry.phrasing = tag == "p" || (tag.size() == 2 && tag[0] == 'h' && tag[1] >= '1' && tag[1] <= '6');
  entry.header = tag == "thead" || (tag == "tr" && open_.back().header);
  open_.push_back(entry);
}

void NodeMarkup::closeFrame() {
  while (!open_.empty() && open_.back().owner == depth_) {
    // An HTML parser takes "<div />" for a start tag: every element but img gets an end tag.
    if (writer_.currentIsEmpty() && open_.back().tag != "img") writer_.text("");
    writer_.endElement();
    open_.pop_back();
  }
  --depth_;
}

// Supplies what the HTML content model requires between the open element and one of tag.
void NodeMarkup::place(std::string_view tag) {
  if (open_.back().implicit && isSection(tag)) {
    writer_.endElement();
    open_.pop_back();
  } else if (open_.back().tag == "table" && !isSection(tag)) {
    // Rows directly in a table: an HTML parser would put them into a tbody of its own.
    open("tbody", depth_ - 1);
    open_.back().implicit = true;
  }
  const std::string_view parent = open_.back().tag;
  if (isSection(parent) && tag != "tr") open("tr", depth_);
  if (open_.back().tag == "tr" && tag != "td" && tag != "th") {
    open(open_.back().header ? "th" : "td", depth_);
  }
  if (parent == "ul" && tag != "li") open("li", depth_);
}

void NodeMarkup::writeText(std::u16string_view text) {
  base::xml::assignXmlText(text_, text);
  writer_.text(text_);
}

void NodeMarkup::writeInline(const Node& node) {
  Open& container = open_.back();
  if (container.needsSpace) writer_.text(" ");
  container.needsSpace = true;
  std::string classes;
  addClasses(node, classes);
  if (!classes.empty()) {
    writer_.startElement("span");
    writer_.attribute("class", classes);
  }
  const std::u16string& own = isA<Fragment>(node) ? static_cast<const Fragment&>(node).text()
                                                  : static_cast<const Content&>(node).text();
  if (own.empty() && node.childCount() > 0) {
    writeText(nodeText(node));  // a word spelt by its glyphs
  } else {
    writeText(own);
  }
  if (!classes.empty()) writer_.endElement();
}

void NodeMarkup::addClasses(const Node& node, std::string& classes) {
  if (!isA<Fragment>(node)) return;
  const auto& f = static_cast<const Fragment&>(node);
  if (f.fontWeight() == FontWeight::kBold) addClass(classes, CssBuilder::kBold);
  if (f.fontStyle() == FontStyle::kItalic || f.fontStyle() == FontStyle::kOblique) {
    addClass(classes, CssBuilder::kItalic);
  }
  if (f.hasColor()) addClass(classes, css_.color(f.color().red, f.color().green, f.color().blue));
  if (!f.fontFamily().empty()) {
    addClass(classes, css_.fontFamily(base::xml::xmlText(f.fontFamily())));
  }
  if (f.fontSize() > 0) addClass(classes, css_.pointSize(f.fontSize()));
}

void NodeMarkup::addLineClasses(const std::vector<XyCut::Bounds>& lines, std::string& classes) {
  if (lines.empty()) return;
  if (medianLineHeight_ > 0) {
    std::vector<std::int64_t> heights;
    heights.reserve(lines.size());
    for (const XyCut::Bounds& b : lines) heights.push_back(b.height());
    const auto middle = heights.begin() + static_cast<std::ptrdiff_t>(heights.size() / 2);
    std::nth_element(heights.begin(), middle, heights.end());
    addClass(classes, css_.relativeSize(static_cast<double>(*middle) / medianLineHeight_));
  }
  if (!aligned_) return;
  // Left unless the lines start apart; then centred or right when they agree on that.
  const std::int64_t tolerance = area_.width() / 20;
  auto all = [&](auto near) {
    return std::all_of(lines.begin(), lines.end(), [&](const XyCut::Bounds& b) { return near(b); });
  };
  if (all([&](const XyCut::Bounds& b) { return std::abs(b.left - area_.left) <= tolerance; })) return;
  const std::int64_t centre = area_.left + area_.right;
  if (all([&](const XyCut::Bounds& b) { return std::abs(b.left + b.right - centre) <= 2 * tolerance; })) {
    addClass(classes, CssBuilder::kCentred);
  } else if (all([&](const XyCut::Bounds& b) { return std::abs(b.right - area_.right) <= tolerance; })) {
    addClass(classes, CssBuilder::kRight);
  }
}

bool NodeMarkup::enter(Node& node) {
  ++depth_;
  std::string_view tag = elementOf(node);
  if (tag.empty() && isStructural(open_.back().tag)) tag = "div";
  if (tag.empty()) {
    if (isInline(node)) {
      writeInline(node);
      closeFrame();
      return false;
    }
    if (isA<Line>(node)) {  // a line of a paragraph or heading
      Open& block = open_.back();
      if (block.hadLine) {
        writer_.startElement("br");
        writer_.endElement();
      }
      block.hadLine = true;
      block.needsSpace = false;
      if (node.childCount() == 0 && !leafText(node).empty()) writeInline(node);
    } else if (isA<Content>(node) && !static_cast<const Content&>(node).text().empty()) {
      writeInline(node);
    }
    if (node.childCount() > 0) return true;
    closeFrame();
    return false;
  }

  std::string classes;
  if (!areaId_.empty() && tag == "div") addClass(classes, "area");
  if (isA<Line>(node)) addClass(classes, "line");
  addClasses(node, classes);
  lineBounds_.clear();
  for (std::size_t i = 0; i < node.childCount(); ++i) {
    const Node& child = node.child(i);
    if (!isA<Line>(child)) continue;
    const Rect& r = static_cast<const Fragment&>(child).rect();
    if (r.width > 0 && r.height > 0) lineBounds_.push_back({r.left, r.top, r.right(), r.bottom()});
  }
  addLineClasses(lineBounds_, classes);

  place(tag);
  if (!areaId_.empty() && tag != "div") {
    open("div", depth_, "area");
    writer_.attribute("id", areaId_);
    areaId_.clear();
  }
  if (tag == "img") {
    const auto& picture = static_cast<const Picture&>(node);
    writer_.startElement("img");
    if (!classes.empty()) writer_.attribute("class", classes);
    writer_.attribute("src", base::xml::xmlText(picture.imageSource()));
    writer_.attribute("alt", "");
    writer_.endElement();
    if (node.childCount() > 0) return true;
    closeFrame();
    return false;
  }
  if (isA<Picture>(node)) {
    addClass(classes, "img");
    const Rect& r = static_cast<const Picture&>(node).rect();
    if (medianLineHeight_ > 0 && r.height > 0) {
      addClass(classes, css_.height(r.height / medianLineHeight_));
    }
  }
  open(tag, depth_, classes);
  if (!areaId_.empty()) {
    writer_.attribute("id", areaId_);
    areaId_.clear();
  }
  if (tag == "a") {
    const auto href = node.attributes().find(u"href");
    if (href != node.attributes().end() && isSafeLink(href->second)) {
      writer_.attribute("href", base::xml::xmlText(href->second));
    }
  }
  if (tag == "tr" && isA<Box>(node) && kindOf(static_cast<const Box&>(node)) == kHeaderRow) {
    open_.back().header = true;
  }
  if (node.childCount() > 0) return true;
  if (!leafText(node).empty()) writeText(leafText(node));
  closeFrame();
  return false;
}

void NodeMarkup::writeNode(Node& node) {
  if (!enter(node)) return;
  walkBelow(
      node, [this](Node& child, Node&) { return enter(child); }, [this](Node&) { closeFrame(); });
  closeFrame();
}

void NodeMarkup::writeArea(const Area& area, std::string_view id) {
  area_ = area.bounds;
  aligned_ = true;
  open_.push_back(Open{"div", kNoOwner});
  if (area.node != nullptr) {
    areaId_ = id;
    writeNode(*area.node);
    areaId_.clear();
  } else {
    ++depth_;
    std::string classes = "area";
    lineBounds_.clear();
    for (const std::vector<Node*>& line : area.lines) {
      XyCut::Bounds b;
      for (const Node* n : line) {
        const Rect& r = static_cast<const Fragment&>(*n).rect();
        const XyCut::Bounds nb{r.left, r.top, r.right(), r.bottom()};
        if (n == line.front()) b = nb;
        b.include(nb);
      }
      lineBounds_.push_back(b);
    }
    addLineClasses(lineBounds_, classes);
    open("div", depth_, classes);
    writer_.attribute("id", id);
    for (const std::vector<Node*>& line : area.lines) {
      if (line.size() == 1 && isA<Line>(*line.front())) {
        writeNode(*line.front());
        continue;
      }
      ++depth_;
      open("div", depth_, "line");
      for (Node* word : line) writeNode(*word);
      closeFrame();
    }
    closeFrame();
  }
  open_.pop_back();
  aligned_ = false;
}

void NodeMarkup::writeFlow(const std::vector<Node*>& items) {
  open_.push_back(Open{"div", kNoOwner});
  for (Node* item : items) writeNode(*item);
  open_.pop_back();
}

}  // namespace qent::text::layout::format::html
