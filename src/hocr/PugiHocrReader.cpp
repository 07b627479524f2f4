// PugiHocrReader.cpp - builds a layout tree from an hOCR document parsed by pugixml (or, in
// the tolerant dialect, by gumbo when the document is not XML).
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

#include "hocr/GumboMarkup.h"
#include "hocr/PugiMarkup.h"

#include <stdexcept>

namespace qent::text::hocr {

namespace {

using layout::Node;

[[noreturn]] void fail(const std::string& message) {
  throw base::QentException(base::kErrorHocr, message);
}

// The lines Tesseract writes with classes of their own: headings, captions, floating text.
bool isLineClass(std::string_view key) {
  return key == "ocr_header" || key == "ocr_caption" || key == "ocr_textfloat";
}

bool containsHtmlTag(std::string_view text, bool anyCase) {
  if (!anyCase) return text.find("<html") != std::string_view::npos;
  for (std::size_t at = text.find('<'); at != std::string_view::npos; at = text.find('<', at + 1)) {
    if (base::equalsIgnoreAsciiCase(text.substr(at + 1, 4), "html")) return true;
  }
  return false;
}

}  // namespace

std::string PugiHocrReader::where(Element element) const {
  std::string text = "element <";
  text.append(tree_->name(element)).append("> at offset ");
  return text.append(std::to_string(tree_->offset(element)));
}

// The only conversion that can fail on text the parser accepted; a hostile file with broken
// UTF-8 gets a message that says where instead of the converter's bare offset.
std::u16string PugiHocrReader::wide(std::string_view text, Element element) const {
  try {
    return base::utf8ToUtf16(text);
  } catch (const std::invalid_argument& e) {
    fail("hOCR: " + where(element) + " holds invalid UTF-8 (" + e.what() + ")");
  }
}

PugiHocrReader::PugiHocrReader(Dialect dialect) : dialect_(dialect) {}
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
  const bool tolerant = dialect_ == Dialect::Tolerant;

  if (utf8.empty() || !containsHtmlTag(utf8, tolerant)) fail("No HOCR file found");

  // Parsing in place changes the buffer, so the tolerant reading, which may need the text
  // again for the HTML parser, lets pugixml parse a copy.
  const PugiMarkup xml = tolerant ? PugiMarkup(utf8) : PugiMarkup(buffer);
  if (xml.parsed()) return readDocument(xml);
  base::TraceLog::writeFormatted(base::kTraceError, "hOCR: %s at offset %lld",
                                 xml.parsed().description(),
                                 static_cast<long long>(xml.parsed().offset));
  if (!tolerant) fail("HOCR parsing error");
  // Many engines write HTML 4 (unclosed meta, unquoted attributes, a bare "&"), which is
  // not XML; the HTML parsing rules give the tree a browser would show.
  base::TraceLog::write("hOCR: reading the document as HTML", base::kTraceWarning);
  const GumboMarkup html(utf8);
  return readDocument(html);
}

std::unique_ptr<layout::Layout> PugiHocrReader::readDocument(const MarkupTree& tree) {
  tree_ = &tree;
  const Element html = tree.html();
  Element head = nullptr;
  Element body = nullptr;
  for (Element child = tree.firstChild(html); child != nullptr; child = tree.nextSibling(child)) {
    if (head == nullptr && tree.name(child) == "head") head = child;
    if (body == nullptr && tree.name(child) == "body") body = child;
  }
  Element system = nullptr;
  Element modules = nullptr;
  for (Element child = tree.firstChild(head); child != nullptr; child = tree.nextSibling(child)) {
    if (tree.name(child) != "meta") continue;
    tree.attributes(child, attributes_);
    for (const MarkupAttribute& a : attributes_) {
      if (a.name != "name") continue;
      if (system == nullptr && a.value == "ocr-system") system = child;
      if (modules == nullptr && a.value == "ocr-modules") modules = child;
    }
  }
  const std::string_view systemContent = tree.attribute(system, "content");
  wide(systemContent, system);  // refuses invalid UTF-8 like every other text
  layout::Layout::Versions versions = parseVersions(systemContent);
  const std::u16string additional = wide(tree.attribute(modules, "content"), modules);

  std::unique_ptr<Node> bodyNode = readTree(body);
  std::unique_ptr<Node> root;
  if (bodyNode->childCount() == 1) {
    root = std::move(bodyNode->takeChildren().front());
  } else {
    root = std::move(bodyNode);
  }

  auto result = std::make_unique<layout::Layout>(std::move(root));
  result->setVersions(versions);
  result->setFormat(layout::kFormatHocr);
  if (!additional.empty()) result->root()->setAttribute(u"additional_versions", additional);
  tree_ = nullptr;
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

std::unique_ptr<Node> PugiHocrReader::readTree(Element element) {
  std::vector<Open> path;
  path.push_back(openElement(element, 1));
  while (true) {
    Open& top = path.back();
    if (const Element child = top.nextChild; child != nullptr) {
      top.nextChild = tree_->nextSibling(child);
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

std::string_view PugiHocrReader::dispatchKey(Element element) const {
  bool hasClass = false;
  std::string_view key;
  for (const MarkupAttribute& a : attributes_) {
    if (a.name == "class") {
      hasClass = true;
      key = a.value;
      break;
    }
  }
  if (!hasClass) return tree_->name(element);
  if (dialect_ == Dialect::Strict) return key;
  // "ocr_line custom" or "custom ocrx_word": the hOCR token says what the element is.
  for (const std::string_view token : splitAtSpace(trimHocrSpace(key))) {
    if (hasHocrPrefix(token)) return token;
  }
  return key;
}

PugiHocrReader::Open PugiHocrReader::openElement(Element element, std::size_t depth) {
  if (depth > layout::kMaxLayoutDepth) {
    fail("hOCR: " + where(element) + " is nested deeper than " +
         std::to_string(layout::kMaxLayoutDepth) + " levels");
  }
  const bool tolerant = dialect_ == Dialect::Tolerant;
  // One pass over the attributes instead of a search per name; the first of each counts.
  tree_->attributes(element, attributes_);
  const MarkupAttribute* title = nullptr;
  const MarkupAttribute* style = nullptr;
  std::string_view id;
  for (const MarkupAttribute& a : attributes_) {
    if (a.name == "title") {
      if (title == nullptr) title = &a;
    } else if (a.name == "style") {
      if (style == nullptr) style = &a;
    } else if (a.name == "id") {
      if (id.empty()) id = a.value;
    }
  }
  PropertyMap& properties = propertiesAt(depth);
  if (title != nullptr) properties.addTitle(title->value);
  if (style != nullptr) properties.addStyle(style->value);

  const std::string_view name = tree_->name(element);
  if (!tolerant && hasHocrPrefix(name)) {
    fail("Unsupported node name for HOCRReader: " + std::string(name));
  }

  Open open{element, nullptr, Kind::Container, depth, &properties, tree_->firstChild(element)};
  const std::string_view key = dispatchKey(element);
  bool keepClass = false;
  if (key == "ocr_page") {
    open.kind = Kind::Page;
    open.node = std::make_unique<layout::Page>();
  } else if (key == "ocr_line" || (tolerant && isLineClass(key))) {
    open.kind = Kind::Line;
    open.node = std::make_unique<layout::Line>();
    keepClass = key != "ocr_line";
  } else if (key == "ocrx_word") {
    open.kind = Kind::Word;
    open.node = std::make_unique<layout::Word>();
  } else if (tolerant && key == "ocrx_cinfo") {
    open.kind = Kind::Glyph;
    open.node = std::make_unique<layout::Glyph>();
  } else {
    if (!tolerant && hasHocrPrefix(key)) {
      const std::string_view wanted = key == "ocr_par" ? "p" : "div";
      if (name != wanted) {
        fail("Unsupported node name with class " + std::string(key) +
             " for HOCRReader: " + std::string(name));
      }
    }
    if (properties.contains("bbox")) {
      auto box = std::make_unique<layout::Box>();
      box->setTypeName(wide(key, element));
      // The id doubles as the text of a box that has none of its own: the fragment
      // properties replace it only with non-empty direct text. The tolerant dialect leaves
      // it out, so that the text of a page is its words, not its block ids.
      if (!id.empty() && !tolerant) box->setText(wide(id, element));
      open.kind = Kind::Box;
      open.node = std::move(box);
    } else {
      auto content = std::make_unique<layout::Content>();
      content->setTypeName(wide(key, element));
      if (!id.empty()) content->setId(wide(id, element));
      // Text in elements without a layout class (Tesseract 3's "xocr_word" spans, headings,
      // bold and italic words) is still the page's text; the strict reading drops it.
      if (tolerant) {
        const std::string_view text = trimHocrSpace(tree_->directText(element));
        if (!text.empty()) content->setText(wide(text, element));
      }
      open.node = std::move(content);
    }
  }
  // A class of several tokens is kept as written, so the tokens besides the hOCR one stay.
  for (const MarkupAttribute& a : attributes_) {
    if (a.name != "class") continue;
    if (tolerant && a.value != key) keepClass = true;
    break;
  }
  readAttributes(*open.node, element, properties, keepClass);
  return open;
}

void PugiHocrReader::finishElement(Open& open) {
  const Element element = open.element;
  PropertyMap& properties = *open.properties;
  switch (open.kind) {
    case Kind::Container:
      return;
    case Kind::Box:
      finishFragment(static_cast<layout::Fragment&>(*open.node), element, properties);
      return;
    case Kind::Glyph: {
      auto& glyph = static_cast<layout::Glyph&>(*open.node);
      // Tesseract gives a character box as "x_bboxes", not "bbox".
      const std::string_view boxes = properties.contains("bbox") ? "" : properties.take("x_bboxes");
      finishFragment(glyph, element, properties);
      if (!boxes.empty()) glyph.setRect(readFragmentBbox(boxes));
      if (const std::string_view v = properties.take("x_conf"); !v.empty()) {
        glyph.setConfidence(base::parseDouble(v));
      }
      return;
    }
    case Kind::Page: {
      auto& page = static_cast<layout::Page&>(*open.node);
      if (const std::string_view bbox = properties.take("bbox"); !bbox.empty()) {
        // Page corners are taken as they stand: the size is the difference, the origin is
        // not kept, and a reversed bbox wraps around in the unsigned size.
        const auto [width, height] = readPageSize(bbox);
        page.setWidth(width);
        page.setHeight(height);
      }
      page.setLanguage(std::string(tree_->attribute(element, "lang")));
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

void PugiHocrReader::finishFragment(layout::Fragment& fragment, Element element,
                                    PropertyMap& properties) {
  if (const std::string_view bbox = properties.take("bbox"); !bbox.empty()) {
    fragment.setRect(readFragmentBbox(bbox));
  }
  const std::string_view text = trimHocrSpace(tree_->directText(element));
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

void PugiHocrReader::readAttributes(Node& node, Element element,
                                    const PropertyMap& properties, bool keepClass) {
  // Collected in document order and handed over at once (the last of equal keys wins):
  // an element with thousands of attributes costs one sort, not an insertion each.
  // openElement() filled attributes_ with this element's attributes.
  Node::Attributes::Entries attributes;
  for (const MarkupAttribute& attribute : attributes_) {
    const std::string_view name = attribute.name;
    const std::string_view value = attribute.value;
    if (name == "id") {
      node.setId(wide(value, element));
    } else if (name == "title") {
      for (const PropertyMap::Entry& entry : properties.entries()) {
        attributes.emplace_back(layout::AttributeKey(wide(entry.key, element)),
                                wide(entry.value, element));
      }
    } else if (name == "class" && hasHocrPrefix(value) && !keepClass) {
      // consumed by the dispatch
    } else {
      attributes.emplace_back(layout::AttributeKey(wide(name, element)), wide(value, element));
    }
  }
  if (!attributes.empty()) node.attributes().assign(std::move(attributes));
}

}  // namespace qent::text::hocr
