// HocrWriter.cpp - writes a layout as an hOCR 1.2 document (XHTML 1.0 Transitional).
#include "hocr/HocrWriter.h"

#include "base/NumberConversion.h"
#include "base/Unicode.h"
#include "base/Version.h"
#include "base/xml/XmlWriter.h"
#include "hocr/HocrElement.h"
#include "hocr/HocrFields.h"
#include "hocr/HocrProperties.h"
#include "hocr/IdSet.h"
#include "layout/Layout.h"
#include "layout/LayoutFormat.h"
#include "layout/NodeClass.h"
#include "layout/NodeVisitor.h"
#include "layout/Nodes.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <set>
#include <type_traits>

namespace qent::text::hocr {

namespace {

using namespace layout;

constexpr const char* kDoctype =
    "html PUBLIC \"-//W3C//DTD XHTML 1.0 Transitional//EN\" "
    "\"http://www.w3.org/TR/xhtml1/DTD/xhtml1-transitional.dtd\"";

std::string number(double value) { return base::formatShortest(value); }

bool isAsciiLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool isDigit(char c) { return c >= '0' && c <= '9'; }

// An id XHTML accepts: an XML name without colon. Non-ASCII letters are allowed by XML;
// we accept any non-ASCII byte rather than carry Unicode's name tables.
bool isUsableId(std::string_view id) {
  if (id.empty()) return false;
  const auto first = static_cast<unsigned char>(id[0]);
  if (!(isAsciiLetter(id[0]) || id[0] == '_' || first >= 0x80)) return false;
  return std::all_of(id.begin(), id.end(), [](char c) {
    return isAsciiLetter(c) || isDigit(c) || c == '_' || c == '-' || c == '.' ||
           static_cast<unsigned char>(c) >= 0x80;
  });
}

// HTML elements that Content nodes read from hOCR are named after; a Content of another
// type name is written as a div carrying the name as its class.
bool isHtmlElementName(std::string_view name) {
  static constexpr std::array<std::string_view, 50> kNames = {
      "a",     "abbr",  "article", "aside", "b",      "big",  "blockquote", "br",
      "center", "cite", "code",    "dd",    "del",    "dfn",  "div",        "dl",
      "dt",    "em",    "figure",  "font",  "footer", "h1",   "h2",         "h3",
      "h4",    "h5",    "h6",      "header", "hr",    "i",    "img",        "ins",
      "kbd",   "li",    "mark",    "ol",    "p",      "pre",  "q",          "s",
      "section", "small", "span",  "strike", "strong", "sub", "sup",        "tt",
      "u",     "ul"};
  return std::find(kNames.begin(), kNames.end(), name) != kNames.end();
}

// Elements printed without end tag; every other empty element gets one, because browsers
// read <span/> as an opening tag.
bool isVoidElement(std::string_view name) { return name == "br" || name == "hr" || name == "img"; }

// Numbers separated by single blanks (one number when `single`), each consumed whole: the spelling a stored number
// must have to be kept. The reader would accept "93abc" as 93, hOCR consumers need not.
bool isPlainNumberList(std::string_view text, bool single = false) {
  std::size_t i = 0;
  while (true) {
    double value = 0;
    const auto [end, error] = std::from_chars(text.data() + i, text.data() + text.size(), value);
    if (error != std::errc()) return false;
    i = static_cast<std::size_t>(end - text.data());
    if (i == text.size()) return true;
    if (text[i] != ' ' || single) return false;
    ++i;
  }
}

// The reader's view of a stored text: empty means "not given"; a stored text is kept only
// in plain spelling.
template <class Parse, class T>
bool readsAs(std::string_view text, Parse parse, const T& field, const T& unset) {
  constexpr bool kList = std::is_class_v<T>;  // a bbox, a baseline: several numbers
  return text.empty() ? field == unset : isPlainNumberList(text, !kList) && parse(text) == field;
}

// A stored bbox keeps its spelling only when it is four plain 32-bit integers, single-spaced,
// with the corners in hOCR's order; anything else (a reversed bbox, which the reader
// normalises, signs, extra or oversized numbers) is written in the plain form.
bool isPlainBbox(std::string_view text) {
  std::array<std::int32_t, 4> c{};
  std::size_t i = 0;
  for (std::size_t k = 0; k < c.size(); ++k) {
    if (k > 0) {
      if (i >= text.size() || text[i] != ' ') return false;
      ++i;
    }
    if (i < text.size() && text[i] == '+') return false;
    const auto [end, error] = std::from_chars(text.data() + i, text.data() + text.size(), c[k]);
    if (error != std::errc()) return false;
    i = static_cast<std::size_t>(end - text.data());
  }
  return i == text.size() && c[0] <= c[2] && c[1] <= c[3];
}

// Corners of a rectangle as the reader can take them back: a far edge beyond 2^31 - 1
// would be clamped on reading anyway, so it is clamped here and the text reads back as
// written.
std::string bboxText(const Rect& rect) {
  const std::int64_t numbers[4] = {rect.left, rect.top, std::min<std::int64_t>(rect.right(), 0x7FFFFFFF),
                                   std::min<std::int64_t>(rect.bottom(), 0x7FFFFFFF)};
  char buffer[4 * 21];
  char* end = buffer;
  for (const std::int64_t n : numbers) {
    if (end != buffer) *end++ = ' ';
    end = std::to_chars(end, buffer + sizeof buffer, n).ptr;
  }
  return std::string(buffer, end);
}

std::size_t countNodes(const Node& root) {
  std::size_t count = 0;
  std::vector<const Node*> stack{&root};
  while (!stack.empty()) {
    const Node* node = stack.back();
    stack.pop_back();
    ++count;
    for (const auto& child : node->children()) stack.push_back(child.get());
  }
  return count;
}

// Walks the tree once and writes one element per node into the open body element. The
// head names what the body uses, so a document is walked twice: once into nothing to learn
// that (`counting`), then for real; a writer never holds the document.
class BodyBuilder : public NodeVisitor {
public:
  using NodeVisitor::visit;

  BodyBuilder(const Layout& layout, double confidenceScale, base::xml::XmlWriter& writer,
              bool counting)
      : layout_(layout), confidenceScale_(confidenceScale), writer_(writer), counting_(counting) {}

  // Writes the body's attributes and content; the body is closed once this returns.
  void build() {
    Node* root = layout_.root();
    if (root != nullptr) {
      used_.reserve(countNodes(*root));
      if (isBodyRoot(*root)) {
        HocrElement& properties = element_.reset(*root);
        keepBboxOutOfTitle(properties);
        writeId(*root, "node");
        finish(properties, *root);
        NodeVisitor::visit(*root);  // leave() closes the body
        return;
      }
      root->accept(*this);
    }
    closeElement();
  }

  // Whether the root is written as the body element itself: a root the reader made from the
  // body (named "body"), or the generic root of other formats (named "node"), unless a
  // class tells of a div of that name or the reader, which unwraps a body with one child,
  // would lose the root's own id and attributes.
  static bool isBodyRoot(const Node& root) {
    const auto* content = dynamic_cast<const Content*>(&root);
    if (content == nullptr || content->attributes().count(u"class") != 0) return false;
    if (content->childCount() != 1) {
      return content->typeName() == u"body" || content->typeName() == u"node";
    }
    const bool onlyHeadData =
        root.id().empty() &&
        std::all_of(root.attributes().begin(), root.attributes().end(),
                    [](const auto& entry) { return entry.first == u"additional_versions"; });
    return content->typeName() == u"node" && onlyHeadData && content->text().empty();
  }

  std::size_t pages() const { return pages_; }
  std::vector<std::string> capabilities() const {
    // The structural classes first, in their nesting order, then the rest by name.
    static constexpr std::array<std::string_view, 5> kOrder = {"ocr_page", "ocr_carea", "ocr_par",
                                                             "ocr_line", "ocrx_word"};
    std::vector<std::string> out;
    for (const std::string_view name : kOrder) {
      if (std::find(classes_.begin(), classes_.end(), name) != classes_.end()) out.emplace_back(name);
    }
    std::vector<std::string> others;
    for (const std::string& name : classes_) {
      if (std::find(kOrder.begin(), kOrder.end(), name) == kOrder.end()) others.push_back(name);
    }
    std::sort(others.begin(), others.end());
    out.insert(out.end(), others.begin(), others.end());
    // The property capabilities, by name.
    for (const auto& [used, name] : {std::pair{uses_.dir, "ocrp_dir"}, std::pair{uses_.font, "ocrp_font"},
                                     std::pair{uses_.lang, "ocrp_lang"}, std::pair{uses_.poly, "ocrp_poly"},
                                     std::pair{uses_.wconf, "ocrp_wconf"}}) {
      if (used) out.emplace_back(name);
    }
    return out;
  }
  std::set<std::string> languages() const {
    return std::set<std::string>(languages_.begin(), languages_.end());
  }

  void visit(Page& page) override {
    ++pages_;
    counters_ = {};
    open("div", "ocr_page");
    writeId(page, "page");
    HocrElement& properties = element_.reset(page);

    const Image* image = nullptr;
    for (const auto& child : page.children()) {
      image = dynamic_cast<const Image*>(child.get());
      if (image != nullptr) break;
    }
    const std::u16string reference = image != nullptr ? image->image() : std::u16string();
    // Without an Image of its own, a stored reference is the page's link to an image it
    // shares with an earlier page (the reader makes one Image per reference).
    std::string imageText = xmlText(reference);
    if (imageText.find_first_of(" \t\n\r") != std::string::npos &&
        !(imageText.size() >= 2 && imageText.front() == '"' && imageText.back() == '"')) {
      imageText = '"' + imageText + '"';  // hOCR's quoted string, for names with blanks
    }
    properties.typedProperty("image", imageText, [&](std::string_view text) {
      return reference.empty() || base::utf8ToUtf16(text) == reference;
    });
    const std::pair<std::uint32_t, std::uint32_t> size{page.width(), page.height()};
    std::string bbox;
    if (size.first != 0 || size.second != 0) {
      // hOCR corners are ordered, so a size beyond 2^31 - 1 (a reversed bbox read earlier)
      // cannot be said; it is written as the largest size that can.
      auto side = [](std::uint32_t v) { return std::to_string(std::min<std::uint32_t>(v, 0x7FFFFFFF)); };
      bbox = "0 0 " + side(size.first) + " " + side(size.second);
    }
    properties.typedProperty("bbox", bbox, [&](std::string_view text) {
      return isPlainBbox(text) &&
             readsAs(text, readPageSize, size, std::pair<std::uint32_t, std::uint32_t>{0, 0});
    });
    const std::uint32_t pageNumber = page.auxiliaryNumber();
    properties.typedProperty("ppageno", pageNumber != 0 ? std::to_string(pageNumber) : "",
                             [&](std::string_view text) {
                               return readsAs(text, base::parseUnsigned, pageNumber, 0u);
                             });
    const double angle = page.textangle();
    properties.typedProperty("textangle", angle != 0 ? number(angle) : "",
                             [&](std::string_view text) {
                               return readsAs(text, base::parseDouble, angle, 0.0);
                             });
    const std::string language = xmlText(page.language());
    const std::string* storedLanguage = properties.claim("lang");
    if (storedLanguage != nullptr && *storedLanguage == language) {
      properties.xmlAttribute("lang", *storedLanguage);
    } else if (!language.empty()) {
      properties.xmlAttribute("lang", language);
    }
    finish(properties, page);
    visitChildren(page);
  }

  void visit(Image& image) override {
    // A page names its image in its title; the node itself has no element, and its
    // children go into the element of its parent.
    NodeVisitor::visit(static_cast<Node&>(image));
  }

  void leave(Node& node) override {
    if (!isA<Image>(node)) closeElement();  // an image opened none
  }

  void visit(Line& line) override {
    open("span", "ocr_line");
    writeId(line, "line");
    HocrElement& properties = element_.reset(line);
    fragmentProperties(properties, line);
    doubleProperty(properties, "x_size", line.maxGlyphHeight(), 0.0);
    doubleProperty(properties, "x_descenders", line.maxDescenders(), 0.0);
    doubleProperty(properties, "x_ascenders", line.maxAscenders(), 0.0);
    confidenceProperty(properties, "x_lconf", line);
    properties.fragmentStyle(line);
    finish(properties, line);
    writeText(line.text());
    visitChildren(line);
  }

  void visit(Word& word) override {
    open("span", "ocrx_word");
    writeId(word, "word");
    HocrElement& properties = element_.reset(word);
    fragmentProperties(properties, word);
    confidenceProperty(properties, "x_wconf", word);
    integerProperty(properties, "x_checked", word.xChecked());
    integerProperty(properties, "x_rejected", word.xRejected());
    const double sensibility = word.xSensibility();
    properties.typedProperty("x_sensibility", sensibility != 0 ? number(sensibility) : "",
                             [&](std::string_view text) {
                               return readsAs(text, base::parseDouble, sensibility, 0.0);
                             });
    const std::string entity = xmlText(std::string_view(word.xEntity()));
    properties.typedProperty("x_entity", entity, [&](std::string_view text) {
      return text == word.xEntity();
    });

    // Glyphs are not elements: their boxes and confidences go into the word's title, their
    // texts into the word's text when the word has none of its own.
    std::u16string glyphText;
    std::string boxes;
    std::string confidences;
    bool anyConfidence = false;
    std::size_t glyphs = 0;
    for (const auto& child : word.children()) {
      const auto* glyph = dynamic_cast<const Glyph*>(child.get());
      if (glyph == nullptr) continue;
      const char* separator = glyphs++ == 0 ? "" : " ";
      glyphText += glyph->text();
      const Rect& r = glyph->rect();
      boxes.append(separator).append(bboxText(r));
      const double confidence = glyph->confidence();
      anyConfidence = anyConfidence || confidence >= 0;
      confidences.append(separator).append(
          confidence >= 0 ? number(confidence * confidenceScale_) : "-1");
    }
    if (glyphs > 0) {
      properties.generatedProperty("x_bboxes", boxes);
      if (anyConfidence) properties.generatedProperty("x_confs", confidences);
    }
    properties.fragmentStyle(word);
    finish(properties, word);
    const std::u16string& shown = word.text().empty() ? glyphText : word.text();
    writeText(shown);
    visitChildren(word);  // its glyphs skip themselves
  }

  void visit(Box& box) override {
    const std::u16string& name = box.typeName();
    const std::string typeName = box.boxKind() == Box::kContentArea ? "ocr_carea" : xmlText(name);
    openNamed(box, typeName, "div");
    const std::string prefix = typeName == "ocr_par" ? "par" : "block";
    const bool idKept = writeId(box, prefix.c_str());
    HocrElement& properties = element_.reset(box);
    claimClass(properties);
    fragmentProperties(properties, box, true);
    properties.fragmentStyle(box);
    finish(properties, box);
    // The reader gives a box without text of its own its id as text; write the text only
    // when that would not bring it back.
    if (!(idKept && box.text() == box.id())) writeText(box.text());
    visitChildren(box);
  }

  void visit(Glyph& glyph) override {
    // A glyph inside a word is part of the word's title already.
    const Node* parent = walkParent();
    if (parent != nullptr && isA<Word>(*parent)) return;
    otherFragment(glyph, "ocrx_cinfo", [&](HocrElement& properties) {
      confidenceProperty(properties, "x_conf", glyph);
    });
  }
  void visit(Picture& picture) override {
    otherFragment(picture, "ocr_image", [&](HocrElement& properties) {
      const std::u16string& source = picture.imageSource();
      properties.typedProperty("image", xmlText(source), [&](std::string_view text) {
        return base::utf8ToUtf16(text) == source;
      });
    });
  }
  void visit(Field& field) override { otherFragment(field, "ocrx_field", [](HocrElement&) {}); }
  void visit(Fragment& fragment) override {
    otherFragment(fragment, "ocrx_fragment", [](HocrElement&) {});
  }

  void visit(Content& content) override {
    const std::string typeName = xmlText(content.typeName());
    openNamed(content, typeName, "div");
    writeId(content, "node");
    HocrElement& properties = element_.reset(content);
    claimClass(properties);
    keepBboxOutOfTitle(properties);
    finish(properties, content);
    writeText(content.text());
    visitChildren(content);
  }

  void visit(Node& node) override {
    open("div", "");
    writeId(node, "node");
    HocrElement& properties = element_.reset(node);
    keepBboxOutOfTitle(properties);
    finish(properties, node);
    visitChildren(node);
  }

private:
  struct Counters {
    std::uint32_t block = 0, par = 0, line = 0, word = 0, node = 0;
  };

  void open(std::string_view name, std::string_view cls) {
    writer_.startElement(name);
    writtenClass_.assign(cls);
    if (!cls.empty()) {
      writer_.attribute("class", cls);
      // A document uses a handful of classes: a short list beats a tree per element.
      if (hasHocrPrefix(cls) && std::find(classes_.begin(), classes_.end(), cls) == classes_.end()) {
        classes_.emplace_back(cls);
      }
    }
  }

  // The element of a Box or Content named `typeName`: hOCR classes on a div (a p for
  // paragraphs), a name the node was read under as a class attribute on a div, else the
  // HTML element of that name, else a div with the name as class.
  void openNamed(const Node& node, const std::string& typeName, const char* fallback) {
    if (typeName == "ocr_page" || typeName == "ocr_line" || typeName == "ocrx_word") {
      // The reader would build a page, line or word from these classes, and take the node's
      // attributes as that class's numbers; such a box or content is a generic box.
      return open("div", "ocrx_box");
    }
    if (hasHocrPrefix(typeName)) return open(typeName == "ocr_par" ? "p" : "div", typeName);
    const auto stored = node.attributes().find(u"class");
    const bool readAsClass = stored != node.attributes().end() && xmlText(stored->second) == typeName;
    const bool voidWithContent = isVoidElement(typeName) && !node.children().empty();
    if (!readAsClass && isHtmlElementName(typeName) && !voidWithContent) {
      return open(typeName, "");
    }
    return open(fallback, typeName);
  }

  // A bbox in the title would make the reader build a Box of a node that has no geometry
  // of its own; the attribute goes onto the element instead.
  static void keepBboxOutOfTitle(HocrElement& properties) {
    if (const std::string* bbox = properties.claim("bbox")) properties.xmlAttribute("bbox", *bbox);
  }

  // The class attribute written already stands for the stored "class" attribute.
  void claimClass(HocrElement& properties) {
    const std::string* stored = properties.claim("class");
    if (stored != nullptr && (writtenClass_.empty() || *stored != writtenClass_)) {
      // A different stored class cannot be a second class attribute; keep it in the title.
      properties.generatedProperty("class", *stored);
    }
  }

  // Writes the node's id when it is a usable, unused XML id; replaces an unusable one by a
  // generated id. Returns whether the node's own id was written.
  bool writeId(const Node& node, const char* prefix) {
    if (node.id().empty()) return false;
    std::string& id = idText_;
    assignXmlText(id, node.id());
    if (isUsableId(id) && used_.insert(id)) {
      writer_.attribute("id", id);
      return true;
    }
    reserveExistingIds();
    const std::string_view kind(prefix);
    std::uint32_t& counter = counterFor(kind);
    const std::string page = std::to_string(pages_ == 0 ? 1 : pages_);
    for (std::uint32_t attempt = 0;; ++attempt) {
      if (kind == "page") {
        // Appended piece by piece: GCC 12 at -O3 reports "literal" + std::string&& as an
        // overlapping memcpy (a false -Wrestrict).
        id = "page_" + page;
        if (attempt != 0) id.append("_").append(std::to_string(attempt));
      } else {
        id = std::string(kind) + "_" + page + "_" + std::to_string(++counter);
      }
      if (!reserved_.contains(id) && used_.insert(id)) break;
    }
    writer_.attribute("id", id);
    return false;
  }

  std::uint32_t& counterFor(std::string_view prefix) {
    if (prefix == "block") return counters_.block;
    if (prefix == "par") return counters_.par;
    if (prefix == "line") return counters_.line;
    if (prefix == "word") return counters_.word;
    return counters_.node;
  }

  // Whether the id has the form of a generated one ("word_3_17", "page_2", "page_2_1"):
  // only those can clash with a generated id.
  static bool looksGenerated(std::string_view id) {
    for (std::string_view kind : {"page_", "block_", "par_", "line_", "word_", "node_"}) {
      if (id.substr(0, kind.size()) != kind || id.size() == kind.size()) continue;
      const std::string_view rest = id.substr(kind.size());
      return rest.find_first_not_of("0123456789_") == std::string_view::npos;
    }
    return false;
  }

  // Generated ids must not take an id that a later node keeps; collected on first need, and
  // only those of a generated id's form, so a document whose ids follow another scheme costs
  // no second set.
  void reserveExistingIds() {
    if (reservedDone_) return;
    reservedDone_ = true;
    std::vector<const Node*> stack;
    if (layout_.root() != nullptr) stack.push_back(layout_.root());
    while (!stack.empty()) {
      const Node* node = stack.back();
      stack.pop_back();
      if (!node->id().empty()) {
        const std::string id = xmlText(node->id());
        if (looksGenerated(id)) reserved_.insert(id);
      }
      for (const auto& child : node->children()) stack.push_back(child.get());
    }
  }

  // `alwaysBbox`: elements that only a bbox makes the reader take as boxes get one even
  // without geometry.
  void fragmentProperties(HocrElement& properties, const Fragment& fragment,
                          bool alwaysBbox = false) {
    const Rect& rect = fragment.rect();
    const std::string bbox = rect.hasGeometry() || alwaysBbox ? bboxText(rect) : "";
    properties.typedProperty("bbox", bbox, [&](std::string_view text) {
      return isPlainBbox(text) && readsAs(text, readFragmentBbox, rect, Rect{});
    });
    const std::vector<double>& baseline = fragment.baseline();
    std::string coefficients;
    for (const double c : baseline) {
      if (!coefficients.empty()) coefficients += ' ';
      coefficients += number(c);
    }
    properties.typedProperty("baseline", coefficients, [&](std::string_view text) {
      return readsAs(text, readBaseline, baseline, std::vector<double>());
    });
    doubleProperty(properties, "textangle", fragment.textangle(), 0.0);
    const std::vector<Point>& polygon = fragment.polygon();
    std::string points;
    for (const Point& p : polygon) {
      if (!points.empty()) points += ' ';
      points.append(std::to_string(p.x)).append(" ").append(std::to_string(p.y));
    }
    properties.typedProperty("poly", points, [&](std::string_view text) {
      return text.empty() ? polygon.empty() : isPlainNumberList(text) && readPoly(text) == polygon;
    });
  }

  static void doubleProperty(HocrElement& properties, std::string_view key, double value,
                             double unset) {
    properties.typedProperty(key, value != unset ? number(value) : "",
                             [&](std::string_view text) {
                               return readsAs(text, base::parseDouble, value, unset);
                             });
  }

  // The reader takes these as 32-bit numbers; a larger value could not be read back, so it
  // is left out rather than written as a document our own reader refuses.
  static void integerProperty(HocrElement& properties, std::string_view key, std::uint64_t value) {
    const bool fits = value <= 0xFFFFFFFFu;
    properties.typedProperty(key, value != 0 && fits ? std::to_string(value) : "",
                             [&](std::string_view text) {
                               return readsAs(text, base::parseUnsigned64, value,
                                              std::uint64_t{0}) &&
                                      (text.empty() || base::parseUnsigned(text) == value);
                             });
  }

  void confidenceProperty(HocrElement& properties, std::string_view key, const Fragment& fragment) {
    const double confidence = fragment.confidence();
    properties.typedProperty(key, confidence >= 0 ? number(confidence * confidenceScale_) : "",
                             [&](std::string_view text) {
                               return text.empty() ? confidence < 0
                                                   : isPlainNumberList(text, true) &&
                                                         base::parseDouble(text) == confidence;
                             });
  }

  template <class Extra>
  void otherFragment(Fragment& fragment, const char* cls, Extra extra) {
    open("div", cls);
    writeId(fragment, "node");
    HocrElement& properties = element_.reset(fragment);
    fragmentProperties(properties, fragment, true);
    extra(properties);
    properties.fragmentStyle(fragment);
    finish(properties, fragment);
    writeText(fragment.text());
    visitChildren(fragment);
  }

  void finish(HocrElement& properties, const Node& node) {
    if (&node == layout_.root()) properties.claim("additional_versions");  // in the head
    const std::size_t languages = languages_.size();
    properties.apply(writer_, writer_.currentName(), languages_, !counting_);
    uses_.wconf = uses_.wconf || properties.hasTitleProperty("x_wconf");
    uses_.poly = uses_.poly || properties.hasTitleProperty("poly");
    uses_.font = uses_.font || properties.namesFont();
    uses_.lang = uses_.lang || languages_.size() > languages;
    uses_.dir = uses_.dir || properties.hasDirection();
  }

  // The children's elements go into the element just written; leave() closes it.
  void visitChildren(Node& node) { NodeVisitor::visit(node); }

  void writeText(std::u16string_view text) {
    if (text.empty()) return;
    assignXmlText(textBuffer_, text);
    writer_.text(textBuffer_);
  }

  // Ends the innermost element; one left without content gets an end tag all the same
  // (but for the void elements), because browsers read <span/> as an opening tag.
  void closeElement() {
    if (writer_.currentIsEmpty() && !isVoidElement(writer_.currentName())) writer_.text("");
    writer_.endElement();
  }

  const Layout& layout_;
  const double confidenceScale_;
  base::xml::XmlWriter& writer_;
  const bool counting_;
  std::string writtenClass_;  // the class attribute of the element being written
  HocrElement element_;  // one for all elements: each is finished before its children start
  std::string idText_;
  std::string textBuffer_;
  std::size_t pages_ = 0;
  Counters counters_;
  IdSet used_;
  IdSet reserved_;
  bool reservedDone_ = false;
  std::vector<std::string> classes_;
  struct Uses {
    bool dir = false, font = false, lang = false, poly = false, wconf = false;
  } uses_;
  std::vector<std::string> languages_;
};

std::string systemText(const Layout::Versions& versions) {
  if (versions.empty()) return base::kVersionText;
  std::string text;
  for (std::size_t i = 0; i < versions.size(); ++i) {
    const auto& [name, version] = versions[i];
    if (i > 0) text += "; ";
    text += xmlText(std::string_view(name));
    if (name != version) text.append(":").append(xmlText(std::string_view(version)));
  }
  return text;
}

void meta(base::xml::XmlWriter& writer, std::string_view name, std::string_view content) {
  writer.startElement("meta");
  writer.attribute("name", name);
  writer.attribute("content", content);
  writer.endElement();
}

std::string joined(const auto& words) {
  std::string list;
  for (const std::string& word : words) {
    if (!list.empty()) list += ' ';
    list += word;
  }
  return list;
}

}  // namespace

void HocrWriter::write(const Layout& layout, base::Sink& sink) {
  const double confidenceScale = layout.format() == layout::kFormatCloudOcr ? 100.0 : 1.0;
  // What the head names, learnt by writing the body into nothing; the counting writer and
  // its id sets are gone before the real body starts, so the two never take memory at once.
  std::string capabilities;
  std::size_t pages = 0;
  std::set<std::string> languages;
  {
    base::NullSink nothing;
    base::xml::XmlWriter counter(nothing);
    BodyBuilder counted(layout, confidenceScale, counter, true);
    counter.startElement("body");
    counted.build();
    capabilities = joined(counted.capabilities());
    pages = counted.pages();
    languages = counted.languages();
  }

  base::xml::XmlWriter writer(sink);
  writer.declaration("1.0", "UTF-8");
  writer.doctype(kDoctype);
  writer.startElement("html");
  writer.attribute("xmlns", "http://www.w3.org/1999/xhtml");
  writer.startElement("head");
  writer.startElement("title");
  writer.text(xmlText(layout.documentName()));
  writer.endElement();
  writer.startElement("meta");
  writer.attribute("http-equiv", "Content-Type");
  writer.attribute("content", "text/html;charset=utf-8");
  writer.endElement();
  meta(writer, "ocr-system", systemText(layout.versions()));
  meta(writer, "ocr-capabilities", capabilities);
  meta(writer, "ocr-number-of-pages", std::to_string(pages));
  if (!languages.empty()) meta(writer, "ocr-langs", joined(languages));
  if (const Node* root = layout.root()) {
    const auto modules = root->attributes().find(u"additional_versions");
    if (modules != root->attributes().end()) {
      meta(writer, "ocr-modules", xmlText(modules->second));
    }
  }
  writer.endElement();

  BodyBuilder builder(layout, confidenceScale, writer, false);
  writer.startElement("body");
  builder.build();
  writer.endElement();  // html
  writer.finish();
}

std::string HocrWriter::write(const Layout& layout) {
  base::StringSink sink;
  write(layout, sink);
  return std::move(sink.text());
}

}  // namespace qent::text::hocr
