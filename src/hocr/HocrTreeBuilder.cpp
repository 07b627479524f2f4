// HocrTreeBuilder.cpp - one hOCR element, one layout node.
#include "hocr/HocrTreeBuilder.h"

#include "base/NumberConversion.h"
#include "base/QentException.h"
#include "base/Unicode.h"
#include "hocr/HocrFields.h"
#include "layout/Layout.h"
#include "layout/LayoutFormat.h"
#include "layout/LayoutLimits.h"
#include "layout/Nodes.h"

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

// "element <div> at offset 212", for messages.
std::string where(std::string_view name, std::int64_t offset) {
  std::string text = "element <";
  text.append(name).append("> at offset ");
  return text.append(std::to_string(offset));
}

// The only conversion that can fail on text the parser accepted; a hostile file with broken
// UTF-8 gets a message that says where instead of the converter's bare offset.
std::u16string wide(std::string_view text, std::string_view name, std::int64_t offset) {
  try {
    return base::utf8ToUtf16(text);
  } catch (const std::invalid_argument& e) {
    fail("hOCR: " + where(name, offset) + " holds invalid UTF-8 (" + e.what() + ")");
  }
}

std::string_view firstAttribute(const std::vector<MarkupAttribute>& attributes,
                                std::string_view name) {
  for (const MarkupAttribute& a : attributes) {
    if (a.name == name) return a.value;
  }
  return {};
}

}  // namespace

struct HocrTreeBuilder::Open {
  std::string name;
  std::int64_t offset = 0;
  std::unique_ptr<Node> node;
  Kind kind = Kind::Container;
  // The title and style are held here: the property map views them after the parser's
  // own buffers have moved on.
  std::string title, style, lang, text;
  bool hasText = false;
  PropertyMap properties;

  std::u16string wide(std::string_view value) const { return hocr::wide(value, name, offset); }
};

HocrTreeBuilder::HocrTreeBuilder(bool tolerant) : tolerant_(tolerant) {}
HocrTreeBuilder::~HocrTreeBuilder() = default;

template <typename Step>
void HocrTreeBuilder::guarded(Step step) {
  if (failure_) return;
  try {
    step();
  } catch (...) {
    failure_ = std::current_exception();
    openCount_ = 0;
  }
}

void HocrTreeBuilder::startElement(std::string_view name,
                                   const std::vector<MarkupAttribute>& attributes,
                                   std::int64_t offset) {
  ++depth_;
  if (bodyDepth_ != 0) {
    guarded([&] { openElement(name, attributes, offset); });
  } else if (depth_ == 1) {
    if (!htmlSeen_ && name == "html") htmlSeen_ = inHtml_ = true;
  } else if (depth_ == 2 && inHtml_) {
    if (!headSeen_ && name == "head") headSeen_ = inHead_ = true;
    if (!bodySeen_ && name == "body") {
      bodySeen_ = true;
      bodyDepth_ = depth_;
      guarded([&] { openElement(name, attributes, offset); });
    }
  } else if (depth_ == 3 && inHead_ && name == "meta") {
    readMeta(attributes, offset);
  }
}

void HocrTreeBuilder::text(std::string_view text) {
  if (bodyDepth_ == 0 || openCount_ == 0) return;
  Open& open = *path_[openCount_ - 1];
  if (open.hasText) return;
  open.text.assign(text);
  open.hasText = true;
  // Text in elements without a layout class (Tesseract 3's "xocr_word" spans, headings,
  // bold and italic words) is still the page's text; the strict reading drops it.
  if (tolerant_ && open.kind == Kind::Container) {
    guarded([&] {
      const std::string_view trimmed = trimHocrSpace(open.text);
      if (!trimmed.empty()) static_cast<layout::Content&>(*open.node).setText(open.wide(trimmed));
    });
  }
}

void HocrTreeBuilder::endElement() {
  if (bodyDepth_ != 0) {
    guarded([&] { closeElement(); });
    if (depth_ == bodyDepth_) bodyDepth_ = 0;
  } else if (depth_ == 2 && inHead_) {
    inHead_ = false;
  } else if (depth_ == 1 && inHtml_) {
    inHtml_ = false;
  }
  --depth_;
}

void HocrTreeBuilder::readMeta(const std::vector<MarkupAttribute>& attributes,
                               std::int64_t offset) {
  for (const MarkupAttribute& a : attributes) {
    if (a.name != "name") continue;
    for (Meta* meta : {&system_, &modules_}) {
      if (meta->found || a.value != (meta == &system_ ? "ocr-system" : "ocr-modules")) continue;
      meta->found = true;
      meta->content = firstAttribute(attributes, "content");
      meta->offset = offset;
    }
  }
}

std::unique_ptr<layout::Layout> HocrTreeBuilder::finish() {
  wide(system_.content, "meta", system_.offset);  // refuses invalid UTF-8 like every other text
  layout::Layout::Versions versions = parseVersions(system_.content);
  const std::u16string additional = wide(modules_.content, "meta", modules_.offset);
  if (failure_) std::rethrow_exception(failure_);
  if (!bodySeen_) {
    // No body: the tree of an element that has nothing (a Content node without class).
    openElement("", {}, -1);
    closeElement();
  }

  std::unique_ptr<Node> root;
  if (body_->childCount() == 1) {
    root = std::move(body_->takeChildren().front());
  } else {
    root = std::move(body_);
  }
  auto result = std::make_unique<layout::Layout>(std::move(root));
  result->setVersions(versions);
  result->setFormat(layout::kFormatHocr);
  if (!additional.empty()) result->root()->setAttribute(u"additional_versions", additional);
  return result;
}

std::string_view HocrTreeBuilder::dispatchKey(
    std::string_view name, const std::vector<MarkupAttribute>& attributes) const {
  bool hasClass = false;
  std::string_view key;
  for (const MarkupAttribute& a : attributes) {
    if (a.name == "class") {
      hasClass = true;
      key = a.value;
      break;
    }
  }
  if (!hasClass) return name;
  if (!tolerant_) return key;
  // "ocr_line custom" or "custom ocrx_word": the hOCR token says what the element is.
  for (const std::string_view token : splitAtSpace(trimHocrSpace(key))) {
    if (hasHocrPrefix(token)) return token;
  }
  return key;
}

void HocrTreeBuilder::openElement(std::string_view name,
                                  const std::vector<MarkupAttribute>& attributes,
                                  std::int64_t offset) {
  const std::size_t depth = openCount_ + 1;
  if (depth > layout::kMaxLayoutDepth) {
    fail("hOCR: " + where(name, offset) + " is nested deeper than " +
         std::to_string(layout::kMaxLayoutDepth) + " levels");
  }
  if (path_.size() < depth) path_.push_back(std::make_unique<Open>());
  Open& open = *path_[depth - 1];
  open.name.assign(name);
  open.offset = offset;
  open.kind = Kind::Container;
  open.hasText = false;
  open.text.clear();

  // One pass over the attributes instead of a search per name; the first of each counts.
  const MarkupAttribute* title = nullptr;
  const MarkupAttribute* style = nullptr;
  std::string_view id;
  for (const MarkupAttribute& a : attributes) {
    if (a.name == "title") {
      if (title == nullptr) title = &a;
    } else if (a.name == "style") {
      if (style == nullptr) style = &a;
    } else if (a.name == "id") {
      if (id.empty()) id = a.value;
    }
  }
  PropertyMap& properties = open.properties;
  properties.clear();
  open.title.assign(title != nullptr ? title->value : "");
  open.style.assign(style != nullptr ? style->value : "");
  if (title != nullptr) properties.addTitle(open.title);
  if (style != nullptr) properties.addStyle(open.style);

  if (!tolerant_ && hasHocrPrefix(name)) {
    fail("Unsupported node name for HOCRReader: " + std::string(name));
  }

  const std::string_view key = dispatchKey(name, attributes);
  bool keepClass = false;
  if (key == "ocr_page") {
    open.kind = Kind::Page;
    open.node = std::make_unique<layout::Page>();
    open.lang.assign(firstAttribute(attributes, "lang"));
  } else if (key == "ocr_line" || (tolerant_ && isLineClass(key))) {
    open.kind = Kind::Line;
    open.node = std::make_unique<layout::Line>();
    keepClass = key != "ocr_line";
  } else if (key == "ocrx_word") {
    open.kind = Kind::Word;
    open.node = std::make_unique<layout::Word>();
  } else if (tolerant_ && key == "ocrx_cinfo") {
    open.kind = Kind::Glyph;
    open.node = std::make_unique<layout::Glyph>();
  } else {
    if (!tolerant_ && hasHocrPrefix(key)) {
      const std::string_view wanted = key == "ocr_par" ? "p" : "div";
      if (name != wanted) {
        fail("Unsupported node name with class " + std::string(key) +
             " for HOCRReader: " + std::string(name));
      }
    }
    if (properties.contains("bbox")) {
      auto box = std::make_unique<layout::Box>();
      box->setTypeName(open.wide(key));
      // The id doubles as the text of a box that has none of its own: the fragment
      // properties replace it only with non-empty direct text. The tolerant dialect leaves
      // it out, so that the text of a page is its words, not its block ids.
      if (!id.empty() && !tolerant_) box->setText(open.wide(id));
      open.kind = Kind::Box;
      open.node = std::move(box);
    } else {
      auto content = std::make_unique<layout::Content>();
      content->setTypeName(open.wide(key));
      if (!id.empty()) content->setId(open.wide(id));
      open.node = std::move(content);
    }
  }
  // A class of several tokens is kept as written, so the tokens besides the hOCR one stay.
  for (const MarkupAttribute& a : attributes) {
    if (a.name != "class") continue;
    if (tolerant_ && a.value != key) keepClass = true;
    break;
  }
  readAttributes(*open.node, open, attributes, keepClass);
  openCount_ = depth;
}

void HocrTreeBuilder::closeElement() {
  Open& open = *path_[openCount_ - 1];
  finishElement(open);
  open.node->fitChildren();
  --openCount_;
  if (openCount_ == 0) {
    body_ = std::move(open.node);
  } else {
    path_[openCount_ - 1]->node->appendChild(std::move(open.node));
  }
}

void HocrTreeBuilder::finishElement(Open& open) {
  PropertyMap& properties = open.properties;
  switch (open.kind) {
    case Kind::Container:
      return;
    case Kind::Box:
      finishFragment(static_cast<layout::Fragment&>(*open.node), open);
      return;
    case Kind::Glyph: {
      auto& glyph = static_cast<layout::Glyph&>(*open.node);
      // Tesseract gives a character box as "x_bboxes", not "bbox".
      const std::string_view boxes = properties.contains("bbox") ? "" : properties.take("x_bboxes");
      finishFragment(glyph, open);
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
      page.setLanguage(open.lang);
      page.setIndexInLayout(static_cast<std::uint32_t>(pageCounter_++));
      if (const std::string_view number = properties.take("ppageno"); !number.empty()) {
        page.setAuxiliaryNumber(base::parseUnsigned(number));
      }
      if (const std::string_view angle = properties.take("textangle"); !angle.empty()) {
        page.setTextangle(base::parseDouble(angle));
      }
      if (const std::string_view image = properties.take("image"); !image.empty()) {
        std::u16string reference = open.wide(image);
        if (images_.find(reference) == images_.end()) {
          // One Image per distinct reference, owned by the first page that names it; later
          // pages with the same reference share it through their "image" attribute.
          auto node = std::make_unique<layout::Image>();
          node->setId(u"image_" + std::u16string(page.id()));
          node->setImage(reference);
          images_.emplace(std::move(reference), &page.appendChild(std::move(node)));
        }
      }
      return;
    }
    case Kind::Line: {
      auto& line = static_cast<layout::Line&>(*open.node);
      finishFragment(line, open);
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
      finishFragment(word, open);
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
        open.wide(v);
        word.setXEntity(std::string(v));
      }
      return;
    }
  }
}

void HocrTreeBuilder::finishFragment(layout::Fragment& fragment, Open& open) {
  PropertyMap& properties = open.properties;
  if (const std::string_view bbox = properties.take("bbox"); !bbox.empty()) {
    fragment.setRect(readFragmentBbox(bbox));
  }
  const std::string_view text = trimHocrSpace(open.text);
  if (!text.empty()) fragment.setText(open.wide(text));
  if (const std::string_view v = properties.take("textangle"); !v.empty()) {
    fragment.setTextangle(base::parseDouble(v));
  }
  if (const std::string_view v = properties.take("baseline"); !v.empty()) {
    fragment.setBaseline(readBaseline(v));
  }
  if (const std::string_view v = properties.take("poly"); !v.empty()) {
    std::optional<std::vector<layout::Point>> points = readPoly(v);
    if (!points) {
      fail("hOCR: " + where(open.name, open.offset) + " has a poly with an odd number of values (" +
           std::to_string(splitAtSpace(trimHocrSpace(v)).size()) + ")");
    }
    fragment.setPolygon(std::move(*points));
  }
  for (const std::string_view key : kStyleKeys) {
    const std::string_view value = properties.take(key);
    if (key == "font-family") open.wide(value);  // names the element on invalid UTF-8
    applyStyleProperty(fragment, key, value);
  }
}

void HocrTreeBuilder::readAttributes(Node& node, const Open& open,
                                     const std::vector<MarkupAttribute>& attributes,
                                     bool keepClass) {
  // Collected in document order and handed over at once (the last of equal keys wins):
  // an element with thousands of attributes costs one sort, not an insertion each.
  Node::Attributes::Entries entries;
  for (const MarkupAttribute& attribute : attributes) {
    const std::string_view name = attribute.name;
    const std::string_view value = attribute.value;
    if (name == "id") {
      node.setId(open.wide(value));
    } else if (name == "title") {
      for (const PropertyMap::Entry& entry : open.properties.entries()) {
        entries.emplace_back(layout::AttributeKey(open.wide(entry.key)), open.wide(entry.value));
      }
    } else if (name == "class" && hasHocrPrefix(value) && !keepClass) {
      // consumed by the dispatch
    } else {
      entries.emplace_back(layout::AttributeKey(open.wide(name)), open.wide(value));
    }
  }
  if (!entries.empty()) node.attributes().assign(std::move(entries));
}

}  // namespace qent::text::hocr
