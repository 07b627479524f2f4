// JSONWriter.cpp - the node objects of the JSON layout format, streamed in key order.
#include "layout/format/JSONWriter.h"

#include "base/Unicode.h"
#include "layout/Layout.h"
#include "layout/NodeText.h"
#include "layout/Nodes.h"
#include "layout/format/LayoutKeys.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <stdexcept>
#include <string_view>
#include <vector>

namespace qent::text::layout::format {

namespace {

using K = LayoutKeys;

std::string utf8Of(std::u16string_view text, std::string_view member) {
  try {
    return base::utf16ToUtf8(text);
  } catch (const std::invalid_argument& e) {
    throw std::invalid_argument("JSONWriter: \"" + std::string(member) + "\" is not valid text (" +
                                e.what() + ")");
  }
}

// Narrow fields are stored as they were given; make sure they are UTF-8 before they reach
// a document that must be.
std::string_view checkedUtf8(std::string_view text, std::string_view member) {
  try {
    (void)base::utf8ToUtf16(text);
  } catch (const std::invalid_argument& e) {
    throw std::invalid_argument("JSONWriter: \"" + std::string(member) + "\" is not UTF-8 (" +
                                e.what() + ")");
  }
  return text;
}

double finite(double value, std::string_view member) {
  if (!std::isfinite(value)) {
    throw std::invalid_argument("JSONWriter: \"" + std::string(member) +
                                "\" is not a finite number");
  }
  return value;
}

// The format's own keys need no escaping, so they go out as prepared text; the writer still
// places the separators. Attribute keys are free text and go through Key().
void key(JSONWriter::Output& out, std::string_view name) {
  char quoted[32];
  quoted[0] = '"';
  std::memcpy(quoted + 1, name.data(), name.size());
  quoted[name.size() + 1] = '"';
  out.RawValue(quoted, name.size() + 2, rapidjson::kStringType);
}

void string(JSONWriter::Output& out, std::string_view text) {
  out.String(text.data(), static_cast<rapidjson::SizeType>(text.size()));
}

void rgb(JSONWriter::Output& out, const Rgb& color) {
  out.StartArray();
  out.Uint(color.red);
  out.Uint(color.green);
  out.Uint(color.blue);
  out.EndArray();
}

// A member the writer adds to "attributes" from a field of the node.
struct Extra {
  std::string_view key;
  bool isNumber = false;
  double number = 0;
  std::string text;
};

}  // namespace

// What one node object holds; filled by the visit of the node's class, then emitted.
struct JSONWriter::Members {
  explicit Members(Node& n, std::string_view t) : node(&n), type(t) {}

  Node* node;
  std::string_view type;
  std::string typeStorage;
  Fragment* fragment = nullptr;
  double confidence = -1;
  // The text member: a fragment's or content's own text, or a word's content texts.
  const std::u16string* text = nullptr;
  std::u16string wordText;
  Page* page = nullptr;
  Image* image = nullptr;
  bool writeChildren = true;
  std::array<Extra, 4> extras;
  std::size_t extraCount = 0;

  void setType(std::u16string_view name) {
    typeStorage = utf8Of(name, K::kType);
    type = typeStorage;
  }
  void addNumber(std::string_view name, double value) {
    Extra& extra = extras[extraCount++];
    extra.key = name;
    extra.isNumber = true;
    extra.number = finite(value, name);
  }
  void addText(std::string_view name, std::string value) {
    Extra& extra = extras[extraCount++];
    extra.key = name;
    extra.text = std::move(value);
  }
  void addFragment(Fragment& f) {
    fragment = &f;
    text = &f.text();
    confidence = f.confidence();
    if (!f.xEntity().empty()) addText(K::kXEntity, std::string(checkedUtf8(f.xEntity(), K::kXEntity)));
  }
};

JSONWriter::JSONWriter() = default;
JSONWriter::~JSONWriter() = default;

void JSONWriter::write(const Layout& layout, base::Sink& sink) {
  rapidjson::StringBuffer buffer;
  Output out(buffer);
  spillBuffer_ = &buffer;
  sink_ = &sink;
  struct Reset {
    JSONWriter& writer;
    ~Reset() { writer.spillBuffer_ = nullptr, writer.sink_ = nullptr; }
  } reset{*this};
  out.StartObject();
  if (Node* root = layout.root()) {
    key(out, K::kRoot);
    writeNode(*root, out);
  }
  out.EndObject();
  sink.write(buffer.GetString(), buffer.GetSize());
}

std::string JSONWriter::write(const Layout& layout) {
  base::StringSink sink;
  write(layout, sink);
  return std::move(sink.text());
}

void JSONWriter::spill() {
  // Large enough that the sink sees few calls, small enough to cost nothing beside a layout.
  constexpr std::size_t kSpillSize = 1 << 16;
  if (sink_ == nullptr || spillBuffer_->GetSize() < kSpillSize) return;
  sink_->write(spillBuffer_->GetString(), spillBuffer_->GetSize());
  spillBuffer_->Clear();
}

std::string JSONWriter::writeNode(Node& node) {
  rapidjson::StringBuffer buffer;
  Output out(buffer);
  writeNode(node, out);
  return std::string(buffer.GetString(), buffer.GetSize());
}

void JSONWriter::writeNode(Node& node, Output& out) {
  Output* const outer = out_;
  const std::size_t openBefore = open_.size();
  out_ = &out;
  try {
    node.accept(*this);
  } catch (...) {
    out_ = outer;
    while (open_.size() > openBefore) open_.pop_back();
    throw;
  }
  out_ = outer;
}

JSONWriter::Members& JSONWriter::open(Node& node, std::string_view type) {
  return open_.emplace_back(node, type);
}

void JSONWriter::visit(Node& node) { emit(open(node, K::kTypeNode)); }

void JSONWriter::visit(Fragment& node) {
  Members& m = open(node, K::kTypeFragment);
  m.addFragment(node);
  emit(m);
}

void JSONWriter::visit(Picture& node) {
  Members& m = open(node, K::kTypeImageFragment);
  m.addFragment(node);
  if (!node.imageSource().empty()) {
    m.addText(K::kImageSource, utf8Of(node.imageSource(), K::kImageSource));
  }
  emit(m);
}

void JSONWriter::visit(Glyph& node) {
  Members& m = open(node, K::kTypeGlyph);
  m.addFragment(node);
  emit(m);
}

void JSONWriter::visit(Word& node) {
  Members& m = open(node, K::kTypeWord);
  m.addFragment(node);
  // The glyphs are not written, so a word that only has text below it carries that text.
  if (node.text().empty()) {
    m.wordText = contentText(node);
    m.text = &m.wordText;
  }
  m.writeChildren = false;
  if (node.xChecked() != 0) m.addNumber(K::kXChecked, static_cast<double>(node.xChecked()));
  if (node.xRejected() != 0) m.addNumber(K::kXRejected, static_cast<double>(node.xRejected()));
  if (node.xSensibility() > 0) m.addNumber(K::kXSensibility, node.xSensibility());
  emit(m);
}

void JSONWriter::visit(Line& node) {
  Members& m = open(node, K::kTypeLine);
  m.addFragment(node);
  if (node.maxAscenders() != 0) m.addNumber(K::kMaxAscenders, node.maxAscenders());
  if (node.maxDescenders() != 0) m.addNumber(K::kMaxDescenders, node.maxDescenders());
  if (node.maxGlyphHeight() != 0) m.addNumber(K::kMaxGlyphHeight, node.maxGlyphHeight());
  emit(m);
}

void JSONWriter::visit(Field& node) {
  Members& m = open(node, K::kTypeFormField);
  m.addFragment(node);
  emit(m);
}

void JSONWriter::visit(Box& node) {
  Members& m = open(node, {});
  m.setType(node.typeName());
  m.addFragment(node);
  emit(m);
}

void JSONWriter::visit(Page& node) {
  Members& m = open(node, K::kTypePage);
  m.page = &node;
  emit(m);
}

void JSONWriter::visit(Image& node) {
  Members& m = open(node, K::kTypeImage);
  m.image = &node;
  emit(m);
}

void JSONWriter::visit(Content& node) {
  Members& m = open(node, {});
  m.setType(node.typeName());
  m.text = &node.text();
  emit(m);
}

void JSONWriter::writeAttributes(const Members& m) {
  struct Entry {
    std::string key;
    std::u16string_view value;  // the map's, valid while it does not change
    const Extra* extra;
  };
  std::vector<Entry> entries;
  entries.reserve(m.node->attributes().size() + m.extraCount);
  for (const auto& [name, value] : m.node->attributes()) {
    entries.push_back(Entry{utf8Of(name, K::kAttributes), value, nullptr});
  }
  // The map is sorted by UTF-16 code units, the document by UTF-8 bytes: the two orders
  // differ only beyond U+D7FF, so this sort rarely moves anything.
  std::stable_sort(entries.begin(), entries.end(),
                   [](const Entry& a, const Entry& b) { return a.key < b.key; });
  // Members written from fields replace attributes of the same name.
  for (std::size_t i = 0; i < m.extraCount; ++i) {
    const Extra& extra = m.extras[i];
    auto at = std::lower_bound(entries.begin(), entries.end(), extra.key,
                               [](const Entry& e, std::string_view k) { return e.key < k; });
    if (at != entries.end() && at->key == extra.key) {
      at->extra = &extra;
    } else {
      entries.insert(at, Entry{std::string(extra.key), {}, &extra});
    }
  }
  Output& out = *out_;
  out.StartObject();
  for (const Entry& entry : entries) {
    out.Key(entry.key.data(), static_cast<rapidjson::SizeType>(entry.key.size()));
    if (entry.extra == nullptr) {
      string(out, utf8Of(entry.value, entry.key));
    } else if (entry.extra->isNumber) {
      out.Double(entry.extra->number);
    } else {
      string(out, entry.extra->text);
    }
  }
  out.EndObject();
}

void JSONWriter::emit(Members& m) {
  Output& out = *out_;
  Node& node = *m.node;
  const Fragment* f = m.fragment;

  // Members in ascending key order, each under its condition.
  out.StartObject();
  if (!node.attributes().empty() || m.extraCount > 0) {
    key(out, K::kAttributes);
    writeAttributes(m);
  }
  if (f != nullptr && f->hasBackgroundColor()) {
    key(out, K::kBackgroundColorRgb);
    rgb(out, f->backgroundColor());
  }
  if (f != nullptr && !f->baseline().empty()) {
    key(out, K::kBaseline);
    out.StartArray();
    for (const double c : f->baseline()) out.Double(finite(c, K::kBaseline));
    out.EndArray();
  }
  if (m.writeChildren && node.childCount() > 0) {
    key(out, K::kChildren);
    out.StartArray();
    spill();
    NodeVisitor::visit(node);  // leave() closes the array and the object
    return;
  }
  close(m);
  open_.pop_back();
  spill();
}

void JSONWriter::leave(Node&) {
  out_->EndArray();
  close(open_.back());
  open_.pop_back();
  spill();
}

void JSONWriter::close(const Members& m) {
  Output& out = *out_;
  const Node& node = *m.node;
  const Fragment* f = m.fragment;
  const Page* page = m.page;
  const bool geometry = f != nullptr && f->rect().hasGeometry();
  if (f != nullptr && f->hasColor()) {
    key(out, K::kColorRgb);
    rgb(out, f->color());
  }
  if (f != nullptr && m.confidence >= 0) {
    key(out, K::kConfidence);
    out.Double(finite(m.confidence, K::kConfidence));
  }
  if (f != nullptr && !f->fontFamily().empty()) {
    key(out, K::kFontFamily);
    string(out, utf8Of(f->fontFamily(), K::kFontFamily));
  }
  if (f != nullptr && f->fontSize() >= 0) {
    key(out, K::kFontSize);
    out.Double(finite(f->fontSize(), K::kFontSize));
  }
  if (f != nullptr && f->fontStyle() != 0) {
    key(out, K::kFontStyle);
    string(out, K::fontStyleName(f->fontStyle()));
  }
  if (f != nullptr && f->fontWeight() != 0) {
    key(out, K::kFontWeight);
    string(out, K::fontWeightName(f->fontWeight()));
  }
  if (geometry) {
    key(out, K::kHeight);
    out.Int(f->rect().height);
  } else if (page != nullptr && page->height() != 0) {
    key(out, K::kHeight);
    out.Uint(page->height());
  }
  if (!node.id().empty()) {
    key(out, K::kId);
    string(out, utf8Of(node.id(), K::kId));
  }
  if (m.image != nullptr) {
    key(out, K::kImage);
    string(out, utf8Of(m.image->image(), K::kImage));
  }
  if (page != nullptr) {
    key(out, K::kIndexInLayout);
    out.Uint(page->indexInLayout());
    if (!page->language().empty()) {
      key(out, K::kLanguage);
      string(out, checkedUtf8(page->language(), K::kLanguage));
    }
  }
  if (geometry) {
    key(out, K::kLeft);
    out.Int(f->rect().left);
  }
  if (f != nullptr && !f->polygon().empty()) {
    key(out, K::kPolygon);
    out.StartArray();
    for (const Point& p : f->polygon()) {
      out.StartArray();
      out.Int(p.x);
      out.Int(p.y);
      out.EndArray();
    }
    out.EndArray();
  }
  if (m.text != nullptr && !m.text->empty()) {
    key(out, K::kText);
    string(out, utf8Of(*m.text, K::kText));
  }
  const double textangle = f != nullptr ? f->textangle() : page != nullptr ? page->textangle() : 0;
  if (textangle != 0) {
    key(out, K::kTextangle);
    out.Double(finite(textangle, K::kTextangle));
  }
  if (geometry) {
    key(out, K::kTop);
    out.Int(f->rect().top);
  }
  key(out, K::kType);
  string(out, m.type);
  if (geometry) {
    key(out, K::kWidth);
    out.Int(f->rect().width);
  } else if (page != nullptr && page->width() != 0) {
    key(out, K::kWidth);
    out.Uint(page->width());
  }
  out.EndObject();
}

}  // namespace qent::text::layout::format
