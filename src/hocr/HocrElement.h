// HocrElement.h - what one layout node becomes on its hOCR element: title properties,
// style and further XML attributes, chosen so that the reader gives the node back.
#pragma once

#include "base/xml/XmlText.h"

#include <exception>
#include <string>
#include <string_view>
#include <vector>

namespace qent::base::xml {
class XmlWriter;
}

namespace qent::text::layout {
class Node;
class Fragment;
}  // namespace qent::text::layout

namespace qent::text::hocr {

using base::xml::assignXmlText;
using base::xml::xmlText;

// Collects the properties of one element and writes them onto it.
//
// A node read from hOCR carries every title and style property twice: as an attribute
// (the text as it stood) and, for the properties the reader understands, as a typed field.
// The typed field is authoritative (code may have changed it), but it is written in the
// spelling the attribute kept whenever that plain text reads back as the same value, so a
// document read and written again keeps its own texts ("x_wconf 93.0"). Every other
// attribute goes into the title when the reader's ";" split carries it unchanged, else onto
// the element as an XML attribute when its key is a usable name; what neither can carry is
// left out with a warning in the trace log.
//
// One object serves a whole document: reset() starts the next element and keeps the memory
// of the strings and lists, so writing a large document allocates little per element.
class HocrElement {
public:
  // Starts collecting for `node`; everything of the previous element is dropped.
  HocrElement& reset(const layout::Node& node);

  // A title property the reader converts into a typed field. `typed` is the field's text,
  // empty when the field is not set; `same(text)` tells whether the reader would turn a
  // stored text into the same field value (a text the reader would refuse is not the same).
  // A stored empty value (a key without value, which the reader ignores) is not kept.
  template <class Same>
  void typedProperty(std::string_view key, const std::string& typed, Same&& same) {
    const std::string* stored = claim(key);
    if (stored != nullptr && !stored->empty() &&
        (*stored == typed || readsBackTheSame(same, *stored))) {
      addTitle(key, *stored);
    } else if (!typed.empty()) {
      addTitle(key, typed);
    }
  }

  // The font and colour fields of a fragment, which the reader takes from the title or, when
  // the title lacks them, from the style.
  void fragmentStyle(const layout::Fragment& fragment);

  // A title property computed by the writer (x_bboxes, x_confs); replaces any attribute.
  void generatedProperty(std::string_view key, std::string_view value);
  // An XML attribute decided by the writer (a page's "lang"); replaces any attribute.
  void xmlAttribute(std::string_view key, std::string_view value);
  // Marks the attribute as written otherwise (the class, a page's language, ...) and returns
  // its text, or null when the node has no such attribute.
  const std::string* claim(std::string_view key);

  // Writes title, style and the remaining attributes into the start tag of `element` that
  // `writer` has open. The values of "lang" and "xml:lang" attributes written are appended
  // to `languages`. `warn` reports an attribute that can be written nowhere to the trace log.
  void apply(base::xml::XmlWriter& writer, std::string_view element,
             std::vector<std::string>& languages, bool warn);
  // Whether the title holds this key (after apply(), generic attributes included).
  bool hasTitleProperty(std::string_view key) const;
  // Whether the title holds a key starting with this prefix.
  bool hasTitlePropertyPrefix(std::string_view prefix) const;
  // After apply(): whether a style or title names a font, a dir attribute was written, a
  // language attribute was written.
  bool namesFont() const { return hasFontStyle_ || hasTitlePropertyPrefix("font-") ||
                                  hasTitlePropertyPrefix("x_font"); }
  bool hasDirection() const { return hasDirection_; }

private:
  struct Attribute {
    std::string key;
    std::string value;
    bool claimed = false;
    bool cleaned = false;  // the key lost characters that XML cannot carry
    bool dropped = false;  // ... and so collides with another key: left out
  };
  struct Item {
    std::string key;
    std::string value;
  };

  template <class Same>
  static bool readsBackTheSame(Same& same, const std::string& text) {
    try {
      return same(std::string_view(text));
    } catch (const std::exception&) {
      return false;
    }
  }

  // A list whose strings keep their memory from element to element.
  template <class T>
  struct Reused {
    std::vector<T> items;
    std::size_t size = 0;
    T& add() {
      if (size == items.size()) items.emplace_back();
      return items[size++];
    }
    T* begin() { return items.data(); }
    T* end() { return items.data() + size; }
    const T* begin() const { return items.data(); }
    const T* end() const { return items.data() + size; }
  };

  void addTitle(std::string_view key, std::string_view value);

  Reused<Attribute> attributes_;
  Reused<Item> title_;
  Reused<Item> xmlAttributes_;
  Reused<Item> extra_;
  std::string style_;
  std::string text_;
  bool hasStyle_ = false;
  bool hasFontStyle_ = false;
  bool hasDirection_ = false;
};


}  // namespace qent::text::hocr
