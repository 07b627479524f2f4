// PageXmlWriter.cpp - the layout tree fitted into PAGE's regions, lines, words and glyphs.
#include "layout/format/page/PageXmlWriter.h"

#include "base/Unicode.h"
#include "base/xml/XmlText.h"
#include "base/xml/XmlWriter.h"
#include "layout/Layout.h"
#include "layout/NodeText.h"
#include "layout/Nodes.h"
#include "layout/TreeWalk.h"
#include "layout/format/xml/XmlInput.h"
#include "layout/format/xml/XmlOutput.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <stdexcept>
#include <vector>

namespace qent::text::layout::format {

namespace {

using base::xml::xmlText;

constexpr std::u16string_view kRegions[] = {
    u"TextRegion",  u"ImageRegion",  u"LineDrawingRegion", u"GraphicRegion", u"TableRegion",
    u"ChartRegion", u"MapRegion",    u"SeparatorRegion",   u"MathsRegion",   u"ChemRegion",
    u"MusicRegion", u"AdvertRegion", u"NoiseRegion",       u"UnknownRegion", u"CustomRegion",
};

// Where the walk stands: what the children of the open element may be.
enum class Level { Document, Regions, Lines, Words, Glyphs };
// What the node of a frame wrote, for what follows its children.
enum class Written { Nothing, Page, TextRegion, Line, Word };

struct Frame {
  Level level;
  Written written = Written::Nothing;
  int wrappers = 0;  // TextRegion/TextLine opened inside it around loose lines or words
};

std::optional<std::u16string_view> attribute(const Node& node, std::u16string_view key) {
  return node.attributes().get(key);
}

bool isText(const Node& node) {
  const NodeClass c = node.nodeClass();
  return c == NodeClass::Line || c == NodeClass::Word || c == NodeClass::Glyph;
}

bool holdsBlocks(const Node& node) {
  return std::any_of(node.children().begin(), node.children().end(), [](const auto& child) {
    return child->nodeClass() == NodeClass::Box || child->nodeClass() == NodeClass::Picture;
  });
}

// A baseline as PAGE's schema takes it: at least two points of whole non-negative numbers.
std::string baselineText(std::u16string_view text) {
  std::string points;
  int count = 0;
  std::string narrow;
  for (char16_t c : text) {
    if (c > 0x7F) return {};
    narrow += static_cast<char>(c);
  }
  std::string_view rest = narrow;
  while (true) {
    const std::size_t start = rest.find_first_not_of(" ,");
    if (start == std::string_view::npos) break;
    rest.remove_prefix(start);
    unsigned value = 0;
    const auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), value);
    if (error != std::errc()) return {};
    points.append(count % 2 == 0 ? (count == 0 ? "" : " ") : ",").append(std::to_string(value));
    ++count;
    rest.remove_prefix(static_cast<std::size_t>(end - rest.data()));
  }
  return count >= 4 && count % 2 == 0 ? points : std::string();
}

bool isDateTime(std::u16string_view value) {
  return value.size() >= 19 && value[4] == u'-' && value[7] == u'-' && value[10] == u'T' &&
         value[13] == u':' && value[16] == u':';
}

std::string now() {
  using namespace std::chrono;
  const auto time = floor<seconds>(system_clock::now());
  const auto day = floor<days>(time);
  const year_month_day date(day);
  const hh_mm_ss<seconds> clock(time - day);
  char text[32];
  std::snprintf(text, sizeof text, "%04d-%02u-%02uT%02ld:%02ld:%02ld",
                static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
                static_cast<unsigned>(date.day()), static_cast<long>(clock.hours().count()),
                static_cast<long>(clock.minutes().count()),
                static_cast<long>(clock.seconds().count()));
  return text;
}

class PageBuilder {
public:
  PageBuilder(const Layout& layout, base::xml::XmlWriter& out)
      : layout_(layout), out_(out), factor_(xml::confidenceFactor(layout)) {}

  void build() {
    Node* root = layout_.root();
    if (root != nullptr && xml::countPages(*root) > 1) {
      // Checked before anything is written, so no partial document reaches the sink.
      throw std::runtime_error(
          "PAGE XML holds one page per document; this layout has more: write its pages one "
          "by one");
    }
    out_.declaration("1.0", "UTF-8");
    out_.startElement("PcGts");
    out_.attribute("xmlns", "http://schema.primaresearch.org/PAGE/gts/pagecontent/2019-07-15");
    out_.attribute("xmlns:xsi", "http://www.w3.org/2001/XMLSchema-instance");
    out_.attribute(
        "xsi:schemaLocation",
        "http://schema.primaresearch.org/PAGE/gts/pagecontent/2019-07-15 "
        "http://schema.primaresearch.org/PAGE/gts/pagecontent/2019-07-15/pagecontent.xsd");
    writeMetadata(root);
    frames_.push_back({Level::Document});
    // PAGE needs a page: a layout without one is written as one page of size 0 that holds
    // whatever the layout has.
    Page none;
    const bool barePage = root == nullptr || xml::countPages(*root) == 0;
    if (barePage) writePage(none);
    if (root != nullptr) {
      if (enter(*root, *root)) {
        walkBelow(
            *root, [this](Node& n, Node& parent) { return enter(n, parent); },
            [this](Node& n) { leave(n); });
      }
      leave(*root);
    }
    if (barePage) leave(none);
    out_.endElement();
    out_.finish();
  }

private:
  void writeMetadata(const Node* root) {
    out_.startElement("Metadata");
    std::string creator;
    for (const auto& [name, version] : layout_.versions()) {
      if (!creator.empty()) creator += "; ";
      creator += name;
      if (!version.empty()) creator.append(" ").append(version);
    }
    element("Creator", xmlText(creator));
    const std::string time = now();
    for (const char16_t* key : {u"Created", u"LastChange"}) {
      std::optional<std::u16string_view> value = root != nullptr ? attribute(*root, key) : std::nullopt;
      element(key == std::u16string_view(u"Created") ? "Created" : "LastChange",
              value && isDateTime(*value) ? xmlText(*value) : time);
    }
    out_.endElement();
  }

  void element(const char* name, std::string_view text) {
    out_.startElement(name);
    out_.text(text);
    out_.endElement();
  }

  bool enter(Node& node, Node& parent) {
    Frame& context = frames_.back();
    const Level level = context.level;
    const NodeClass kind = node.nodeClass();
    if (kind == NodeClass::Page && level == Level::Document) {
      writePage(static_cast<Page&>(node));
      return true;
    }
    if (kind == NodeClass::Image) return false;
    if (level == Level::Regions && (kind == NodeClass::Box || kind == NodeClass::Picture)) {
      closeWrappers(context);
      if (kind == NodeClass::Box && holdsBlocks(node)) return transparent(context);
      return openRegion(static_cast<Fragment&>(node));
    }
    if (kind == NodeClass::Line && (level == Level::Regions || level == Level::Lines)) {
      if (level == Level::Regions) wrap(context, node, parent, 1);
      if (level == Level::Lines) closeWrappers(context);
      openText("TextLine", static_cast<Fragment&>(node), "line");
      // PAGE keeps the points as "Baseline", ALTO 4 as "BASELINE".
      std::optional<std::u16string_view> baseline = attribute(node, u"Baseline");
      if (!baseline) baseline = attribute(node, u"BASELINE");
      if (baseline) {
        const std::string points = baselineText(*baseline);
        if (!points.empty()) {
          out_.startElement("Baseline");
          out_.attribute("points", points);
          out_.endElement();
        }
      }
      frames_.push_back({Level::Words, Written::Line});
      return true;
    }
    if ((kind == NodeClass::Word || kind == NodeClass::Glyph) && level != Level::Document &&
        (level != Level::Glyphs || kind == NodeClass::Glyph)) {
      if (level == Level::Regions) wrap(context, node, parent, 2);
      if (level == Level::Lines) wrap(context, node, parent, 1);
      if (level == Level::Glyphs) {
        openText("Glyph", static_cast<Fragment&>(node), "glyph");
        writeEquiv(static_cast<Fragment&>(node), glyphText(static_cast<Fragment&>(node)));
        out_.endElement();
        return false;
      }
      openText("Word", static_cast<Fragment&>(node), "word");
      frames_.push_back({Level::Glyphs, Written::Word});
      return true;
    }
    if (level == Level::Glyphs) return false;
    return transparent(context);
  }

  void leave(Node& node) {
    const Frame frame = frames_.back();
    frames_.pop_back();
    for (int i = 0; i < frame.wrappers; ++i) out_.endElement();
    switch (frame.written) {
      case Written::Nothing:
        return;
      case Written::Page:
        out_.endElement();
        return;
      case Written::TextRegion: {
        const Fragment& region = static_cast<Fragment&>(node);
        std::optional<std::u16string_view> kept = attribute(region, u"TextEquiv");
        writeEquiv(region, !region.text().empty() || !kept ? std::u16string_view(region.text()) : *kept);
        out_.endElement();
        return;
      }
      case Written::Line:
        writeEquiv(static_cast<Fragment&>(node), lineText(node));
        break;
      case Written::Word:
        writeEquiv(static_cast<Fragment&>(node), wordText(node));
        break;
    }
    out_.endElement();
  }

  bool transparent(const Frame& context) {
    frames_.push_back({context.level});
    return true;
  }

  void writePage(Page& page) {
    out_.startElement("Page");
    std::u16string image;
    for (const auto& child : page.children()) {
      if (child->nodeClass() == NodeClass::Image) {
        image = static_cast<Image&>(*child).image();
        break;
      }
    }
    out_.attribute("imageFilename", xmlText(image));
    out_.attribute("imageWidth", std::to_string(page.width()));
    out_.attribute("imageHeight", std::to_string(page.height()));
    frames_.push_back({Level::Regions, Written::Page});
  }

  bool openRegion(Fragment& node) {
    std::u16string_view name = u"TextRegion";
    if (node.nodeClass() == NodeClass::Picture) {
      name = u"ImageRegion";
    } else if (std::none_of(node.children().begin(), node.children().end(),
                            [](const auto& child) { return isText(*child); })) {
      const std::u16string& typeName = static_cast<Box&>(node).typeName();
      if (std::find(std::begin(kRegions), std::end(kRegions), typeName) != std::end(kRegions)) {
        name = typeName;
      }
    }
    const std::string element = base::utf16ToUtf8(name);
    openText(element.c_str(), node, "region");
    if (name != u"TextRegion") {
      out_.endElement();  // no text below other regions
      return false;
    }
    frames_.push_back({Level::Lines, Written::TextRegion});
    return true;
  }

  // Opens the element with its id and Coords.
  void openText(const char* name, const Fragment& node, std::string_view prefix) {
    out_.startElement(name);
    out_.attribute("id", ids_.idFor(node.id(), prefix));
    writeCoords(node.rect(), node.polygon());
  }

  void writeCoords(const Rect& rect, const std::vector<Point>& polygon) {
    out_.startElement("Coords");
    const bool usePolygon = polygon.size() >= 2 && xml::boundingRect(polygon) == rect;
    out_.attribute("points", xml::pointsText(usePolygon ? polygon : xml::corners(rect)));
    out_.endElement();
  }

  void closeWrappers(Frame& context) {
    for (; context.wrappers > 0; --context.wrappers) out_.endElement();
  }

  // Opens a TextRegion and/or TextLine around the run of loose lines or words that starts
  // at `node`, with Coords that enclose the run.
  void wrap(Frame& context, const Node& node, const Node& parent, int depth) {
    if (context.wrappers == depth) return;
    closeWrappers(context);
    Rect run;
    bool started = false;
    for (const auto& sibling : parent.children()) {
      if (sibling.get() == &node) started = true;
      if (!started) continue;
      if (!isText(*sibling) || (depth == 2 && sibling->nodeClass() == NodeClass::Line)) break;
      const Rect& r = static_cast<const Fragment&>(*sibling).rect();
      if (!r.hasGeometry()) continue;
      if (!run.hasGeometry()) {
        run = r;
        continue;
      }
      const std::int64_t right = std::max(run.right(), r.right());
      const std::int64_t bottom = std::max(run.bottom(), r.bottom());
      run.left = std::min(run.left, r.left);
      run.top = std::min(run.top, r.top);
      run.width = static_cast<std::int32_t>(right - run.left);
      run.height = static_cast<std::int32_t>(bottom - run.top);
    }
    if (context.level == Level::Regions) {
      out_.startElement("TextRegion");
      out_.attribute("id", ids_.idFor(u"", "region"));
      writeCoords(run, {});
      ++context.wrappers;
    }
    if (depth == 2 || context.level == Level::Lines) {
      out_.startElement("TextLine");
      out_.attribute("id", ids_.idFor(u"", "line"));
      writeCoords(run, {});
      ++context.wrappers;
    }
  }

  void writeEquiv(const Fragment& node, std::u16string_view text) {
    const std::string conf = xml::confidenceText(node, factor_);
    if (text.empty() && conf.empty()) return;
    out_.startElement("TextEquiv");
    if (!conf.empty()) out_.attribute("conf", conf);
    element("Unicode", xmlText(text));
    out_.endElement();
  }

  static std::u16string glyphText(const Fragment& glyph) {
    if (!glyph.text().empty()) return glyph.text();
    for (const char16_t* key : {u"CONTENT", u"TextEquiv"}) {
      if (const auto kept = attribute(glyph, key)) return std::u16string(*kept);
    }
    return {};
  }

  static std::u16string wordText(Node& node) {
    const Fragment& word = static_cast<Fragment&>(node);
    if (!word.text().empty()) return word.text();
    if (const auto kept = attribute(word, u"TextEquiv")) return std::u16string(*kept);
    return nodeText(word);
  }

  static std::u16string lineText(Node& line) {
    const Fragment& fragment = static_cast<Fragment&>(line);
    if (!fragment.text().empty()) return fragment.text();
    if (const auto kept = attribute(line, u"TextEquiv")) return std::u16string(*kept);
    std::u16string text;
    walkBelow(
        line,
        [&text](Node& node, Node&) {
          if (node.nodeClass() != NodeClass::Word) return true;
          const std::u16string word = wordText(node);
          if (!word.empty()) {
            if (!text.empty()) text += u' ';
            text += word;
          }
          return false;
        },
        [](Node&) {});
    return text;
  }

  const Layout& layout_;
  base::xml::XmlWriter& out_;
  const double factor_;
  xml::IdAssigner ids_;
  std::vector<Frame> frames_;
};

}  // namespace

void PageXmlWriter::write(const Layout& layout, base::Sink& sink) {
  base::xml::XmlWriter writer(sink);
  PageBuilder(layout, writer).build();
}

std::string PageXmlWriter::write(const Layout& layout) {
  base::StringSink sink;
  write(layout, sink);
  return std::move(sink.text());
}

}  // namespace qent::text::layout::format
