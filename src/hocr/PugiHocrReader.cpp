// PugiHocrReader.cpp - builds a layout tree from an hOCR document with the pugixml DOM.
#include "hocr/PugiHocrReader.h"

#include "base/NumberConversion.h"
#include "base/QentException.h"
#include "base/TraceLog.h"
#include "base/Unicode.h"
#include "hocr/HocrFields.h"
#include "layout/Layout.h"
#include "layout/LayoutFormat.h"
#include "layout/LayoutLimits.h"
#include "layout/Nodes.h"

#include <pugixml.hpp>

#include <stdexcept>

namespace qent::text::hocr {

namespace {

using layout::Node;

[[noreturn]] void fail(const std::string& message) {
  throw base::QentException(base::kErrorHocr, message);
}

// pugixml places an element at its name; report the offset of its "<".
std::string where(const pugi::xml_node& element) {
  const std::ptrdiff_t offset = element.offset_debug();
  return "element <" + std::string(element.name()) + "> at offset " +
         std::to_string(offset > 0 ? offset - 1 : offset);
}

// The only conversion that can fail on text pugixml accepted; a hostile file with broken
// UTF-8 gets a message that says where instead of the converter's bare offset.
std::u16string wide(std::string_view text, const pugi::xml_node& element) {
  try {
    return base::utf8ToUtf16(text);
  } catch (const std::invalid_argument& e) {
    fail("hOCR: " + where(element) + " holds invalid UTF-8 (" + e.what() + ")");
  }
}

void copyProperties(Node::Attributes::Entries& attributes, const PropertyMap& properties,
                    const pugi::xml_node& element) {
  for (const PropertyMap::Entry& entry : properties.entries()) {
    attributes.emplace_back(layout::AttributeKey(wide(entry.key, element)),
                            wide(entry.value, element));
  }
}

}  // namespace

PugiHocrReader::PugiHocrReader() = default;
PugiHocrReader::~PugiHocrReader() = default;

PropertyMap& PugiHocrReader::propertiesAt(std::size_t depth) {
  while (propertyMaps_.size() <= depth) propertyMaps_.push_back(std::make_unique<PropertyMap>());
  PropertyMap& map = *propertyMaps_[depth];
  map.clear();
  return map;
}

std::unique_ptr<layout::Layout> PugiHocrReader::read(std::string_view utf8) {
  std::string text(utf8);
  return readInPlace(text);
}

std::unique_ptr<layout::Layout> PugiHocrReader::readInPlace(std::string& buffer) {
  const std::string_view utf8 = buffer;
  pageCounter_ = 0;
  images_.clear();

  if (utf8.empty() || utf8.find("<html") == std::string_view::npos) fail("No HOCR file found");

  // Default options: entities and character references are expanded, and text that is only
  // white space (the indentation between elements) is not kept as a node, so an element's
  // "direct text" is its first real text.
  pugi::xml_document document;
  const pugi::xml_parse_result parsed =
      document.load_buffer_inplace(buffer.data(), buffer.size(), pugi::parse_default,
                                   pugi::encoding_utf8);
  if (!parsed) {
    base::TraceLog::writeFormatted(base::kTraceError, "hOCR: %s at offset %lld",
                                   parsed.description(),
                                   static_cast<long long>(parsed.offset));
    fail("HOCR parsing error");
  }

  const pugi::xml_node html = document.child("html");
  const pugi::xml_node head = html.child("head");
  const pugi::xml_node system = head.find_child_by_attribute("meta", "name", "ocr-system");
  const std::string_view systemContent = system.attribute("content").value();
  wide(systemContent, system);  // refuses invalid UTF-8 like every other text
  layout::Layout::Versions versions = parseVersions(systemContent);
  const pugi::xml_node modules = head.find_child_by_attribute("meta", "name", "ocr-modules");
  const std::u16string additional = wide(modules.attribute("content").value(), modules);

  std::unique_ptr<Node> body = readTree(html.child("body"));
  std::unique_ptr<Node> root;
  if (body->childCount() == 1) {
    root = std::move(body->takeChildren().front());
  } else {
    root = std::move(body);
  }

  auto result = std::make_unique<layout::Layout>(std::move(root));
  result->setVersions(versions);
  result->setFormat(layout::kFormatHocr);
  if (!additional.empty()) result->root()->setAttribute(u"additional_versions", additional);
  return result;
}

struct PugiHocrReader::Open {
  Element element;
  std::unique_ptr<Node> node;
  Kind kind;
  std::size_t depth;
  PropertyMap* properties;
  Element nextChild;
};

std::unique_ptr<Node> PugiHocrReader::readTree(const Element& element) {
  std::vector<Open> path;
  path.push_back(openElement(element, 1));
  while (true) {
    Open& top = path.back();
    Element child = top.nextChild;
    while (child && child.type() != pugi::node_element) child = child.next_sibling();
    if (child) {
      top.nextChild = child.next_sibling();
      const std::size_t depth = top.depth + 1;
      path.push_back(openElement(child, depth));
      continue;
    }
    finishElement(top);
    std::unique_ptr<Node> node = std::move(top.node);
    path.pop_back();
    if (path.empty()) return node;
    path.back().node->appendChild(std::move(node));
  }
}

PugiHocrReader::Open PugiHocrReader::openElement(const Element& element, std::size_t depth) {
  if (depth > layout::kMaxLayoutDepth) {
    fail("hOCR: " + where(element) + " is nested deeper than " +
         std::to_string(layout::kMaxLayoutDepth) + " levels");
  }
  // One pass over the attributes instead of a search per name; the first of each counts.
  pugi::xml_attribute title, style, classAttribute;
  for (pugi::xml_attribute a = element.first_attribute(); a; a = a.next_attribute()) {
    const std::string_view attributeName = a.name();
    if (attributeName == "title") {
      if (!title) title = a;
    } else if (attributeName == "style") {
      if (!style) style = a;
    } else if (attributeName == "class") {
      if (!classAttribute) classAttribute = a;
    }
  }
  PropertyMap& properties = propertiesAt(depth);
  if (title) properties.addTitle(title.value());
  if (style) properties.addStyle(style.value());

  const std::string_view name = element.name();
  if (hasHocrPrefix(name)) fail("Unsupported node name for HOCRReader: " + std::string(name));

  Open open{element, nullptr, Kind::Container, depth, &properties, element.first_child()};
  const std::string_view key = classAttribute ? classAttribute.value() : name;
  if (key == "ocr_page") {
    open.kind = Kind::Page;
    open.node = std::make_unique<layout::Page>();
  } else if (key == "ocr_line") {
    open.kind = Kind::Line;
    open.node = std::make_unique<layout::Line>();
  } else if (key == "ocrx_word") {
    open.kind = Kind::Word;
    open.node = std::make_unique<layout::Word>();
  } else {
    if (hasHocrPrefix(key)) {
      const std::string_view wanted = key == "ocr_par" ? "p" : "div";
      if (name != wanted) {
        fail("Unsupported node name with class " + std::string(key) +
             " for HOCRReader: " + std::string(name));
      }
    }
    const std::string_view id = element.attribute("id").value();
    if (properties.contains("bbox")) {
      auto box = std::make_unique<layout::Box>();
      box->setTypeName(wide(key, element));
      // The id doubles as the text of a box that has none of its own: the fragment
      // properties replace it only with non-empty direct text.
      if (!id.empty()) box->setText(wide(id, element));
      open.kind = Kind::Box;
      open.node = std::move(box);
    } else {
      auto content = std::make_unique<layout::Content>();
      content->setTypeName(wide(key, element));
      if (!id.empty()) content->setId(wide(id, element));
      open.node = std::move(content);
    }
  }
  readAttributes(*open.node, element, properties);
  return open;
}

void PugiHocrReader::finishElement(Open& open) {
  const Element& element = open.element;
  PropertyMap& properties = *open.properties;
  switch (open.kind) {
    case Kind::Container:
      return;
    case Kind::Box:
      finishFragment(static_cast<layout::Fragment&>(*open.node), element, properties);
      return;
    case Kind::Page: {
      auto& page = static_cast<layout::Page&>(*open.node);
      if (const std::string_view bbox = properties.take("bbox"); !bbox.empty()) {
        // Page corners are taken as they stand: the size is the difference, the origin is
        // not kept, and a reversed bbox wraps around in the unsigned size.
        const auto [width, height] = readPageSize(bbox);
        page.setWidth(width);
        page.setHeight(height);
      }
      page.setLanguage(element.attribute("lang").value());
      page.setIndexInLayout(static_cast<std::uint32_t>(pageCounter_++));
      if (const std::string_view number = properties.take("ppageno"); !number.empty()) {
        page.setAuxiliaryNumber(base::parseUnsigned(number));
      }
      if (const std::string_view angle = properties.take("textangle"); !angle.empty()) {
        page.setTextangle(base::parseDouble(angle));
      }
      if (const std::string_view image = properties.take("image"); !image.empty()) {
        std::u16string reference = wide(image, element);
        if (images_.find(reference) == images_.end()) {
          // One Image per distinct reference, owned by the first page that names it; later
          // pages with the same reference share it through their "image" attribute.
          auto node = std::make_unique<layout::Image>();
          node->setId(u"image_" + page.id());
          node->setImage(reference);
          images_.emplace(std::move(reference), &page.appendChild(std::move(node)));
        }
      }
      return;
    }
    case Kind::Line: {
      auto& line = static_cast<layout::Line&>(*open.node);
      finishFragment(line, element, properties);
      if (const std::string_view v = properties.take("x_ascenders"); !v.empty()) {
        line.setMaxAscenders(base::parseDouble(v));
      }
      if (const std::string_view v = properties.take("x_descenders"); !v.empty()) {
        line.setMaxDescenders(base::parseDouble(v));
      }
      if (const std::string_view v = properties.take("x_size"); !v.empty()) {
        line.setMaxGlyphHeight(base::parseDouble(v));
      }
      if (const std::string_view v = properties.take("x_lconf"); !v.empty()) {
        line.setConfidence(base::parseDouble(v));
      }
      return;
    }
    case Kind::Word: {
      auto& word = static_cast<layout::Word&>(*open.node);
      finishFragment(word, element, properties);
      if (const std::string_view v = properties.take("x_checked"); !v.empty()) {
        word.setXChecked(base::parseUnsigned(v));
      }
      if (const std::string_view v = properties.take("x_rejected"); !v.empty()) {
        word.setXRejected(base::parseUnsigned(v));
      }
      if (const std::string_view v = properties.take("x_wconf"); !v.empty()) {
        word.setConfidence(base::parseDouble(v));
      }
      if (const std::string_view v = properties.take("x_sensibility"); !v.empty()) {
        word.setXSensibility(base::parseDouble(v));
      }
      if (const std::string_view v = properties.take("x_entity"); !v.empty()) {
        wide(v, element);
        word.setXEntity(std::string(v));
      }
      return;
    }
  }
}

void PugiHocrReader::finishFragment(layout::Fragment& fragment, const Element& element,
                                    PropertyMap& properties) {
  if (const std::string_view bbox = properties.take("bbox"); !bbox.empty()) {
    fragment.setRect(readFragmentBbox(bbox));
  }
  const std::string_view text = trimHocrSpace(element.child_value());
  if (!text.empty()) fragment.setText(wide(text, element));
  if (const std::string_view v = properties.take("textangle"); !v.empty()) {
    fragment.setTextangle(base::parseDouble(v));
  }
  if (const std::string_view v = properties.take("baseline"); !v.empty()) {
    fragment.setBaseline(readBaseline(v));
  }
  if (const std::string_view v = properties.take("poly"); !v.empty()) {
    std::optional<std::vector<layout::Point>> points = readPoly(v);
    if (!points) {
      fail("hOCR: " + where(element) + " has a poly with an odd number of values (" +
           std::to_string(splitAtSpace(trimHocrSpace(v)).size()) + ")");
    }
    fragment.setPolygon(std::move(*points));
  }
  for (const std::string_view key : kStyleKeys) {
    const std::string_view value = properties.take(key);
    if (key == "font-family") wide(value, element);  // names the element on invalid UTF-8
    applyStyleProperty(fragment, key, value);
  }
}

void PugiHocrReader::readAttributes(Node& node, const Element& element,
                                    const PropertyMap& properties) {
  // Collected in document order and handed over at once (the last of equal keys wins):
  // an element with thousands of attributes costs one sort, not an insertion each.
  Node::Attributes::Entries attributes;
  for (pugi::xml_attribute attribute = element.first_attribute(); attribute;
       attribute = attribute.next_attribute()) {
    const std::string_view name = attribute.name();
    const std::string_view value = attribute.value();
    if (name == "id") {
      node.setId(wide(value, element));
    } else if (name == "title") {
      copyProperties(attributes, properties, element);
    } else if (name == "class" && hasHocrPrefix(value)) {
      // consumed by the dispatch
    } else {
      attributes.emplace_back(layout::AttributeKey(wide(name, element)), wide(value, element));
    }
  }
  if (!attributes.empty()) node.attributes().assign(std::move(attributes));
}

}  // namespace qent::text::hocr
