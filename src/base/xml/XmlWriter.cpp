// XmlWriter.cpp - streaming XML with the layout of an indented DOM print.
#include "base/xml/XmlWriter.h"

#include <stdexcept>

namespace qent::base::xml {

namespace {

// Large enough that the sink sees few calls, small enough to cost nothing beside a layout.
constexpr std::size_t kBufferSize = 1 << 16;

}  // namespace

XmlWriter::XmlWriter(Sink& sink, std::string_view indent) : sink_(sink), indent_(indent) {
  buffer_.reserve(kBufferSize);
}

void XmlWriter::put(std::string_view bytes) {
  buffer_.append(bytes);
  if (buffer_.size() >= kBufferSize) flush();
}

void XmlWriter::flush() {
  if (!buffer_.empty()) sink_.write(buffer_.data(), buffer_.size());
  buffer_.clear();
}

void XmlWriter::putEscaped(std::string_view text, bool inAttribute) {
  std::size_t start = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    const char* replacement = nullptr;
    switch (c) {
      case '&': replacement = "&amp;"; break;
      case '<': replacement = "&lt;"; break;
      case '>': replacement = inAttribute ? nullptr : "&gt;"; break;
      case '"': replacement = inAttribute ? "&quot;" : nullptr; break;
      case '\t': replacement = inAttribute ? "&#09;" : nullptr; break;
      case '\n': replacement = inAttribute ? "&#10;" : nullptr; break;
      case '\r': replacement = inAttribute ? "&#13;" : nullptr; break;
      default: break;
    }
    if (replacement == nullptr) continue;
    put(text.substr(start, i - start));
    put(replacement);
    start = i + 1;
  }
  put(text.substr(start));
}

void XmlWriter::beginLine() {
  if (layout_ & kNewline) put("\n");
  if (layout_ & kIndent) {
    for (std::size_t level = 0; level < open_.size(); ++level) put(indent_);
  }
}

void XmlWriter::closeStartTag() {
  if (!startTagOpen_) return;
  put(">");
  startTagOpen_ = false;
}

void XmlWriter::declaration(std::string_view version, std::string_view encoding) {
  beginLine();
  put("<?xml version=\"");
  putEscaped(version, true);
  put("\" encoding=\"");
  putEscaped(encoding, true);
  put("\"?>");
  layout_ = kNewline | kIndent;
}

void XmlWriter::doctype(std::string_view value) {
  beginLine();
  put("<!DOCTYPE ");
  put(value);
  put(">");
  layout_ = kNewline | kIndent;
}

void XmlWriter::startElement(std::string_view name) {
  closeStartTag();
  beginLine();
  put("<");
  put(name);
  open_.emplace_back(name);
  startTagOpen_ = true;
  layout_ = kNewline | kIndent;
}

void XmlWriter::attribute(std::string_view key, std::string_view value) {
  if (!startTagOpen_) throw std::logic_error("XML attribute outside a start tag");
  put(" ");
  put(key);
  put("=\"");
  putEscaped(value, true);
  put("\"");
}

void XmlWriter::text(std::string_view text) {
  if (open_.empty()) throw std::logic_error("XML text outside an element");
  closeStartTag();
  putEscaped(text, false);
  layout_ = 0;
}

void XmlWriter::endElement() {
  if (open_.empty()) throw std::logic_error("XML end tag without an open element");
  const std::string name = std::move(open_.back());
  open_.pop_back();
  if (startTagOpen_) {
    put(" />");
    startTagOpen_ = false;
  } else {
    beginLine();
    put("</");
    put(name);
    put(">");
  }
  layout_ = kNewline | kIndent;
}

void XmlWriter::markup(std::string_view xml) {
  if (open_.empty()) throw std::logic_error("XML markup outside an element");
  closeStartTag();
  beginLine();
  // Handed on as it stands rather than copied through the buffer: it may be a whole body.
  flush();
  sink_.write(xml.data(), xml.size());
  layout_ = kNewline | kIndent;
}

void XmlWriter::finish() {
  if (!open_.empty()) {
    throw std::logic_error("XML document finished with <" + open_.back() + "> open at depth " +
                           std::to_string(open_.size()));
  }
  if (layout_ & kNewline) put("\n");
  flush();
}

}  // namespace qent::base::xml
