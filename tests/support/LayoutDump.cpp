// LayoutDump.cpp - the test dump of layout trees and its parser.
#include "support/LayoutDump.h"

#include "base/NumberConversion.h"
#include "base/Unicode.h"
#include "layout/Layout.h"
#include "layout/Nodes.h"

#include <charconv>
#include <cstdint>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
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

// A bad value in a dump; the parser adds where it stands.
struct BadValue : std::invalid_argument {
  using std::invalid_argument::invalid_argument;
};

template <class T>
T integerOf(const std::string& text) {
  T v = 0;
  const auto [ptr, ec] = std::from_chars(text.data(), text.data() + text.size(), v);
  if (ec != std::errc() || ptr != text.data() + text.size()) throw BadValue("bad integer " + text);
  return v;
}
double realOf(const std::string& text) {
  try {
    return base::parseDouble(text);
  } catch (const std::exception&) {
    throw BadValue("bad number " + text);
  }
}

template <class T>
std::string toText(const T& x) {
  if constexpr (std::is_same_v<T, double>) return number(x);
  else if constexpr (std::is_integral_v<T>) return std::to_string(x);
  else return value(x);
}
// Narrower integers are read as 64-bit ones and cut, as a cast in the code under test would.
template <class T>
T fromText(const std::string& text) {
  if constexpr (std::is_same_v<T, double>) return realOf(text);
  else if constexpr (std::is_same_v<T, std::uint64_t>) return integerOf<std::uint64_t>(text);
  else if constexpr (std::is_integral_v<T>) return static_cast<T>(integerOf<std::int64_t>(text));
  else if constexpr (std::is_same_v<T, std::u16string>) return base::utf8ToUtf16(text);
  else return text;
}

// A field holding one value of one class, written when it differs from a new node's value.
// Both directions come from the same getter and setter, so dump and parser cannot drift.
struct PlainField {
  const char* name;
  std::function<std::optional<std::string>(const Node&)> get;  // none: other class or unset
  std::function<bool(Node&, const std::string&)> set;          // false: other class
};

template <class C, class T, class S>
PlainField plain(const char* name, T (C::*get)() const, void (C::*set)(S), std::decay_t<T> unset) {
  return {name,
          [=](const Node& node) -> std::optional<std::string> {
            const auto* c = dynamic_cast<const C*>(&node);
            if (c == nullptr || (c->*get)() == unset) return std::nullopt;
            return toText((c->*get)());
          },
          [=](Node& node, const std::string& text) {
            auto* c = dynamic_cast<C*>(&node);
            if (c == nullptr) return false;
            (c->*set)(fromText<std::decay_t<T>>(text));
            return true;
          }};
}

// Written before the fragment's polygon, baseline and colours.
const std::vector<PlainField> kFragmentFields = {
    plain("conf", &Fragment::storedConfidence, &Fragment::setConfidence, -1.0),
    plain("size", &Fragment::fontSize, &Fragment::setFontSize, -1.0),
    plain("family", &Fragment::fontFamily, &Fragment::setFontFamily, {}),
    plain("style", &Fragment::fontStyle, &Fragment::setFontStyle, 0),
    plain("weight", &Fragment::fontWeight, &Fragment::setFontWeight, 0),
    plain("sens", &Fragment::xSensibility, &Fragment::setXSensibility, 0.0),
    plain("angle", &Fragment::textangle, &Fragment::setTextangle, 0.0),
    plain("entity", &Fragment::xEntity, &Fragment::setXEntity, {})};
// Written after them; a page is no fragment, so "angle" is never taken twice.
const std::vector<PlainField> kClassFields = {
    plain("asc", &Line::maxAscenders, &Line::setMaxAscenders, 0.0),
    plain("desc", &Line::maxDescenders, &Line::setMaxDescenders, 0.0),
    plain("gh", &Line::maxGlyphHeight, &Line::setMaxGlyphHeight, 0.0),
    plain("checked", &Word::xChecked, &Word::setXChecked, 0),
    plain("rejected", &Word::xRejected, &Word::setXRejected, 0),
    plain("src", &Picture::imageSource, &Picture::setImageSource, {}),
    plain("w", &Page::width, &Page::setWidth, 0),
    plain("h", &Page::height, &Page::setHeight, 0),
    plain("lang", &Page::language, &Page::setLanguage, {}),
    plain("index", &Page::indexInLayout, &Page::setIndexInLayout, 0),
    plain("angle", &Page::textangle, &Page::setTextangle, 0.0),
    plain("pfloat", &Page::auxiliaryFloat, &Page::setAuxiliaryFloat, 0.0),
    plain("pnum", &Page::auxiliaryNumber, &Page::setAuxiliaryNumber, 0)};

template <class C>
std::unique_ptr<Node> create() {
  return std::make_unique<C>();
}

// In the order of NodeClass, so that a node's class code indexes its name.
const std::pair<const char*, std::unique_ptr<Node> (*)()> kClasses[] = {
    {"Node", create<Node>},       {"Page", create<Page>},         {"Image", create<Image>},
    {"Content", create<Content>}, {"Fragment", create<Fragment>}, {"Box", create<Box>},
    {"Line", create<Line>},       {"Word", create<Word>},         {"Glyph", create<Glyph>},
    {"Picture", create<Picture>}, {"Field", create<Field>}};

// "r g b", or "unset r g b" for components stored without the flag.
std::string triple(const Rgb& c, bool has) {
  return quoted((has ? "" : "unset ") + std::to_string(c.red) + " " + std::to_string(c.green) +
                " " + std::to_string(c.blue));
}

// The fields of a fragment that are not one plain value.
void compoundFields(const Fragment& node, std::vector<std::string>& fields) {
  if (!node.polygon().empty()) {
    std::string points;
    for (const Point& p : node.polygon()) {
      if (!points.empty()) points += ";";
      points += std::to_string(p.x) + " " + std::to_string(p.y);
    }
    fields.push_back("poly=" + quoted(points));
  }
  if (!node.baseline().empty()) {
    std::string coefficients;
    for (const double c : node.baseline()) {
      if (!coefficients.empty()) coefficients += " ";
      coefficients += number(c);
    }
    fields.push_back("base=" + quoted(coefficients));
  }
  if (node.hasColor() || node.color() != Rgb{}) {
    fields.push_back("color=" + triple(node.color(), node.hasColor()));
  }
  if (node.hasBackgroundColor() || node.backgroundColor() != Rgb{}) {
    fields.push_back("bg=" + triple(node.backgroundColor(), node.hasBackgroundColor()));
  }
  // A new box is a content area, and a kind its type name gives back goes without saying.
  const auto* box = dynamic_cast<const Box*>(&node);
  if (box != nullptr && Box::kindForName(box->typeName()) != box->boxKind()) {
    fields.push_back("kind=" + std::to_string(box->boxKind()));
  }
}

// Appended, not added: GCC 12 warns falsely (-Wrestrict) on a literal plus a temporary.
std::string attribute(char mark, std::u16string_view key, std::u16string_view val) {
  std::string out(1, mark);
  out += value(key);
  out += '=';
  out += value(val);
  return out;
}

void dumpNode(const Node& node, std::string& out) {
  out += kClasses[static_cast<std::size_t>(node.nodeClass())].first;
  if (!node.id().empty()) out += "#" + value(node.id());
  const std::u16string* text = nullptr;
  std::string rect;
  std::vector<std::string> fields;
  const auto* fragment = dynamic_cast<const Fragment*>(&node);
  if (const auto* content = dynamic_cast<const Content*>(&node)) {
    if (!content->typeName().empty()) out += ":" + value(content->typeName());
    text = &content->text();
  } else if (const auto* image = dynamic_cast<const Image*>(&node)) {
    text = &image->image();
  } else if (fragment != nullptr) {
    const auto* box = dynamic_cast<const Box*>(&node);
    if (box != nullptr && box->boxKind() != Box::kContentArea) out += ":" + value(box->typeName());
    const Rect& r = fragment->rect();
    if (r.hasGeometry()) {
      rect = "[" + std::to_string(r.left) + "," + std::to_string(r.top) + "," +
             std::to_string(r.width) + "," + std::to_string(r.height) + "]";
    }
    text = &fragment->text();
  }
  for (const PlainField& f : kFragmentFields) {
    if (auto t = f.get(node)) fields.push_back(f.name + ("=" + *t));
  }
  if (fragment != nullptr) compoundFields(*fragment, fields);
  for (const PlainField& f : kClassFields) {
    if (auto t = f.get(node)) fields.push_back(f.name + ("=" + *t));
  }
  for (const auto& [key, val] : node.attributes()) fields.push_back(attribute('@', key, val));
  for (const auto& [key, val] : node.auxiliaryAttributes()) {
    fields.push_back(attribute('&', key, val));
  }
  out += rect;
  if (text != nullptr && !text->empty()) out += quoted(base::utf16ToUtf8Lenient(*text));
  if (!fields.empty()) {
    out += "(";
    for (std::size_t i = 0; i < fields.size(); ++i) out += (i ? "," : "") + fields[i];
    out += ")";
  }
  if (node.childCount() > 0) {
    out += "{";
    for (std::size_t i = 0; i < node.childCount(); ++i) {
      if (i > 0) out += ",";
      dumpNode(node.child(i), out);
    }
    out += "}";
  }
}

class Parser {
public:
  explicit Parser(std::string_view text) : text_(text) {}

  std::unique_ptr<Node> parseAll() {
    try {
      auto node = parseNode();
      skipBlanks();
      if (pos_ != text_.size()) fail("text after the tree");
      return node;
    } catch (const BadValue& e) {
      fail(e.what());  // the offset is still where the value ended
    }
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
    set(Rgb{static_cast<std::uint8_t>(integerOf<std::int64_t>(parts[0])),
            static_cast<std::uint8_t>(integerOf<std::int64_t>(parts[1])),
            static_cast<std::uint8_t>(integerOf<std::int64_t>(parts[2]))},
        !unset);
  }

  std::unique_ptr<Node> make(const std::string& cls) {
    for (const auto& [name, create] : kClasses) {
      if (cls == name) return create();
    }
    fail("unknown class '" + cls + "'");
  }

  void setField(Node& node, const std::string& name, const std::string& text) {
    for (const auto* table : {&kFragmentFields, &kClassFields}) {
      for (const PlainField& f : *table) {
        if (name == f.name && f.set(node, text)) return;
      }
    }
    if (auto* fragment = dynamic_cast<Fragment*>(&node)) {
      if (name == "poly") {
        std::vector<Point> points;
        for (const auto& p : split(text, ';')) {
          const auto xy = split(p, ' ');
          if (xy.size() != 2) fail("polygon point needs two numbers");
          points.push_back(Point{static_cast<std::int32_t>(integerOf<std::int64_t>(xy[0])),
                                 static_cast<std::int32_t>(integerOf<std::int64_t>(xy[1]))});
        }
        return fragment->setPolygon(std::move(points));
      }
      if (name == "base") {
        std::vector<double> coefficients;
        for (const auto& c : split(text, ' ')) coefficients.push_back(realOf(c));
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
    auto* box = dynamic_cast<Box*>(&node);
    if (box != nullptr && name == "kind") {
      const auto kind = static_cast<std::uint32_t>(integerOf<std::int64_t>(text));
      // The custom kind keeps the name given before it ("Box:content_area(kind=25)").
      if (kind == Box::kCustomKind) box->setTypeName(std::u16string(box->typeName()));
      else box->setBoxKind(kind);
      return;
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
        v[i] = integerOf<std::int64_t>(digits);
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
  std::string out;
  dumpNode(node, out);
  return out;
}

std::string dump(const Layout& layout) {
  return layout.root() == nullptr ? "null" : dump(*layout.root());
}

std::unique_ptr<Node> parseDump(std::string_view text) { return Parser(text).parseAll(); }

std::unique_ptr<Layout> parseLayout(std::string_view text) {
  return std::make_unique<Layout>(parseDump(text));
}

}  // namespace qent::test
