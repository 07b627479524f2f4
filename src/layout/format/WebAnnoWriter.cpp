// WebAnnoWriter.cpp - sentences per line, token rows per word, byte offsets, entity column.
#include "layout/format/WebAnnoWriter.h"

#include "base/Unicode.h"
#include "layout/IteratorTemplate.h"
#include "layout/Layout.h"
#include "layout/NodeClass.h"
#include "layout/Nodes.h"

#include <charconv>
#include <stdexcept>

namespace qent::text::layout::format {

namespace {

constexpr std::string_view kFormat = "WebAnno TSV 3.2";
constexpr std::string_view kLayer = "#T_SP=webanno.custom.Mention|value";
const std::u16string kEntityAttribute = u"x_entity";

bool isSpace(char c) {
  return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f' || c == '\v';
}

// The entity id of a sensitive word: the last blank-separated token of its entity, which
// names the class first and the id last ("person 12").
std::string entityId(const Word& word) {
  std::string entity = word.xEntity();
  if (entity.empty()) {
    const auto found = word.attributes().find(kEntityAttribute);
    if (found != word.attributes().end()) entity = base::utf16ToUtf8(found->second);
  }
  std::size_t end = entity.size();
  while (end > 0 && isSpace(entity[end - 1])) --end;
  std::size_t begin = end;
  while (begin > 0 && !isSpace(entity[begin - 1])) --begin;
  return entity.substr(begin, end - begin);
}

// The UTF-16 length of valid UTF-8: one code unit per character, two for the characters of
// four bytes (beyond U+FFFF, written as surrogate pairs).
std::uint64_t utf16Length(std::string_view utf8) {
  std::uint64_t units = 0;
  for (const char c : utf8) {
    const auto byte = static_cast<unsigned char>(c);
    if ((byte & 0xC0) != 0x80) ++units;
    if (byte >= 0xF0) ++units;
  }
  return units;
}

}  // namespace

WebAnnoWriter::WebAnnoWriter(Offsets offsets)
    : sentencePrefix_("#Text="), headerPrefix_("#FORMAT="), offsets_(offsets) {}
WebAnnoWriter::~WebAnnoWriter() = default;

void WebAnnoWriter::start() {
  out_.clear();
  sentence_ = 0;
  token_ = 0;
  offset_ = 0;
  out_ += headerPrefix_;
  out_ += kFormat;
  out_ += '\n';
  out_ += kLayer;
  out_ += "\n\n";
}

std::string WebAnnoWriter::write(const Layout& layout) {
  start();
  if (Node* root = layout.root()) root->accept(*this);
  return std::move(out_);
}

std::string WebAnnoWriter::write(Node& node) {
  start();
  node.accept(*this);
  return std::move(out_);
}

void WebAnnoWriter::visitChildren(Node& node) { NodeVisitor::visit(node); }

void WebAnnoWriter::leave(Node& node) {
  if (isA<Word>(node)) writeRow(static_cast<Word&>(node));
}

void WebAnnoWriter::appendNumber(std::uint64_t value) {
  char digits[24];
  const auto result = std::to_chars(digits, digits + sizeof digits, value);
  out_.append(digits, result.ptr);
}

std::size_t WebAnnoWriter::appendWordText(Word& word, std::string& into) {
  const std::size_t before = into.size();
  try {
    if (!word.text().empty()) {
      into += base::utf16ToUtf8(word.text());
    } else {
      // The word is a container of its glyphs: it reads as their texts, as in plain text.
      for (IteratorTemplate<Glyph> it(&word); !it.atEnd(); ++it) {
        into += base::utf16ToUtf8((*it).text());
      }
    }
  } catch (const std::invalid_argument& e) {
    throw std::invalid_argument("WebAnno TSV: the text of word \"" +
                                base::utf16ToUtf8Lenient(word.id()) +
                                "\" is not valid Unicode (" + e.what() + ")");
  }
  return into.size() - before;
}

void WebAnnoWriter::visit(Line& line) {
  ++sentence_;
  token_ = 0;
  out_ += '\n';
  out_ += sentencePrefix_;
  for (IteratorTemplate<Word> it(&line); !it.atEnd(); ++it) {
    appendWordText(*it, out_);
    out_ += ' ';
  }
  // Drops the blank after the last word, and white space that ends the last word itself.
  std::size_t end = out_.size();
  while (end > 0 && isSpace(out_[end - 1])) --end;
  out_.resize(end);
  out_ += '\n';
  visitChildren(line);
}

void WebAnnoWriter::visit(Word& word) {
  ++token_;
  visitChildren(word);  // leave() writes the row
}

void WebAnnoWriter::writeRow(Word& word) {
  appendNumber(sentence_);
  out_ += '-';
  appendNumber(token_);
  out_ += '\t';
  // The offsets precede the text in the row, and its length is only known once it is UTF-8.
  text_.clear();
  const std::size_t bytes = appendWordText(word, text_);
  const std::uint64_t length = offsets_ == Offsets::Utf8Bytes ? bytes : utf16Length(text_);
  const std::uint64_t begin = offset_;
  const std::uint64_t end = begin + length;
  offset_ = end + 1;
  appendNumber(begin);
  out_ += '-';
  appendNumber(end);
  out_ += '\t';
  out_ += text_;
  out_ += '\t';
  if (word.xSensibility() > 0.0) {
    out_ += "sensitive[";
    out_ += entityId(word);
    out_ += ']';
  } else {
    out_ += '_';
  }
  out_ += '\n';
}

// Pictures and form fields are not text the annotation is about.
void WebAnnoWriter::visit(Picture&) {}
void WebAnnoWriter::visit(Field&) {}

void WebAnnoWriter::visit(Glyph& node) { visitChildren(node); }
void WebAnnoWriter::visit(Box& node) { visitChildren(node); }
void WebAnnoWriter::visit(Fragment& node) { visitChildren(node); }
void WebAnnoWriter::visit(Page& node) { visitChildren(node); }
void WebAnnoWriter::visit(Image& node) { visitChildren(node); }
void WebAnnoWriter::visit(Content& node) { visitChildren(node); }
void WebAnnoWriter::visit(Node& node) { visitChildren(node); }

}  // namespace qent::text::layout::format
