// AltoWriter.cpp - the layout tree fitted into ALTO's element nesting and streamed.
#include "layout/format/alto/AltoWriter.h"

#include "base/NumberConversion.h"
#include "base/xml/XmlText.h"
#include "base/xml/XmlWriter.h"
#include "layout/Layout.h"
#include "layout/NodeText.h"
#include "layout/Nodes.h"
#include "layout/TreeWalk.h"
#include "layout/format/xml/XmlOutput.h"

#include <algorithm>
#include <map>
#include <utility>
#include <vector>

namespace qent::text::layout::format {

namespace {

using base::xml::xmlText;

// Where in ALTO's nesting a walk stands: what the children of the open element may be.
enum class Level { Document, Blocks, Lines, Words, Glyphs };

struct Frame {
  Level level;
  int closes = 0;    // elements the node opened
  int wrappers = 0;  // TextBlock/TextLine opened inside it for lines or words found loose
  bool afterString = false;
  std::optional<std::u16string_view> hyphen = std::nullopt;  // a String's HYP, written after it
};

using FontKey = std::pair<std::u16string, double>;

std::optional<std::u16string_view> attribute(const Node& node, std::u16string_view key) {
  return node.attributes().get(key);
}

bool allTokensIn(std::u16string_view value, std::initializer_list<std::u16string_view> allowed) {
  if (value.empty()) return false;
  while (!value.empty()) {
    const std::size_t space = value.find(u' ');
    const std::u16string_view token = value.substr(0, space);
    if (!token.empty() && std::find(allowed.begin(), allowed.end(), token) == allowed.end()) {
      return false;
    }
    value = space == std::u16string_view::npos ? std::u16string_view() : value.substr(space + 1);
  }
  return true;
}

bool isLanguage(std::u16string_view value) {
  if (value.empty() || value.size() > 35) return false;
  std::size_t part = 0;
  for (char16_t c : value) {
    const bool alnum =
        (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9');
    if (c == u'-') {
      if (part == 0) return false;
      part = 0;
    } else if (!alnum || ++part > 8) {
      return false;
    }
  }
  return part > 0;
}

bool isWholeNumber(std::u16string_view value) {
  return !value.empty() && value.size() < 10 &&
         std::all_of(value.begin(), value.end(), [](char16_t c) { return c >= u'0' && c <= u'9'; });
}

class AltoBuilder {
public:
  AltoBuilder(const Layout& layout, base::xml::XmlWriter& out)
      : layout_(layout), out_(out), factor_(xml::confidenceFactor(layout)) {}

  void build() {
    Node* root = layout_.root();
    if (root != nullptr) survey(*root);
    out_.declaration("1.0", "UTF-8");
    out_.startElement("alto");
    out_.attribute("xmlns", "http://www.loc.gov/standards/alto/ns-v4#");
    out_.attribute("xmlns:xsi", "http://www.w3.org/2001/XMLSchema-instance");
    out_.attribute("xsi:schemaLocation",
                   "http://www.loc.gov/standards/alto/ns-v4# "
                   "http://www.loc.gov/alto/v4/alto-4-4.xsd");
    writeDescription();
    writeStyles();
    out_.startElement("Layout");
    frames_.push_back({Level::Document});
    // ALTO needs a page: a layout without one is written as one page of size 0 that holds
    // whatever the layout has.
    Page none;
    const bool barePage = root == nullptr || xml::countPages(*root) == 0;
    if (barePage) writePage(none);
    if (root != nullptr) {
      if (enter(*root))
        walkBelow(
            *root, [this](Node& n, Node&) { return enter(n); }, [this](Node& n) { leave(n); });
      leave(*root);
    }
    if (barePage) leave(none);
    out_.endElement();  // Layout
    out_.endElement();  // alto
    out_.finish();
  }

private:
  // What the head names: the source image and the fonts in use.
  void survey(Node& root) {
    walkBelow(
        root,
        [this](Node& node, Node&) {
          if (node.nodeClass() == NodeClass::Image && image_.empty()) {
            image_ = static_cast<Image&>(node).image();
          }
          if (node.nodeClass() == NodeClass::Word) {
            const Word& word = static_cast<Word&>(node);
            if (word.fontSize() >= 0) {
              fonts_.emplace(FontKey{word.fontFamily(), word.fontSize()}, "");
            }
          }
          return true;
        },
        [](Node&) {});
    std::size_t n = 0;
    for (auto& [key, id] : fonts_) id = "font" + std::to_string(n++);
  }

  void writeDescription() {
    out_.startElement("Description");
    element("MeasurementUnit", "pixel");
    if (!image_.empty()) {
      out_.startElement("sourceImageInformation");
      element("fileName", xmlText(image_));
      out_.endElement();
    }
    std::size_t n = 0;
    for (const auto& [name, version] : layout_.versions()) {
      out_.startElement("Processing");
      out_.attribute("ID", "processing_" + std::to_string(++n));
      out_.startElement("processingSoftware");
      if (!name.empty()) element("softwareName", xmlText(name));
      if (!version.empty()) element("softwareVersion", xmlText(version));
      out_.endElement();
      out_.endElement();
    }
    out_.endElement();
  }

  void writeStyles() {
    if (fonts_.empty()) return;
    out_.startElement("Styles");
    for (const auto& [key, id] : fonts_) {
      out_.startElement("TextStyle");
      out_.attribute("ID", id);
      if (!key.first.empty()) out_.attribute("FONTFAMILY", xmlText(key.first));
      out_.attribute("FONTSIZE", base::formatShortest(key.second));
      out_.endElement();
    }
    out_.endElement();
  }

  void element(const char* name, std::string_view text) {
    out_.startElement(name);
    out_.text(text);
    out_.endElement();
  }

  bool enter(Node& node) {
    Frame& context = frames_.back();
    const Level level = context.level;
    switch (node.nodeClass()) {
      case NodeClass::Page:
        if (level != Level::Document) return transparent(context);
        writePage(static_cast<Page&>(node));
        return true;
      case NodeClass::Image:
        return false;
      case NodeClass::Box:
        return enterBox(static_cast<Box&>(node), context);
      case NodeClass::Picture:
        if (level != Level::Blocks) return false;
        closeWrappers(context);
        open("Illustration", node, "illustration", true);
        closeStart(node);
        out_.endElement();
        return false;  // nothing of ALTO's below an illustration but its shape
      case NodeClass::Line: {
        if (level == Level::Blocks) wrap(context, 1);
        if (level == Level::Lines) closeWrappers(context);
        if (level != Level::Blocks && level != Level::Lines) return transparent(context);
        open("TextLine", node, "line");
        // ALTO 4 keeps the points as "BASELINE", PAGE as "Baseline".
        std::optional<std::u16string_view> baseline = attribute(node, u"BASELINE");
        if (!baseline) baseline = attribute(node, u"Baseline");
        if (baseline) {
          out_.attribute("BASELINE", xmlText(*baseline));
        }
        closeStart(node);
        if (!holdsWords(node)) {
          // A TextLine holds at least one String: a line read without words (PAGE lines,
          // hOCR lines of line-level engines) is written as one String with its text.
          out_.startElement("String");
          writeRect(static_cast<Fragment&>(node).rect());
          out_.attribute("CONTENT", xmlText(nodeText(node)));
          out_.endElement();
          out_.endElement();  // TextLine
          return false;
        }
        frames_.push_back({Level::Words, 1});
        return true;
      }
      case NodeClass::Word:
      case NodeClass::Glyph:
        if (level == Level::Glyphs && node.nodeClass() == NodeClass::Glyph) {
          writeGlyph(static_cast<Glyph&>(node));
          return false;
        }
        if (level == Level::Blocks) wrap(context, 2);
        if (level == Level::Lines) wrap(context, 1);
        if (level == Level::Blocks || level == Level::Lines || level == Level::Words) {
          writeString(static_cast<Fragment&>(node));
          return true;
        }
        return false;
      default:
        return transparent(context);
    }
  }

  static bool holdsWords(Node& line) {
    bool found = false;
    walkBelow(
        line,
        [&found](Node& node, Node&) {
          found =
              found || node.nodeClass() == NodeClass::Word || node.nodeClass() == NodeClass::Glyph;
          return !found;
        },
        [](Node&) {});
    return found;
  }

  void leave(Node&) {
    const Frame frame = frames_.back();
    frames_.pop_back();
    for (int i = 0; i < frame.wrappers + frame.closes; ++i) out_.endElement();
    if (frame.hyphen) {
      out_.startElement("HYP");
      out_.attribute("CONTENT", xmlText(*frame.hyphen));
      out_.endElement();
    }
  }

  // A node ALTO has no element for: its children stand where it stands.
  bool transparent(const Frame& context) {
    frames_.push_back({context.level});
    return true;
  }

  void closeWrappers(Frame& context) {
    for (; context.wrappers > 0; --context.wrappers) out_.endElement();
    context.afterString = false;
  }

  // Opens a TextBlock and/or TextLine without id for loose lines or words, unless open.
  void wrap(Frame& context, int depth) {
    if (context.wrappers == depth) return;
    closeWrappers(context);
    if (context.level == Level::Blocks) {
      out_.startElement("TextBlock");
      out_.attribute("ID", ids_.idFor(u"", "block"));
      ++context.wrappers;
    }
    if (depth == 2 || context.level == Level::Lines) {
      out_.startElement("TextLine");
      ++context.wrappers;
    }
  }

  bool enterBox(Box& box, Frame& context) {
    if (context.level != Level::Blocks) return transparent(context);
    const std::u16string& name = box.typeName();
    if (name == u"PrintSpace" && printSpaceOpen_) {
      // Its rectangle went to the PrintSpace already.
      return transparent(context);
    }
    closeWrappers(context);
    bool holdsBlocks = false;
    for (const auto& child : box.children()) {
      const NodeClass c = child->nodeClass();
      if (c == NodeClass::Box || c == NodeClass::Picture) holdsBlocks = true;
    }
    if (name == u"GraphicalElement" && box.childCount() == 0) {
      open("GraphicalElement", box, "graphic", true);
      closeStart(box);
      out_.endElement();
      return false;
    }
    open(holdsBlocks ? "ComposedBlock" : "TextBlock", box, "block", true);
    closeStart(box);
    frames_.push_back({holdsBlocks ? Level::Blocks : Level::Lines, 1});
    return true;
  }

  void writePage(Page& page) {
    out_.startElement("Page");
    out_.attribute("ID", ids_.idFor(page.id(), "page"));
    out_.attribute("HEIGHT", std::to_string(page.height()));
    out_.attribute("WIDTH", std::to_string(page.width()));
    std::optional<std::u16string_view> number = attribute(page, u"PHYSICAL_IMG_NR");
    out_.attribute("PHYSICAL_IMG_NR", number && isWholeNumber(*number)
                                          ? xmlText(*number)
                                          : std::to_string(page.indexInLayout() + 1));
    out_.startElement("PrintSpace");
    // A PrintSpace read from ALTO is the page's first block; it gives its rectangle back.
    const Fragment* space = nullptr;
    for (const auto& child : page.children()) {
      if (child->nodeClass() == NodeClass::Box &&
          static_cast<Box&>(*child).typeName() == u"PrintSpace") {
        space = static_cast<const Fragment*>(child.get());
        break;
      }
    }
    const Rect rect = space != nullptr ? space->rect()
                                       : Rect{0, 0, static_cast<std::int32_t>(page.width()),
                                              static_cast<std::int32_t>(page.height())};
    writeRect(rect);
    printSpaceOpen_ = space != nullptr;
    frames_.push_back({Level::Blocks, 2});
  }

  // Blocks must have an ID in ALTO 4; lines, strings and glyphs keep theirs if they have one.
  void open(const char* name, Node& node, std::string_view prefix, bool idRequired = false) {
    out_.startElement(name);
    if (idRequired || !node.id().empty()) out_.attribute("ID", ids_.idFor(node.id(), prefix));
    if (isA(node)) writeRect(static_cast<Fragment&>(node).rect());
  }

  static bool isA(const Node& node) {
    const NodeClass c = node.nodeClass();
    return c != NodeClass::Node && c != NodeClass::Page && c != NodeClass::Image &&
           c != NodeClass::Content;
  }

  // The polygon, the first child of ALTO elements.
  void closeStart(Node& node) {
    if (!isA(node)) return;
    const std::vector<Point>& polygon = static_cast<Fragment&>(node).polygon();
    if (polygon.empty()) return;
    out_.startElement("Shape");
    out_.startElement("Polygon");
    out_.attribute("POINTS", xml::pointsText(polygon));
    out_.endElement();
    out_.endElement();
  }

  void writeRect(const Rect& rect) {
    if (!rect.hasGeometry()) return;
    out_.attribute("HPOS", std::to_string(rect.left));
    out_.attribute("VPOS", std::to_string(rect.top));
    out_.attribute("WIDTH", std::to_string(rect.width));
    out_.attribute("HEIGHT", std::to_string(rect.height));
  }

  void writeString(Fragment& word) {
    Frame& context = frames_.back();
    if (context.afterString) {
      out_.startElement("SP");
      out_.endElement();
    }
    context.afterString = true;
    open("String", word, "string");
    out_.attribute("CONTENT", xmlText(word.text().empty() ? nodeText(word) : word.text()));
    const std::string wc = xml::confidenceText(word, factor_);
    if (!wc.empty()) out_.attribute("WC", wc);
    const auto font = fonts_.find(FontKey{word.fontFamily(), word.fontSize()});
    if (font != fonts_.end()) out_.attribute("STYLEREFS", font->second);
    if (std::optional<std::u16string_view> style = attribute(word, u"STYLE");
        style && allTokensIn(*style, {u"bold", u"italics", u"subscript", u"superscript",
                                                 u"smallCaps", u"underline"})) {
      out_.attribute("STYLE", xmlText(*style));
    }
    if (std::optional<std::u16string_view> type = attribute(word, u"SUBS_TYPE");
        type && allTokensIn(*type, {u"HypPart1", u"HypPart2", u"Abbreviation"}) &&
        type->find(u' ') == std::u16string::npos) {
      out_.attribute("SUBS_TYPE", xmlText(*type));
      if (std::optional<std::u16string_view> content = attribute(word, u"SUBS_CONTENT")) {
        out_.attribute("SUBS_CONTENT", xmlText(*content));
      }
    }
    for (const char16_t* key : {u"LANG", u"language"}) {
      if (std::optional<std::u16string_view> lang = attribute(word, key); lang && isLanguage(*lang)) {
        out_.attribute("LANG", xmlText(*lang));
        break;
      }
    }
    closeStart(word);
    if (std::optional<std::u16string_view> alternatives = attribute(word, u"ALTERNATIVE")) {
      std::u16string_view rest = *alternatives;
      while (true) {
        const std::size_t tab = rest.find(u'\t');
        element("ALTERNATIVE", xmlText(rest.substr(0, tab)));
        if (tab == std::u16string_view::npos) break;
        rest = rest.substr(tab + 1);
      }
    }
    frames_.push_back({Level::Glyphs, 1, 0, false, attribute(word, u"HYP")});
  }

  // ALTO's Glyph holds exactly one character; a glyph of a base letter and a combining
  // mark, or of no text, is left out (its String keeps the whole text).
  void writeGlyph(Glyph& glyph) {
    std::optional<std::u16string_view> content = attribute(glyph, u"CONTENT");
    const std::u16string_view text =
        !glyph.text().empty() || !content ? std::u16string_view(glyph.text()) : *content;
    const bool pair = text.size() == 2 && text[0] >= 0xD800 && text[0] < 0xDC00;
    if (text.size() != 1 && !pair) return;
    open("Glyph", glyph, "glyph");
    out_.attribute("CONTENT", xmlText(text));
    const std::string gc = xml::confidenceText(glyph, factor_);
    if (!gc.empty()) out_.attribute("GC", gc);
    closeStart(glyph);
    out_.endElement();
  }

  const Layout& layout_;
  base::xml::XmlWriter& out_;
  const double factor_;
  xml::IdAssigner ids_;
  std::u16string image_;
  std::map<FontKey, std::string> fonts_;
  std::vector<Frame> frames_;
  bool printSpaceOpen_ = false;
};

}  // namespace

void AltoWriter::write(const Layout& layout, base::Sink& sink) {
  base::xml::XmlWriter writer(sink);
  AltoBuilder(layout, writer).build();
}

std::string AltoWriter::write(const Layout& layout) {
  base::StringSink sink;
  write(layout, sink);
  return std::move(sink.text());
}

}  // namespace qent::text::layout::format
