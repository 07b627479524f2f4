// PageXmlReader.cpp - PAGE elements to layout nodes, walked without recursion.
#include "layout/format/page/PageXmlReader.h"

#include "layout/Layout.h"
#include "layout/LayoutFormat.h"
#include "layout/LayoutLimits.h"
#include "layout/NodeText.h"
#include "layout/Nodes.h"
#include "layout/TreeWalk.h"
#include "layout/format/xml/XmlInput.h"

#include <algorithm>
#include <limits>
#include <map>
#include <vector>

namespace qent::text::layout::format {

namespace {

using xml::localName;
using xml::XmlInput;

constexpr std::string_view kNamespaces[] = {
    "http://schema.primaresearch.org/PAGE/gts/pagecontent/2013-07-15",
    "http://schema.primaresearch.org/PAGE/gts/pagecontent/2017-07-15",
    "http://schema.primaresearch.org/PAGE/gts/pagecontent/2018-07-15",
    "http://schema.primaresearch.org/PAGE/gts/pagecontent/2019-07-15",
};

constexpr std::size_t kUnordered = std::numeric_limits<std::size_t>::max();

bool isRegion(std::string_view name) { return name.ends_with("Region"); }

class PageBuilder {
public:
  explicit PageBuilder(XmlInput& input) : in_(input) {}

  std::unique_ptr<Layout> build() {
    const pugi::xml_node gts = in_.document().document_element();
    if (localName(gts) != "PcGts") in_.fail("the root element is not <PcGts>");
    checkNamespace(gts);
    auto root = std::make_unique<Content>();
    root->setTypeName(u"node");
    auto layout = std::make_unique<Layout>();
    std::uint32_t index = 0;
    for (const pugi::xml_node& part : gts.children()) {
      const std::string_view key = localName(part);
      if (key == "Metadata") readMetadata(part, *layout, *root);
      if (key == "Page") readPage(part, *root, index++);
    }
    layout->setRoot(std::move(root));
    layout->setFormat(kFormatPageXml);
    return layout;
  }

private:
  struct Frame {
    pugi::xml_node next;
    Node* node;
  };

  void checkNamespace(const pugi::xml_node& gts) {
    const std::string_view full = gts.name();
    const std::size_t colon = full.find(':');
    std::string attribute = "xmlns";
    if (colon != std::string_view::npos) attribute.append(":").append(full.substr(0, colon));
    const std::string_view uri = gts.attribute(attribute.c_str()).value();
    for (std::string_view known : kNamespaces) {
      if (uri == known) return;
    }
    std::string what = "is in the namespace \"";
    in_.fail(gts, what.append(uri).append("\", not in that of PAGE 2013, 2017, 2018 or 2019"));
  }

  void readMetadata(const pugi::xml_node& metadata, Layout& layout, Node& root) {
    for (const pugi::xml_node& item : metadata.children()) {
      if (item.type() != pugi::node_element) continue;
      const std::string_view key = localName(item);
      const std::u16string value = in_.wide(item.child_value(), item);
      if (key == "Creator" && !value.empty()) layout.addVersion(value, u"");
      if (key == "Created" || key == "LastChange") root.setAttribute(in_.wide(key, item), value);
    }
  }

  void readPage(const pugi::xml_node& element, Node& root, std::uint32_t index) {
    Page& page = root.appendChild(std::make_unique<Page>());
    in_.keepAttributes(element, page, {"imageFilename", "imageWidth", "imageHeight"});
    page.setWidth(size(element, "imageWidth"));
    page.setHeight(size(element, "imageHeight"));
    page.setIndexInLayout(index);
    const std::string_view image = element.attribute("imageFilename").value();
    if (!image.empty())
      page.appendChild(std::make_unique<Image>()).setImage(in_.wide(image, element));
    readOrder(element);

    std::vector<Frame> path{{element.first_child(), &page}};
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
      Node* made = readElement(child, *top.node);
      if (made == nullptr) continue;
      // The root and the page are levels 1 and 2; elements that make no node count not.
      if (path.size() + 2 > kMaxLayoutDepth) {
        in_.fail(child, "is nested deeper than " + std::to_string(kMaxLayoutDepth) + " levels");
      }
      path.push_back({child.first_child(), made});
    }
    applyOrder(page);
  }

  Node* readElement(const pugi::xml_node& element, Node& parent) {
    const std::string_view key = localName(element);
    if (key == "TextLine") {
      Line& line = fragment<Line>(element, parent);
      for (const pugi::xml_node& child : element.children()) {
        if (localName(child) == "Baseline") {
          in_.points(child, "points", 1);  // checked, kept as written
          line.setAttribute(u"Baseline", in_.wide(child.attribute("points").value(), child));
        }
      }
      return &line;
    }
    if (key == "Word") return &fragment<Word>(element, parent);
    if (key == "Glyph") return &fragment<Glyph>(element, parent);
    if (key == "ImageRegion") return &fragment<Picture>(element, parent);
    if (isRegion(key)) {
      Box& box = fragment<Box>(element, parent);
      box.setTypeName(in_.wide(key, element));
      return &box;
    }
    return nullptr;
  }

  template <class T>
  T& fragment(const pugi::xml_node& element, Node& parent) {
    T& node = parent.appendChild(std::make_unique<T>());
    node.setId(in_.wide(element.attribute("id").value(), element));
    in_.keepAttributes(element, node, {"id"});
    pugi::xml_node coords;
    pugi::xml_node equiv;
    long long lowest = std::numeric_limits<long long>::max();
    for (const pugi::xml_node& child : element.children()) {
      if (child.type() != pugi::node_element) continue;
      const std::string_view key = localName(child);
      if (key == "Coords" && !coords) coords = child;
      if (key != "TextEquiv") continue;
      // The lowest index is the preferred reading; one without an index counts as the
      // first met.
      const long long index =
          child.attribute("index") ? child.attribute("index").as_llong() : lowest;
      if (!equiv || index < lowest) {
        equiv = child;
        lowest = index;
      }
    }
    if (!coords) in_.fail(element, "has no Coords");
    std::vector<Point> polygon;
    if (coords.attribute("points")) {
      polygon = in_.points(coords, "points", 1);
    } else {
      // The 2009 and 2010 schemas wrote each point as an element.
      for (const pugi::xml_node& point : coords.children()) {
        if (localName(point) != "Point") continue;
        polygon.push_back({in_.pixels(in_.number(point, "x"), 1, point, "x"),
                           in_.pixels(in_.number(point, "y"), 1, point, "y")});
      }
    }
    if (polygon.empty()) in_.fail(coords, "has no points");
    node.setRect(xml::boundingRect(polygon));
    node.setPolygon(std::move(polygon));
    if (equiv) {
      // Unicode is the text; some producers leave it empty and fill only PlainText.
      std::u16string unicode, plain;
      for (const pugi::xml_node& child : equiv.children()) {
        if (child.type() != pugi::node_element) continue;
        if (localName(child) == "Unicode") unicode = in_.wide(child.child_value(), child);
        if (localName(child) == "PlainText") plain = in_.wide(child.child_value(), child);
      }
      node.setText(unicode.empty() ? std::move(plain) : std::move(unicode));
      if (equiv.attribute("conf")) {
        const double conf = in_.number(equiv, "conf");
        if (conf < 0 || conf > 1) {
          std::string what = "has conf=\"";
          in_.fail(equiv,
                   what.append(equiv.attribute("conf").value()).append("\", outside 0 to 1"));
        }
        node.setConfidence(conf * 100);
      }
    }
    return node;
  }

  std::uint32_t size(const pugi::xml_node& element, const char* attribute) {
    if (!element.attribute(attribute)) return 0;
    const double value = in_.number(element, attribute);
    if (value < 0) {
      std::string what = "has the negative ";
      in_.fail(element,
               what.append(attribute).append(" ").append(element.attribute(attribute).value()));
    }
    return static_cast<std::uint32_t>(in_.pixels(value, 1, element, attribute));
  }

  // Text is read once: a node whose children carry text keeps its own as an attribute.
  void finish(Node& node) {
    if (node.nodeClass() == NodeClass::Page) return;
    Fragment& fragment = static_cast<Fragment&>(node);
    if (fragment.text().empty()) return;
    for (const auto& child : node.children()) {
      if (!nodeText(*child).empty()) {
        fragment.setAttribute(u"TextEquiv", fragment.text());
        fragment.setText({});
        return;
      }
    }
  }

  // The region ids of the ReadingOrder in their order; an indexed group lists its
  // members by index, an unordered one as written.
  void readOrder(const pugi::xml_node& page) {
    rank_.clear();
    pugi::xml_node order;
    for (const pugi::xml_node& child : page.children()) {
      if (localName(child) == "ReadingOrder") order = child;
    }
    if (!order) return;
    std::vector<pugi::xml_node> pending{order};
    std::size_t guard = 0;
    while (!pending.empty()) {
      const pugi::xml_node node = pending.back();
      pending.pop_back();
      if (++guard > 10'000'000) in_.fail(order, "is too large");
      const char* ref = node.attribute("regionRef").value();
      if (*ref != '\0') rank_.emplace(in_.wide(ref, node), rank_.size());
      std::vector<std::pair<long long, pugi::xml_node>> members;
      for (const pugi::xml_node& child : node.children()) {
        if (child.type() != pugi::node_element) continue;
        const long long index = child.attribute("index") ? child.attribute("index").as_llong()
                                                         : static_cast<long long>(members.size());
        members.emplace_back(index, child);
      }
      std::stable_sort(members.begin(), members.end(),
                       [](const auto& a, const auto& b) { return a.first < b.first; });
      for (auto it = members.rbegin(); it != members.rend(); ++it) pending.push_back(it->second);
    }
  }

  std::size_t rankOf(const Node& node) const {
    if (node.nodeClass() != NodeClass::Box && node.nodeClass() != NodeClass::Picture) {
      return kUnordered;
    }
    const auto at = rank_.find(node.id());
    return at == rank_.end() ? kUnordered : at->second;
  }

  void sortChildren(Node& node) {
    auto children = node.takeChildren();
    std::stable_sort(children.begin(), children.end(),
                     [this](const auto& a, const auto& b) { return rankOf(*a) < rankOf(*b); });
    for (auto& child : children) node.appendChild(std::move(child));
  }

  void applyOrder(Page& page) {
    if (rank_.empty()) return;
    sortChildren(page);
    walkBelow(
        page,
        [this](Node& node, Node&) {
          sortChildren(node);
          return true;
        },
        [](Node&) {});
  }

  XmlInput& in_;
  std::map<std::u16string, std::size_t, std::less<>> rank_;
};

}  // namespace

std::unique_ptr<Layout> PageXmlReader::read(std::string_view utf8) {
  std::string text(utf8);
  return readInPlace(text);
}

std::unique_ptr<Layout> PageXmlReader::readInPlace(std::string& utf8) {
  XmlInput input(utf8, "PAGE");
  return PageBuilder(input).build();
}

}  // namespace qent::text::layout::format
