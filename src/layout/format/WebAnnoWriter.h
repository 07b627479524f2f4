// WebAnnoWriter.h - writes the words of a layout as a WebAnno TSV 3.2 document with one
// span layer that marks the sensitive words.
#pragma once

#include "layout/NodeVisitor.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace qent::text::layout {
class Layout;
}

namespace qent::text::layout::format {

// Every Line becomes one sentence ("#Text=" followed by its words joined by blanks), every
// Word one token row "S-T<tab>BEGIN-END<tab>TEXT<tab>ENTITY":
//   - S counts the sentences of the write from 1, T the tokens of the sentence from 1;
//   - BEGIN-END are byte offsets into the UTF-8 text, with one separator byte after every
//     word, across lines and pages, never reset during a write; with Offsets::Utf16CodeUnits
//     they count UTF-16 code units instead (a character beyond U+FFFF counts 2), as WebAnno
//     and INCEpTION do, and the separator counts 1;
//   - ENTITY is "_", or "sensitive[E]" for a word with x_sensibility > 0, where E is the last
//     blank-separated token of the word's entity (Fragment::xEntity(), else its attribute
//     "x_entity"; empty brackets when it has none).
// A word's text is its own, or the texts of its glyphs when it has none of its own, as for
// plain text (the cloud-OCR reader keeps text only in the glyphs). Texts are written as they
// stand, without escaping. Pictures and form fields write nothing, not even their words.
//
// The layout is borrowed for the call. Throws std::invalid_argument, naming the word, when a
// text is not valid UTF-16; nothing is returned then.
class WebAnnoWriter : private NodeVisitor {
public:
  enum class Offsets : unsigned char { Utf8Bytes, Utf16CodeUnits };

  explicit WebAnnoWriter(Offsets offsets = Offsets::Utf8Bytes);
  ~WebAnnoWriter() override;

  // The whole document; a layout without root gives the header alone.
  std::string write(const Layout& layout);
  // The document for one subtree, counted from sentence 1 and offset 0.
  std::string write(Node& node);

private:
  using NodeVisitor::visit;
  void visit(Picture& node) override;
  void visit(Glyph& node) override;
  void visit(Word& node) override;
  void visit(Line& node) override;
  void visit(Field& node) override;
  void visit(Box& node) override;
  void visit(Fragment& node) override;
  void visit(Page& node) override;
  void visit(Image& node) override;
  void visit(Content& node) override;
  void visit(Node& node) override;
  void leave(Node& node) override;

  void start();
  void visitChildren(Node& node);
  // The token row of a word, written once its children (nested words) have theirs.
  void writeRow(Word& word);
  // Appends the word's text as UTF-8 and returns its length in bytes.
  std::size_t appendWordText(Word& word, std::string& into);
  void appendNumber(std::uint64_t value);

  std::string out_;
  std::string text_;  // the current word's text, reused from word to word
  const std::string_view sentencePrefix_;
  const std::string_view headerPrefix_;
  const Offsets offsets_;
  std::uint32_t sentence_ = 0;
  std::uint32_t token_ = 0;
  std::uint64_t offset_ = 0;
};

}  // namespace qent::text::layout::format
