// XmlEventReader.h - an XML document read as a stream of events, without building a tree.
#pragma once

#include "base/FileIo.h"
#include "hocr/MarkupTree.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace qent::text::hocr {

// Reads XML start by start, text by text, end by end, from a text in memory or from a file
// taken piece by piece: a thousand-page hOCR document is read in the memory of its layout,
// where a DOM of it took three times its size beside the layout.
//
// It accepts exactly what pugixml accepts with its default options, and gives the same
// texts: entities and character references are expanded (a reference that does not
// complete is kept as written; one to U+0000 ends the text, as in a C string), line ends
// are normalised, white space in attribute values becomes blanks, CDATA sections are text,
// text that is only white space is no text, and comments, processing instructions and the
// DOCTYPE are skipped. A NUL byte ends the document. Duplicate attributes are kept, names
// are not checked beyond their characters, and text outside the root element is ignored.
//
// Views handed out (names, attributes, text) live until the next call of next().
class XmlEventReader {
public:
  enum class Event : std::uint8_t { StartElement, EndElement, Text, End, Error };

  // The whole document; the text is not copied and must outlive the reader.
  explicit XmlEventReader(std::string_view text);
  // The document's beginning and the source of the rest, read as the events need it.
  XmlEventReader(std::string head, base::ByteSource& rest);

  // The next event. After End or Error every call gives the same again.
  Event next();

  // StartElement and EndElement: the element's name.
  std::string_view name() const { return name_; }
  // StartElement: the attributes in document order, and the byte offset of its "<".
  const std::vector<MarkupAttribute>& attributes() const { return attributes_; }
  std::uint64_t offset() const { return offset_; }
  // Text: one text node (a run of character data, or a CDATA section).
  std::string_view text() const { return text_; }
  // Error: what is wrong (pugixml's words for it) and the byte offset where it was seen.
  const char* error() const { return error_; }
  std::uint64_t errorOffset() const { return errorOffset_; }

private:
  enum class Step : std::uint8_t { None, Start, End, Text, Finished, Failed };
  struct RawAttribute {
    std::size_t name, nameEnd, value, valueEnd;
  };

  // One token from pos_, or None for what is skipped. Reading past the bytes at hand sets
  // short_, and the caller reads more and tries the token again.
  Step step();
  Step markup();
  Step startTag();
  Step endTag();
  Step instruction();
  Step exclamation();
  Step doctype();
  Step characterData();
  Step fail(const char* what, std::size_t at);

  // The byte at i; past the bytes at hand '\0', the document's end, once the source is done.
  char at(std::size_t i) {
    if (i < data_.size()) return data_[i];
    if (!ended_) short_ = true;
    return '\0';
  }
  // The first occurrence of `what` from i; npos at the document's end.
  std::size_t find(std::string_view what, std::size_t i);
  void skipSpace(std::size_t& i) {
    while (isSpace(at(i))) ++i;
  }
  static bool isSpace(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }
  // Reads more of the source behind what is still unread.
  void refill();
  // Attribute values and text as the parser gives them, decoded when they need it.
  std::string_view decode(std::size_t begin, std::size_t end, char kind, std::string& into);

  std::string_view data_;  // the bytes at hand: the whole text, or window_
  std::string window_;
  base::ByteSource* source_ = nullptr;
  bool ended_ = true;  // no bytes beyond data_
  bool short_ = false;
  std::size_t pos_ = 0;
  std::uint64_t base_ = 0;  // offset of data_[0] in the document
  static constexpr std::size_t kPiece = std::size_t{1} << 16;

  std::string openNames_;  // names of the open elements, one after the other
  std::vector<std::size_t> openStarts_;
  bool pendingEnd_ = false;  // "<a/>" gave its start, its end comes next
  bool sawElement_ = false;
  Event sticky_ = Event::Text;  // End or Error once reached

  std::string_view name_;
  std::vector<RawAttribute> raw_;
  std::vector<MarkupAttribute> attributes_;
  std::vector<std::string> decodedValues_;
  std::string_view text_;
  std::string decodedText_;
  std::uint64_t offset_ = 0;
  const char* error_ = "";
  std::uint64_t errorOffset_ = 0;
};

}  // namespace qent::text::hocr
