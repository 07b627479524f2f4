// XmlEvents.h - the events of an XML text as XmlEventReader gives them and as pugixml's DOM
// holds them, written out one per line, so that a test and the fuzz target can hold the
// streaming reader to the parser whose rules it follows.
#pragma once

#include "base/FileIo.h"
#include "hocr/XmlEventReader.h"

#include <pugixml.hpp>

#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace qent::test {

// Hands out a text in pieces of a fixed size, so that tokens straddle every boundary.
class PieceSource : public qent::base::ByteSource {
public:
  PieceSource(std::string_view text, std::size_t piece) : text_(text), piece_(piece) {}
  std::size_t read(char* buffer, std::size_t size) override {
    const std::size_t n = std::min({size, piece_, text_.size()});
    std::memcpy(buffer, text_.data(), n);
    text_.remove_prefix(n);
    return n;
  }

private:
  std::string_view text_;
  std::size_t piece_;
};

// "error" when the text is refused; else "<name@offset a=v ...", "text", ">" per event.
inline std::string streamedEvents(qent::text::hocr::XmlEventReader& reader) {
  using Event = qent::text::hocr::XmlEventReader::Event;
  std::string out;
  while (true) {
    switch (reader.next()) {
      case Event::StartElement:
        out.append("<").append(reader.name()).append("@").append(std::to_string(reader.offset()));
        for (const auto& a : reader.attributes()) {
          out.append(" ").append(a.name).append("=").append(a.value);
        }
        out.append("\n");
        break;
      case Event::Text:
        out.append("\"").append(reader.text()).append("\n");
        break;
      case Event::EndElement:
        out.append(">\n");
        break;
      case Event::End:
        return out;
      case Event::Error:
        return "error";
    }
  }
}

inline std::string streamedEvents(std::string_view text) {
  qent::text::hocr::XmlEventReader reader(text);
  return streamedEvents(reader);
}

// The same text read from a source in pieces, the first `head` bytes given at once.
inline std::string streamedEvents(std::string_view text, std::size_t head, std::size_t piece) {
  head = std::min(head, text.size());
  PieceSource rest(text.substr(head), piece);
  qent::text::hocr::XmlEventReader reader(std::string(text.substr(0, head)), rest);
  return streamedEvents(reader);
}

// The reference: pugixml's DOM of the text, walked in document order.
inline std::string domEvents(std::string_view text) {
  pugi::xml_document document;
  if (!document.load_buffer(text.data(), text.size(), pugi::parse_default, pugi::encoding_utf8)) {
    return "error";
  }
  std::string out;
  std::vector<pugi::xml_node> next{document.first_child()};
  while (!next.empty()) {
    const pugi::xml_node node = next.back();
    if (!node) {
      next.pop_back();
      if (!next.empty()) out.append(">\n");
      continue;
    }
    next.back() = node.next_sibling();
    if (node.type() == pugi::node_element) {
      out.append("<").append(node.name()).append("@");
      out.append(std::to_string(node.offset_debug() - 1));
      for (const pugi::xml_attribute& a : node.attributes()) {
        out.append(" ").append(a.name()).append("=").append(a.value());
      }
      out.append("\n");
      next.push_back(node.first_child());
    } else if (node.type() == pugi::node_pcdata || node.type() == pugi::node_cdata) {
      out.append("\"").append(node.value()).append("\n");
    }
  }
  return out;
}

}  // namespace qent::test
