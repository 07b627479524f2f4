// LayoutDump.cpp - the test dump of layout trees and its parser.
#include "support/LayoutDump.h"

#include "base/NumberConversion.h"
#include "base/Unicode.h"
#include "layout/Layout.h"
#include "layout/NodeVisitor.h"
#include "layout/Nodes.h"

#include <charconv>
#include <cstdint>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace qent::test {

using namespace qent::text::layout;

namespace {

bool isBare(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
         c == '_' || c == '.' || c == '+' || c == '-';
}

std::string quoted(std::string_view text) {
  std::string out = "\"";
  for (const char c : text) {
    switch (c) {
      case '"': out += "\\\""; break;
      case '\\': out += "\\\\"; break;
      case '\n': out += "\\n"; break;
      case '\r': out += "\\r"; break;
      case '\t': out += "\\t"; break;
      default:
        if (static_cast<unsigned char>(c) < 0x20) {
          static const char* const kHex = "0123456789abcdef";
          out += "\\x";
          out += kHex[(c >> 4) & 0xF];
          out += kHex[c & 0xF];
        } else {
          out += c;
        }
    }
  }
  return out + "\"";
}

std::string value(std::string_view text) {
  bool bare = !text.empty();
  for (const char c : text) bare = bare && isBare(c);
  return bare ? std::string(text) : quoted(text);
}

std::string value(std::u16string_view text) { return value(base::utf16ToUtf8Lenient(text)); }

std::string number(double x) { return base::formatShortest(x); }

class Dumper : public NodeVisitor {
public:
  using NodeVisitor::visit;
  std::string out;

  void visit(Node& node) override { write("Node", node, {}, nullptr); }
  void visit(Content& node) override {
    const std::string typeName = node.typeName().empty() ? "" : value(node.typeName());
    write("Content", node, typeName, [&] { text(node.text()); });
  }
  void visit(Image& node) override {
    write("Image", node, {}, [&] { text(node.image()); });
  }
  void visit(Page& node) override {
    write("Page", node, {}, [&] {
      fields.clear();
      if (node.width() != 0) field("w", std::to_string(node.width()));
      if (node.height() != 0) field("h", std::to_string(node.height()));
      if (!node.language().empty()) field("lang", value(node.language()));
      if (node.indexInLayout() != 0) field("index", std::to_string(node.indexInLayout()));
      if (node.textangle() != 0) field("angle", number(node.textangle()));
      if (node.auxiliaryFloat() != 0) field("pfloat", number(node.auxiliaryFloat()));
      if (node.auxiliaryNumber() != 0) field("pnum", std::to_string(node.auxiliaryNumber()));
    });
  }
  void visit(Fragment& node) override { fragment("Fragment", node, {}, nullptr); }
  void visit(Box& node) override {
    // A new box is a content area, so that kind goes without its name.
    const bool plain = node.boxKind() == Box::kContentArea;
    fragment("Box", node, plain ? "" : value(node.typeName()), [&] {
      if (Box::kindForName(node.typeName()) != node.boxKind()) {
        field("kind", std::to_string(node.boxKind()));
      }
    });
  }
  void visit(Line& node) override {
    fragment("Line", node, {}, [&] {
      if (node.maxAscenders() != 0) field("asc", number(node.maxAscenders()));
      if (node.maxDescenders() != 0) field("desc", number(node.maxDescenders()));
      if (node.maxGlyphHeight() != 0) field("gh", number(node.maxGlyphHeight()));
    });
  }
  void visit(Word& node) override {
    fragment("Word", node, {}, [&] {
      if (node.xChecked() != 0) field("checked", std::to_string(node.xChecked()));
      if (node.xRejected() != 0) field("rejected", std::to_string(node.xRejected()));
    });
  }
  void visit(Glyph& node) override { fragment("Glyph", node, {}, nullptr); }
  void visit(Field& node) override { fragment("Field", node, {}, nullptr); }
  void visit(Picture& node) override {
    fragment("Picture", node, {}, [&] {
      if (!node.imageSource().empty()) field("src", value(node.imageSource()));
    });
  }

private:
  std::vector<std::string> fields;
  std::string textPart;
  std::string rectPart;

  void field(const char* name, const std::string& text) { fields.push_back(name + ("=" + text)); }
  void text(const std::u16string& t) {
    if (!t.empty()) textPart = quoted(base::utf16ToUtf8Lenient(t));
  }

  // "r g b", or "unset r g b" for components stored without the flag.
  static std::string triple(const Rgb& c, bool has) {
    return quoted((has ? "" : "unset ") + std::to_string(c.red) + " " +
                  std::to_string(c.green) + " " + std::to_string(c.blue));
  }

  void fragment(const char* cls, Fragment& node, const std::string& typeName,
                const std::function<void()>& own) {
    write(cls, node, typeName, [&] {
      const Rect& r = node.rect();
      if (r.hasGeometry()) {
        rectPart = "[" + std::to_string(r.left) + "," + std::to_string(r.top) + "," +
                   std::to_string(r.width) + "," + std::to_string(r.height) + "]";
      }
      text(node.text());
      if (node.storedConfidence() != -1) field("conf", number(node.storedConfidence()));
      if (node.fontSize() != -1) field("size", number(node.fontSize()));
      if (!node.fontFamily().empty()) field("family", value(node.fontFamily()));
      if (node.fontStyle() != 0) field("style", std::to_string(node.fontStyle()));
      if (node.fontWeight() != 0) field("weight", std::to_string(node.fontWeight()));
      if (node.xSensibility() != 0) field("sens", number(node.xSensibility()));
      if (node.textangle() != 0) field("angle", number(node.textangle()));
      if (!node.xEntity().empty()) field("entity", value(node.xEntity()));
      if (!node.polygon().empty()) {
        std::string points;
        for (const Point& p : node.polygon()) {
          if (!points.empty()) points += ";";
          points += std::to_string(p.x) + " " + std::to_string(p.y);
        }
        field("poly", quoted(points));
      }
      if (!node.baseline().empty()) {
        std::string coefficients;
        for (const double c : node.baseline()) {
          if (!coefficients.empty()) coefficients += " ";
          coefficients += number(c);
        }
        field("base", quoted(coefficients));
      }
      if (node.hasColor() || node.color() != Rgb{}) {
        field("color", triple(node.color(), node.hasColor()));
      }
      if (node.hasBackgroundColor() || node.backgroundColor() != Rgb{}) {
        field("bg", triple(node.backgroundColor(), node.hasBackgroundColor()));
      }
      if (own) own();
    });
  }

  // Writes one node; `own` fills textPart, rectPart and fields for the class.
  void write(const char* cls, Node& node, const std::string& typeName,
             const std::function<void()>& own) {
    fields.clear();
    textPart.clear();
    rectPart.clear();
    out += cls;
    if (!node.id().empty()) out += "#" + value(node.id());
    if (!typeName.empty()) out += ":" + typeName;
    if (own) own();
    for (const auto& [key, val] : node.attributes()) fields.push_back("@" + value(key) + "=" + value(val));
    for (const auto& [key, val] : node.auxiliaryAttributes()) {
      fields.push_back("&" + value(key) + "=" + value(val));
    }
    out += rectPart + textPart;
    if (!fields.empty()) {
      out += "(";
      for (std::size_t i = 0; i < fields.size(); ++i) out += (i ? "," : "") + fields[i];
      out += ")";
    }
    if (node.childCount() > 0) {
      out += "{";
      for (std::size_t i = 0; i < node.childCount(); ++i) {
        if (i > 0) out += ",";
        node.child(i).accept(*this);
      }
      out += "}";
    }
  }
};

class Parser {
public:
  explicit Parser(std::string_view text) : text_(text) {}

  std::unique_ptr<Node> parseAll() {
    auto node = parseNode();
    skipBlanks();
    if (pos_ != text_.size()) fail("text after the tree");
    return node;
  }

private:
  std::string_view text_;
  std::size_t pos_ = 0;

  [[noreturn]] void fail(const std::string& what) const {
    throw std::invalid_argument("parseDump: " + what + " at offset " + std::to_string(pos_) +
                                " of \"" + std::string(text_) + "\"");
  }
  void skipBlanks() {
    while (pos_ < text_.size() && (text_[pos_] == ' ' || text_[pos_] == '\n')) ++pos_;
  }
  bool take(char c) {
    skipBlanks();
    if (pos_ < text_.size() && text_[pos_] == c) {
      ++pos_;
      return true;
    }
    return false;
  }
  void expect(char c) {
    if (!take(c)) fail(std::string("expected '") + c + "'");
  }
  std::string word() {
    skipBlanks();
    const std::size_t start = pos_;
    while (pos_ < text_.size() && isBare(text_[pos_])) ++pos_;
    return std::string(text_.substr(start, pos_ - start));
  }
  std::string quotedText() {
    expect('"');
    std::string out;
    while (true) {
      if (pos_ >= text_.size()) fail("unterminated quotes");
      const char c = text_[pos_++];
      if (c == '"') return out;
      if (c != '\\') {
        out += c;
        continue;
      }
      if (pos_ >= text_.size()) fail("unterminated escape");
      const char e = text_[pos_++];
      if (e == 'n') out += '\n';
      else if (e == 'r') out += '\r';
      else if (e == 't') out += '\t';
      else if (e == 'x') {
        if (pos_ + 2 > text_.size()) fail("short \\x escape");
        unsigned v = 0;
        std::from_chars(text_.data() + pos_, text_.data() + pos_ + 2, v, 16);
        out += static_cast<char>(v);
        pos_ += 2;
      } else {
        out += e;
      }
    }
  }
  std::string valueText() {
    skipBlanks();
    if (pos_ < text_.size() && text_[pos_] == '"') return quotedText();
    std::string bare = word();
    if (bare.empty()) fail("expected a value");
    return bare;
  }
  std::int64_t integer(const std::string& text) {
    std::int64_t v = 0;
    const auto [ptr, ec] = std::from_chars(text.data(), text.data() + text.size(), v);
    if (ec != std::errc() || ptr != text.data() + text.size()) fail("bad integer " + text);
    return v;
  }
  std::uint64_t unsignedInteger(const std::string& text) {
    std::uint64_t v = 0;
    const auto [ptr, ec] = std::from_chars(text.data(), text.data() + text.size(), v);
    if (ec != std::errc() || ptr != text.data() + text.size()) fail("bad integer " + text);
    return v;
  }
  double real(const std::string& text) {
    try {
      return base::parseDouble(text);
    } catch (const std::exception&) {
      fail("bad number " + text);
    }
  }
  std::vector<std::string> split(const std::string& text, char separator) {
    std::vector<std::string> parts;
    std::string part;
    for (const char c : text) {
      if (c == separator) {
        parts.push_back(part);
        part.clear();
      } else {
        part += c;
      }
    }
    parts.push_back(part);
    return parts;
  }
  void rgb(const std::string& text, const std::function<void(const Rgb&, bool)>& set) {
    const bool unset = text.rfind("unset ", 0) == 0;
    const auto parts = split(unset ? text.substr(6) : text, ' ');
    if (parts.size() != 3) fail("colour needs three numbers");
    set(Rgb{static_cast<std::uint8_t>(integer(parts[0])),
            static_cast<std::uint8_t>(integer(parts[1])),
            static_cast<std::uint8_t>(integer(parts[2]))},
        !unset);
  }

  std::unique_ptr<Node> make(const std::string& cls) {
    if (cls == "Node") return std::make_unique<Node>();
    if (cls == "Page") return std::make_unique<Page>();
    if (cls == "Image") return std::make_unique<Image>();
    if (cls == "Content") return std::make_unique<Content>();
    if (cls == "Fragment") return std::make_unique<Fragment>();
    if (cls == "Box") return std::make_unique<Box>();
    if (cls == "Line") return std::make_unique<Line>();
    if (cls == "Word") return std::make_unique<Word>();
    if (cls == "Glyph") return std::make_unique<Glyph>();
    if (cls == "Picture") return std::make_unique<Picture>();
    if (cls == "Field") return std::make_unique<Field>();
    fail("unknown class '" + cls + "'");
  }

  void setField(Node& node, const std::string& name, const std::string& text) {
    auto* fragment = dynamic_cast<Fragment*>(&node);
    auto* page = dynamic_cast<Page*>(&node);
    auto* line = dynamic_cast<Line*>(&node);
    auto* wordNode = dynamic_cast<Word*>(&node);
    auto* box = dynamic_cast<Box*>(&node);
    auto* picture = dynamic_cast<Picture*>(&node);
    auto u16 = [](const std::string& s) { return base::utf8ToUtf16(s); };
    if (fragment != nullptr) {
      if (name == "conf") return fragment->setConfidence(real(text));
      if (name == "size") return fragment->setFontSize(real(text));
      if (name == "family") return fragment->setFontFamily(u16(text));
      if (name == "style") return fragment->setFontStyle(static_cast<std::uint32_t>(integer(text)));
      if (name == "weight") return fragment->setFontWeight(static_cast<std::uint32_t>(integer(text)));
      if (name == "sens") return fragment->setXSensibility(real(text));
      if (name == "angle") return fragment->setTextangle(real(text));
      if (name == "entity") return fragment->setXEntity(text);
      if (name == "poly") {
        std::vector<Point> points;
        for (const auto& p : split(text, ';')) {
          const auto xy = split(p, ' ');
          if (xy.size() != 2) fail("polygon point needs two numbers");
          points.push_back(Point{static_cast<std::int32_t>(integer(xy[0])),
                                 static_cast<std::int32_t>(integer(xy[1]))});
        }
        return fragment->setPolygon(std::move(points));
      }
      if (name == "base") {
        std::vector<double> coefficients;
        for (const auto& c : split(text, ' ')) coefficients.push_back(real(c));
        return fragment->setBaseline(std::move(coefficients));
      }
      if (name == "color") {
        return rgb(text, [&](const Rgb& c, bool has) {
          fragment->setColor(c);
          fragment->setHasColor(has);
        });
      }
      if (name == "bg") {
        return rgb(text, [&](const Rgb& c, bool has) {
          fragment->setBackgroundColor(c);
          fragment->setHasBackgroundColor(has);
        });
      }
    }
    if (box != nullptr && name == "kind") {
      const auto kind = static_cast<std::uint32_t>(integer(text));
      // The custom kind keeps the name given before it ("Box:content_area(kind=25)").
      if (kind == Box::kCustomKind) box->setTypeName(std::u16string(box->typeName()));
      else box->setBoxKind(kind);
      return;
    }
    if (line != nullptr) {
      if (name == "asc") return line->setMaxAscenders(real(text));
      if (name == "desc") return line->setMaxDescenders(real(text));
      if (name == "gh") return line->setMaxGlyphHeight(real(text));
    }
    if (wordNode != nullptr) {
      if (name == "checked") return wordNode->setXChecked(unsignedInteger(text));
      if (name == "rejected") return wordNode->setXRejected(unsignedInteger(text));
    }
    if (picture != nullptr && name == "src") return picture->setImageSource(u16(text));
    if (page != nullptr) {
      if (name == "w") return page->setWidth(static_cast<std::uint32_t>(integer(text)));
      if (name == "h") return page->setHeight(static_cast<std::uint32_t>(integer(text)));
      if (name == "lang") return page->setLanguage(text);
      if (name == "index") return page->setIndexInLayout(static_cast<std::uint32_t>(integer(text)));
      if (name == "angle") return page->setTextangle(real(text));
      if (name == "pfloat") return page->setAuxiliaryFloat(real(text));
      if (name == "pnum") return page->setAuxiliaryNumber(static_cast<std::uint32_t>(integer(text)));
    }
    fail("field '" + name + "' does not belong to this class");
  }

  std::unique_ptr<Node> parseNode() {
    const std::string cls = word();
    auto node = make(cls);
    if (take('#')) node->setId(base::utf8ToUtf16(valueText()));
    if (take(':')) {
      const std::u16string name = base::utf8ToUtf16(valueText());
      if (auto* box = dynamic_cast<Box*>(node.get())) {
        const std::uint32_t kind = Box::kindForName(name);
        if (kind == Box::kCustomKind) box->setTypeName(name);
        else box->setBoxKind(kind);
      } else if (auto* content = dynamic_cast<Content*>(node.get())) {
        content->setTypeName(name);
      } else {
        fail("only Box and Content have a type name");
      }
    }
    if (take('[')) {
      auto* fragment = dynamic_cast<Fragment*>(node.get());
      if (fragment == nullptr) fail("only fragments have a rectangle");
      std::int64_t v[4];
      for (int i = 0; i < 4; ++i) {
        if (i > 0) expect(',');
        skipBlanks();
        std::string digits;
        if (take('-')) digits = "-";
        digits += word();
        v[i] = integer(digits);
      }
      expect(']');
      fragment->setRect(Rect{static_cast<std::int32_t>(v[0]), static_cast<std::int32_t>(v[1]),
                             static_cast<std::int32_t>(v[2]), static_cast<std::int32_t>(v[3])});
    }
    skipBlanks();
    if (pos_ < text_.size() && text_[pos_] == '"') {
      std::u16string text = base::utf8ToUtf16(quotedText());
      if (auto* fragment = dynamic_cast<Fragment*>(node.get())) fragment->setText(std::move(text));
      else if (auto* content = dynamic_cast<Content*>(node.get())) content->setText(std::move(text));
      else if (auto* image = dynamic_cast<Image*>(node.get())) image->setImage(std::move(text));
      else fail("this class has no text");
    }
    if (take('(')) {
      do {
        parseField(*node);
      } while (take(','));
      expect(')');
    }
    if (take('{')) {
      do {
        node->appendChild(parseNode());
      } while (take(','));
      expect('}');
    }
    return node;
  }

  void parseField(Node& node) {
    skipBlanks();
    if (take('@') || take('&')) {
      const bool auxiliary = text_[pos_ - 1] == '&';
      const std::u16string key = base::utf8ToUtf16(valueText());
      expect('=');
      std::u16string val = base::utf8ToUtf16(valueText());
      (auxiliary ? node.auxiliaryAttributes() : node.attributes()).insert_or_assign(key, std::move(val));
      return;
    }
    const std::string name = word();
    expect('=');
    setField(node, name, valueText());
  }
};

}  // namespace

std::string dump(const Node& node) {
  Dumper dumper;
  // The dump only reads; the visitor interface wants mutable nodes.
  const_cast<Node&>(node).accept(dumper);
  return dumper.out;
}

std::string dump(const Layout& layout) {
  return layout.root() == nullptr ? "null" : dump(*layout.root());
}

std::unique_ptr<Node> parseDump(std::string_view text) { return Parser(text).parseAll(); }

std::unique_ptr<Layout> parseLayout(std::string_view text) {
  return std::make_unique<Layout>(parseDump(text));
}

}  // namespace qent::test
