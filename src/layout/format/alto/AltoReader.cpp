// AltoReader.cpp - ALTO elements to layout nodes, walked without recursion.
#include "layout/format/alto/AltoReader.h"

#include "layout/Layout.h"
#include "layout/LayoutFormat.h"
#include "layout/LayoutLimits.h"
#include "layout/Nodes.h"
#include "layout/format/xml/XmlInput.h"

#include <map>
#include <vector>

namespace qent::text::layout::format {

namespace {

using xml::localName;
using xml::XmlInput;

constexpr std::string_view kNamespaces[] = {
    "http://www.loc.gov/standards/alto/ns-v2#",
    "http://www.loc.gov/standards/alto/ns-v3#",
    "http://www.loc.gov/standards/alto/ns-v4#",
};

// ALTO states no resolution; 300 dpi is what archives scan at and what the engines that
// write mm10 and inch1200 assume.
constexpr double kDefaultDpi = 300;

std::string_view trimmed(std::string_view text) {
  const std::size_t start = text.find_first_not_of(" \t\r\n");
  if (start == std::string_view::npos) return {};
  return text.substr(start, text.find_last_not_of(" \t\r\n") - start + 1);
}

struct TextStyle {
  std::u16string family;
  double size = -1;
  std::string_view style;
};

class AltoBuilder {
public:
  explicit AltoBuilder(XmlInput& input) : in_(input) {}

  std::unique_ptr<Layout> build() {
    const pugi::xml_node alto = in_.document().document_element();
    if (localName(alto) != "alto") in_.fail("the root element is not <alto>");
    checkNamespace(alto);
    auto root = std::make_unique<Content>();
    root->setTypeName(u"node");
    auto layout = std::make_unique<Layout>();
    readDescription(alto.child(name(alto, "Description").c_str()), *layout);
    readStyles(alto.child(name(alto, "Styles").c_str()));
    std::uint32_t index = 0;
    for (const pugi::xml_node& part : alto.children()) {
      if (localName(part) != "Layout") continue;
      for (const pugi::xml_node& page : part.children()) {
        if (localName(page) == "Page") readPage(page, *root, index++);
      }
    }
    layout->setRoot(std::move(root));
    layout->setFormat(kFormatAlto);
    return layout;
  }

private:
  struct Frame {
    pugi::xml_node next;  // the next child element to read
    Node* node;           // what the element became
    const char* styles;   // STYLEREFS in force
  };

  // The element's name with the root's prefix, for child lookups.
  std::string name(const pugi::xml_node& root, const char* local) const {
    const std::string_view full = root.name();
    const std::size_t colon = full.find(':');
    if (colon == std::string_view::npos) return local;
    return std::string(full.substr(0, colon + 1)) + local;
  }

  void checkNamespace(const pugi::xml_node& alto) {
    const std::string_view full = alto.name();
    const std::size_t colon = full.find(':');
    std::string attribute = "xmlns";
    if (colon != std::string_view::npos) attribute.append(":").append(full.substr(0, colon));
    const std::string_view uri = alto.attribute(attribute.c_str()).value();
    if (uri.empty()) return;  // ALTO 1 and early ALTO 2 files have none
    for (std::string_view known : kNamespaces) {
      if (uri == known) return;
    }
    std::string what = "is in the namespace \"";
    in_.fail(alto, what.append(uri).append("\", not in that of ALTO 2, 3 or 4"));
  }

  void readDescription(const pugi::xml_node& description, Layout& layout) {
    if (!description) return;
    for (const pugi::xml_node& item : description.children()) {
      const std::string_view key = localName(item);
      if (key == "MeasurementUnit") {
        unit_ = trimmed(item.child_value());
        if (unit_ == "pixel") {
          scale_ = 1;
        } else if (unit_ == "mm10") {
          scale_ = kDefaultDpi / 254;
        } else if (unit_ == "inch1200") {
          scale_ = kDefaultDpi / 1200;
        } else {
          std::string what = "names the unit \"";
          in_.fail(item, what.append(unit_).append("\"; ALTO knows pixel, mm10 and inch1200"));
        }
      } else if (key == "sourceImageInformation") {
        for (const pugi::xml_node& source : item.children()) {
          if (localName(source) == "fileName")
            image_ = in_.wide(trimmed(source.child_value()), source);
        }
      } else if (key == "OCRProcessing" || key == "Processing") {
        readSoftware(item, layout);
      }
    }
  }

  // The software of every processing step, in document order, as the layout's producers.
  void readSoftware(const pugi::xml_node& processing, Layout& layout) {
    std::vector<pugi::xml_node> pending{processing};
    while (!pending.empty()) {
      const pugi::xml_node node = pending.back();
      pending.pop_back();
      if (localName(node) == "processingSoftware") {
        std::u16string name, version;
        for (const pugi::xml_node& field : node.children()) {
          if (localName(field) == "softwareName")
            name = in_.wide(trimmed(field.child_value()), field);
          if (localName(field) == "softwareVersion")
            version = in_.wide(trimmed(field.child_value()), field);
        }
        if (!name.empty() || !version.empty()) layout.addVersion(name, version);
        continue;
      }
      // Processing steps nest two levels at most; children are taken in reverse so that
      // the stack hands them out in document order.
      std::vector<pugi::xml_node> children;
      for (const pugi::xml_node& child : node.children()) {
        if (child.type() == pugi::node_element) children.push_back(child);
      }
      pending.insert(pending.end(), children.rbegin(), children.rend());
    }
  }

  void readStyles(const pugi::xml_node& styles) {
    if (!styles) return;
    for (const pugi::xml_node& style : styles.children()) {
      if (localName(style) != "TextStyle") continue;
      TextStyle text;
      text.family = in_.wide(style.attribute("FONTFAMILY").value(), style);
      if (style.attribute("FONTSIZE")) text.size = in_.number(style, "FONTSIZE");
      text.style = style.attribute("FONTSTYLE").value();
      styles_.insert_or_assign(style.attribute("ID").value(), std::move(text));
    }
  }

  void readPage(const pugi::xml_node& element, Node& root, std::uint32_t index) {
    Page& page = root.appendChild(std::make_unique<Page>());
    page.setId(in_.wide(element.attribute("ID").value(), element));
    in_.keepAttributes(element, page, {"ID", "WIDTH", "HEIGHT"});
    page.setWidth(static_cast<std::uint32_t>(size(element, element.attribute("WIDTH"))));
    page.setHeight(static_cast<std::uint32_t>(size(element, element.attribute("HEIGHT"))));
    page.setIndexInLayout(index);
    if (!unit_.empty()) page.setAttribute(u"MeasurementUnit", in_.wide(unit_, element));
    if (scale_ != 1) page.setAttribute(u"dpi", u"300");
    if (!image_.empty()) page.appendChild(std::make_unique<Image>()).setImage(image_);

    std::vector<Frame> path{{element.first_child(), &page, ""}};
    while (!path.empty()) {
      Frame& top = path.back();
      if (!top.next) {
        finish(*top.node);
        path.pop_back();
        continue;
      }
      const pugi::xml_node child = top.next;
      top.next = top.next.next_sibling();
      if (child.type() != pugi::node_element) continue;
      const pugi::xml_attribute own = child.attribute("STYLEREFS");
      const char* styles = own ? own.value() : top.styles;
      Node* made = readElement(child, *top.node, styles);
      if (made == nullptr) continue;
      // The root and the page are levels 1 and 2; elements that make no node count not.
      if (path.size() + 2 > kMaxLayoutDepth) {
        in_.fail(child, "is nested deeper than " + std::to_string(kMaxLayoutDepth) + " levels");
      }
      path.push_back({child.first_child(), made, styles});
    }
  }

  // The attributes an ALTO element has fields for, found in one pass over its attributes:
  // a long document has a hundred thousand Strings, each asked for seven attributes.
  struct Fields {
    pugi::xml_attribute id, hpos, vpos, width, height, content, confidence;
    bool others = false;   // attributes without a field, kept as node attributes
    bool textual = false;  // a String or Glyph: CONTENT and STYLEREFS are fields
  };

  // `confidence`: the name of the element's confidence attribute (WC, GC), or null when it
  // has neither text nor confidence.
  static Fields fieldsOf(const pugi::xml_node& element, const char* confidence) {
    Fields f;
    f.textual = confidence != nullptr;
    for (pugi::xml_attribute a = element.first_attribute(); a; a = a.next_attribute()) {
      const std::string_view name = a.name();
      if (name == "ID") {
        f.id = a;
      } else if (name == "HPOS") {
        f.hpos = a;
      } else if (name == "VPOS") {
        f.vpos = a;
      } else if (name == "WIDTH") {
        f.width = a;
      } else if (name == "HEIGHT") {
        f.height = a;
      } else if (confidence != nullptr && name == "CONTENT") {
        f.content = a;
      } else if (confidence != nullptr && name == confidence) {
        f.confidence = a;
      } else if (confidence != nullptr && name == "STYLEREFS") {
        // Read as the word's font (the walk hands it down); the writer names fonts anew.
      } else {
        f.others = true;
      }
    }
    return f;
  }

  // The node the element becomes, to be filled by its children; null when the element is
  // read whole here or is not part of the layout.
  Node* readElement(const pugi::xml_node& element, Node& parent, const char* styles) {
    const std::string_view key = localName(element);
    if (key == "TextLine") return &fragment<Line>(element, parent, fieldsOf(element, nullptr));
    if (key == "String") return &readString(element, parent, styles);
    if (key == "Glyph") {
      const Fields fields = fieldsOf(element, "GC");
      Glyph& glyph = fragment<Glyph>(element, parent, fields);
      glyph.setText(in_.wide(fields.content.value(), element));
      if (fields.confidence) glyph.setConfidence(confidence(element, fields.confidence));
      return &glyph;
    }
    if (key == "Illustration") {
      return &fragment<Picture>(element, parent, fieldsOf(element, nullptr));
    }
    if (key == "PrintSpace" || key == "ComposedBlock" || key == "TextBlock" ||
        key == "GraphicalElement" || key == "TopMargin" || key == "LeftMargin" ||
        key == "RightMargin" || key == "BottomMargin") {
      Box& box = fragment<Box>(element, parent, fieldsOf(element, nullptr));
      box.setTypeName(in_.wide(key, element));
      return &box;
    }
    if (key == "Shape") {
      if (parent.nodeClass() == NodeClass::Page) return nullptr;
      for (const pugi::xml_node& shape : element.children()) {
        if (localName(shape) == "Polygon") {
          static_cast<Fragment&>(parent).setPolygon(in_.points(shape, "POINTS", scale_));
        }
      }
    } else if (key == "HYP") {
      // The hyphen ends the word before it; it is no word of its own.
      for (auto it = parent.children().rbegin(); it != parent.children().rend(); ++it) {
        if ((*it)->nodeClass() == NodeClass::Word) {
          (*it)->setAttribute(u"HYP", in_.wide(element.attribute("CONTENT").value(), element));
          break;
        }
      }
    } else if (key == "ALTERNATIVE" && parent.nodeClass() == NodeClass::Word) {
      std::u16string alternatives(parent.attributes().value(u"ALTERNATIVE"));
      if (!alternatives.empty()) alternatives += u'\t';
      alternatives += in_.wide(element.child_value(), element);
      parent.setAttribute(u"ALTERNATIVE", alternatives);
    }
    return nullptr;
  }

  Word& readString(const pugi::xml_node& element, Node& parent, const char* styles) {
    const Fields fields = fieldsOf(element, "WC");
    Word& word = fragment<Word>(element, parent, fields);
    word.setText(in_.wide(fields.content.value(), element));
    if (fields.confidence) word.setConfidence(confidence(element, fields.confidence));
    std::string_view refs = styles;
    while (!refs.empty()) {
      const std::size_t space = refs.find(' ');
      const auto style = styles_.find(refs.substr(0, space));
      if (style != styles_.end()) {
        word.setFontFamily(style->second.family);
        word.setFontSize(style->second.size);
        if (style->second.style.find("bold") != std::string_view::npos) {
          word.setFontWeight(FontWeight::kBold);
        }
        if (style->second.style.find("italics") != std::string_view::npos) {
          word.setFontStyle(FontStyle::kItalic);
        }
      }
      refs = space == std::string_view::npos ? std::string_view() : refs.substr(space + 1);
    }
    return word;
  }

  // A word's text stays where it is read once: on glyphs that spell it, else on the word.
  void finish(Node& node) {
    if (node.nodeClass() != NodeClass::Word || node.childCount() == 0) return;
    Word& word = static_cast<Word&>(node);
    std::u16string spelled;
    for (const auto& child : word.children()) {
      if (child->nodeClass() == NodeClass::Glyph) spelled += static_cast<Glyph&>(*child).text();
    }
    if (spelled.empty()) return;
    if (spelled == word.text()) {
      word.setText({});
      return;
    }
    for (const auto& child : word.children()) {
      if (child->nodeClass() != NodeClass::Glyph) continue;
      Glyph& glyph = static_cast<Glyph&>(*child);
      if (!glyph.text().empty()) glyph.setAttribute(u"CONTENT", glyph.text());
      glyph.setText({});
    }
  }

  template <class T>
  T& fragment(const pugi::xml_node& element, Node& parent, const Fields& fields) {
    T& node = parent.appendChild(std::make_unique<T>());
    if (fields.id) node.setId(in_.wide(fields.id.value(), element));
    if (fields.others) {
      in_.keepAttributes(element, node,
                         {"ID", "HPOS", "VPOS", "WIDTH", "HEIGHT",
                          fields.textual ? "CONTENT" : "", fields.textual ? "STYLEREFS" : "",
                          fields.confidence.name()});
    }
    node.setRect(rect(element, fields));
    return node;
  }

  Rect rect(const pugi::xml_node& element, const Fields& f) {
    if (!f.hpos && !f.vpos && !f.width && !f.height) return {};
    const pugi::xml_attribute* parts[] = {&f.hpos, &f.vpos, &f.width, &f.height};
    const char* names[] = {"HPOS", "VPOS", "WIDTH", "HEIGHT"};
    for (int i = 0; i < 4; ++i) {
      if (!*parts[i]) {
        std::string what = "has coordinates but no ";
        in_.fail(element, what.append(names[i]));
      }
    }
    return Rect{in_.pixels(in_.number(element, f.hpos), scale_, element, "HPOS"),
                in_.pixels(in_.number(element, f.vpos), scale_, element, "VPOS"),
                size(element, f.width), size(element, f.height)};
  }

  std::int32_t size(const pugi::xml_node& element, const pugi::xml_attribute& attribute) {
    if (!attribute) return 0;
    const double value = in_.number(element, attribute);
    if (value < 0) {
      std::string what = "has the negative ";
      in_.fail(element, what.append(attribute.name()).append(" ").append(attribute.value()));
    }
    return in_.pixels(value, scale_, element, attribute.name());
  }

  double confidence(const pugi::xml_node& element, const pugi::xml_attribute& attribute) {
    const double value = in_.number(element, attribute);
    if (value < 0 || value > 1) {
      std::string what = "has ";
      what.append(attribute.name()).append("=\"").append(attribute.value());
      in_.fail(element, what.append("\", outside 0 to 1"));
    }
    return value * 100;
  }

  XmlInput& in_;
  std::map<std::string, TextStyle, std::less<>> styles_;
  std::string_view unit_;
  std::u16string image_;
  double scale_ = 1;
};

}  // namespace

std::unique_ptr<Layout> AltoReader::read(std::string_view utf8) {
  std::string text(utf8);
  return readInPlace(text);
}

std::unique_ptr<Layout> AltoReader::readInPlace(std::string& utf8) {
  XmlInput input(utf8, "ALTO");
  return AltoBuilder(input).build();
}

}  // namespace qent::text::layout::format
