// XmlWriter.h - XML written element by element into a sink, never held as a document.
//
// The output is laid out as an indented DOM print would lay it out: every element on a line
// of its own, indented one step per level; an element whose first content is text keeps its
// content and end tag on its line; an element without content is written "<name />". So a
// writer that switches from building a DOM to streaming keeps its output byte for byte, and
// a thousand-page document costs a small buffer instead of a node per element.
//
// Texts and attribute values must already be XML text (no forbidden characters); they are
// escaped here: "&", "<", ">" in text; "&", "<", '"' and tab, line feed and carriage return
// (as character references) in attribute values.
#pragma once

#include "base/Sink.h"

#include <string>
#include <string_view>
#include <vector>

namespace qent::base::xml {

class XmlWriter {
public:
  explicit XmlWriter(Sink& sink, std::string_view indent = " ");
  XmlWriter(const XmlWriter&) = delete;
  XmlWriter& operator=(const XmlWriter&) = delete;

  // <?xml version="..." encoding="..."?>
  void declaration(std::string_view version, std::string_view encoding);
  // <!DOCTYPE value>
  void doctype(std::string_view value);
  void startElement(std::string_view name);
  // Only directly after startElement or another attribute.
  void attribute(std::string_view key, std::string_view value);
  void text(std::string_view text);
  void endElement();
  // Markup written by another XmlWriter (its last end of line left out), as content of the
  // open element, starting on a line of its own and written as it stands (not indented
  // further): for a part that is complete only after what must precede it.
  void markup(std::string_view xml);
  // Ends the last line and hands the rest of the buffer to the sink; every element must be
  // closed.
  void finish();

  // The innermost open element, and whether nothing has been written inside it yet.
  const std::string& currentName() const { return open_.back(); }
  bool currentIsEmpty() const { return startTagOpen_; }

private:
  enum : unsigned { kNewline = 1, kIndent = 2 };

  void beginLine();
  void closeStartTag();
  void put(std::string_view bytes);
  void putEscaped(std::string_view text, bool inAttribute);
  void flush();

  Sink& sink_;
  std::string indent_;
  std::string buffer_;
  std::vector<std::string> open_;  // names of the open elements
  unsigned layout_ = kIndent;      // what the next tag starts with
  bool startTagOpen_ = false;      // "<name ..." written, ">" not yet
};

}  // namespace qent::base::xml
