// XmlEventReader.cpp - pugixml's parsing rules, token by token over a window of the input.
#include "hocr/XmlEventReader.h"

#include <algorithm>
#include <utility>

namespace qent::text::hocr {

namespace {

constexpr const char* kUnrecognizedTag = "Could not determine tag type";
constexpr const char* kBadInstruction = "Error parsing document declaration/processing instruction";
constexpr const char* kBadComment = "Error parsing comment";
constexpr const char* kBadCdata = "Error parsing CDATA section";
constexpr const char* kBadDoctype = "Error parsing document type declaration";
constexpr const char* kBadStartElement = "Error parsing start element tag";
constexpr const char* kBadAttribute = "Error parsing element attribute";
constexpr const char* kBadEndElement = "Error parsing end element tag";
constexpr const char* kMismatch = "Start-end tags mismatch";
constexpr const char* kNoElement = "No document element found";

// Names are not checked against the XML name rules, only by these character classes:
// any byte above 127 counts as a letter.
bool isStartSymbol(char c) {
  const auto u = static_cast<unsigned char>(c);
  return u >= 128 || (u >= 'a' && u <= 'z') || (u >= 'A' && u <= 'Z') || u == '_' || u == ':';
}
bool isSymbol(char c) {
  return isStartSymbol(c) || (c >= '0' && c <= '9') || c == '-' || c == '.';
}

// A character reference's code point as pugixml writes it: a number beyond Unicode still
// gives four bytes (which the UTF-8 check of the hOCR reader then refuses).
void appendCodePoint(std::uint32_t code, std::string& into) {
  auto byte = [&into](std::uint32_t b) { into.push_back(static_cast<char>(static_cast<std::uint8_t>(b))); };
  if (code < 0x80) {
    byte(code);
  } else if (code < 0x800) {
    byte(0xC0 | (code >> 6));
    byte(0x80 | (code & 0x3F));
  } else if (code < 0x10000) {
    byte(0xE0 | (code >> 12));
    byte(0x80 | ((code >> 6) & 0x3F));
    byte(0x80 | (code & 0x3F));
  } else {
    byte(0xF0 | (code >> 18));
    byte(0x80 | ((code >> 12) & 0x3F));
    byte(0x80 | ((code >> 6) & 0x3F));
    byte(0x80 | (code & 0x3F));
  }
}

// Expands the reference at raw[at] == '&' into `into` and returns where reading goes on. A
// reference that does not complete is copied as written up to the character that broke it,
// which is then read as any other.
std::size_t expandReference(std::string_view raw, std::size_t at, std::string& into) {
  auto ch = [raw](std::size_t i) { return i < raw.size() ? raw[i] : '\0'; };
  auto keep = [&](std::size_t end) {
    into.append(raw.substr(at, end - at));
    return end;
  };
  const std::size_t s = at + 1;
  if (ch(s) == '#') {
    const bool hex = ch(s + 1) == 'x';
    std::size_t t = hex ? s + 2 : s + 1;
    if (ch(t) == ';') return keep(t);
    std::uint32_t code = 0;  // wraps around like pugixml's unsigned int
    for (;; ++t) {
      const char d = ch(t);
      const auto lower = static_cast<unsigned char>(d | ' ');
      if (d >= '0' && d <= '9') {
        code = (hex ? 16 : 10) * code + static_cast<std::uint32_t>(d - '0');
      } else if (hex && lower >= 'a' && lower <= 'f') {
        code = 16 * code + static_cast<std::uint32_t>(lower - 'a' + 10);
      } else if (d == ';') {
        break;
      } else {
        return keep(t);
      }
    }
    appendCodePoint(code, into);
    return t + 1;
  }
  std::string_view name;
  char replacement = 0;
  switch (ch(s)) {
    case 'a':
      name = ch(s + 1) == 'p' ? "apos;" : "amp;";
      replacement = ch(s + 1) == 'p' ? '\'' : '&';
      break;
    case 'g': name = "gt;", replacement = '>'; break;
    case 'l': name = "lt;", replacement = '<'; break;
    case 'q': name = "quot;", replacement = '"'; break;
    default: return keep(s);
  }
  for (std::size_t j = 0; j < name.size(); ++j) {
    if (ch(s + j) != name[j]) return keep(s + j);
  }
  into.push_back(replacement);
  return s + name.size();
}

}  // namespace

XmlEventReader::XmlEventReader(std::string_view text) : data_(text.substr(0, text.find('\0'))) {}

XmlEventReader::XmlEventReader(std::string head, base::ByteSource& rest)
    : window_(std::move(head)), source_(&rest), ended_(false) {
  if (const std::size_t nul = window_.find('\0'); nul != std::string::npos) {
    window_.resize(nul);
    ended_ = true;
  }
  data_ = window_;
}

XmlEventReader::Event XmlEventReader::next() {
  if (sticky_ == Event::End || sticky_ == Event::Error) return sticky_;
  auto pop = [this] {
    openNames_.resize(openStarts_.back());
    openStarts_.pop_back();
  };
  if (pendingEnd_) {  // name_ still views the start tag, which no refill has moved
    pendingEnd_ = false;
    pop();
    return Event::EndElement;
  }
  while (true) {
    const std::size_t start = pos_;
    short_ = false;
    const Step step = this->step();
    if (short_) {
      pos_ = start;
      refill();
      continue;
    }
    switch (step) {
      case Step::None:
        continue;
      case Step::Text:
        return Event::Text;
      case Step::Start:  // pendingEnd_ tells a "<a/>"
        if (openStarts_.empty()) sawElement_ = true;
        openStarts_.push_back(openNames_.size());
        openNames_.append(name_);
        return Event::StartElement;
      case Step::End:
        pop();
        return Event::EndElement;
      case Step::Finished:
        return sticky_ = Event::End;
      case Step::Failed:
        return sticky_ = Event::Error;
    }
  }
}

void XmlEventReader::refill() {
  window_.erase(0, pos_);
  base_ += pos_;
  pos_ = 0;
  const std::size_t kept = window_.size();
  // At least what is held already: a token longer than a piece is read again a number of
  // times that grows with the log of its length, not with its length.
  const std::size_t want = std::max(kPiece, kept);
  window_.resize(kept + want);
  std::size_t got = 0;
  while (got < want) {
    const std::size_t n = source_->read(window_.data() + kept + got, want - got);
    if (n == 0) {
      ended_ = true;
      break;
    }
    got += n;
  }
  window_.resize(kept + got);
  if (const std::size_t nul = window_.find('\0', kept); nul != std::string::npos) {
    window_.resize(nul);
    ended_ = true;
  }
  data_ = window_;
}

std::size_t XmlEventReader::find(std::string_view what, std::size_t i) {
  const std::size_t found = i < data_.size() ? data_.find(what, i) : std::string_view::npos;
  if (found == std::string_view::npos && !ended_) short_ = true;
  return found;
}

XmlEventReader::Step XmlEventReader::fail(const char* what, std::size_t at) {
  error_ = what;
  errorOffset_ = base_ + at;
  return Step::Failed;
}

XmlEventReader::Step XmlEventReader::step() {
  if (base_ == 0 && pos_ == 0 && at(0) == '\xEF' && at(1) == '\xBB' && at(2) == '\xBF') {
    pos_ = 3;  // a byte order mark
    return Step::None;
  }
  if (pos_ >= data_.size()) {
    if (!ended_) {
      short_ = true;
      return Step::None;
    }
    if (!openStarts_.empty()) return fail(kMismatch, pos_);
    if (!sawElement_) return fail(kNoElement, pos_);
    return Step::Finished;
  }
  return data_[pos_] == '<' ? markup() : characterData();
}

XmlEventReader::Step XmlEventReader::characterData() {
  std::size_t i = pos_;
  skipSpace(i);
  if (at(i) == '<' || at(i) == '\0') {
    pos_ = i;  // only white space: no text
    return Step::None;
  }
  const std::size_t lt = find("<", i);
  const std::size_t end = lt == std::string_view::npos ? data_.size() : lt;
  if (openStarts_.empty()) {  // outside the root element, skipped unread
    pos_ = end;
    return Step::None;
  }
  text_ = decode(pos_, end, 'p', decodedText_);
  pos_ = end;
  return Step::Text;
}

XmlEventReader::Step XmlEventReader::markup() {
  const char c = at(pos_ + 1);
  if (isStartSymbol(c)) return startTag();
  if (c == '/') return endTag();
  if (c == '?') return instruction();
  if (c == '!') return exclamation();
  return fail(kUnrecognizedTag, pos_ + 1);
}

XmlEventReader::Step XmlEventReader::startTag() {
  const std::size_t nameBegin = pos_ + 1;
  std::size_t i = nameBegin;
  while (isSymbol(at(i))) ++i;
  const std::size_t nameEnd = i;
  raw_.clear();
  bool selfClosing = false;
  if (isSpace(at(i))) {
    ++i;
    while (true) {
      skipSpace(i);
      const char c = at(i);
      if (isStartSymbol(c)) {
        RawAttribute a{i, i, 0, 0};
        while (isSymbol(at(i))) ++i;
        a.nameEnd = i;
        char next = at(i++);
        if (isSpace(next)) {
          skipSpace(i);
          next = at(i++);
        }
        if (next != '=') return fail(kBadAttribute, i - 1);
        skipSpace(i);
        const char quote = at(i);
        if (quote != '"' && quote != '\'') return fail(kBadAttribute, i);
        a.value = ++i;
        a.valueEnd = find(std::string_view(&quote, 1), i);
        if (a.valueEnd == std::string_view::npos) return fail(kBadAttribute, a.value);
        i = a.valueEnd + 1;
        raw_.push_back(a);
        // Attributes need white space between them.
        if (isStartSymbol(at(i))) return fail(kBadAttribute, i);
      } else if (c == '/') {
        if (at(i + 1) != '>') return fail(kBadStartElement, i + 1);
        i += 2;
        selfClosing = true;
        break;
      } else if (c == '>') {
        ++i;
        break;
      } else {
        return fail(kBadStartElement, i);
      }
    }
  } else if (at(i) == '/') {
    if (at(i + 1) != '>') return fail(kBadStartElement, i + 1);
    i += 2;
    selfClosing = true;
  } else if (at(i) == '>') {
    ++i;
  } else {
    return fail(kBadStartElement, i);
  }
  if (short_) return Step::None;

  name_ = data_.substr(nameBegin, nameEnd - nameBegin);
  offset_ = base_ + pos_;
  // Decoded values first, views after: the strings must not move once viewed.
  if (decodedValues_.size() < raw_.size()) decodedValues_.resize(raw_.size());
  std::vector<std::string_view> values(raw_.size());
  for (std::size_t k = 0; k < raw_.size(); ++k) {
    values[k] = decode(raw_[k].value, raw_[k].valueEnd, 'a', decodedValues_[k]);
  }
  attributes_.clear();
  for (std::size_t k = 0; k < raw_.size(); ++k) {
    attributes_.push_back({data_.substr(raw_[k].name, raw_[k].nameEnd - raw_[k].name), values[k]});
  }
  pendingEnd_ = selfClosing;
  pos_ = i;
  return Step::Start;
}

XmlEventReader::Step XmlEventReader::endTag() {
  const std::size_t nameBegin = pos_ + 2;
  std::size_t i = nameBegin;
  while (isSymbol(at(i))) ++i;
  const std::string_view name = data_.substr(nameBegin, i - nameBegin);
  if (openStarts_.empty() || name != std::string_view(openNames_).substr(openStarts_.back())) {
    return fail(kMismatch, nameBegin);
  }
  skipSpace(i);
  if (at(i) != '>') return fail(kBadEndElement, i);
  name_ = name;
  pos_ = i + 1;
  return Step::End;
}

XmlEventReader::Step XmlEventReader::instruction() {
  std::size_t i = pos_ + 2;
  if (!isStartSymbol(at(i))) return fail(kBadInstruction, i);
  while (isSymbol(at(i))) ++i;
  if (at(i) == '\0') return fail(kBadInstruction, i);
  const std::size_t close = find("?>", i);
  if (close == std::string_view::npos) return fail(kBadInstruction, data_.size());
  pos_ = close + 2;
  return Step::None;
}

XmlEventReader::Step XmlEventReader::exclamation() {
  const std::size_t i = pos_ + 2;
  if (at(i) == '-') {
    if (at(i + 1) != '-') return fail(kBadComment, i + 1);
    const std::size_t close = find("-->", i + 2);
    if (close == std::string_view::npos) return fail(kBadComment, data_.size());
    pos_ = close + 3;
    return Step::None;
  }
  if (at(i) == '[') {
    constexpr std::string_view kCdata = "CDATA[";
    for (std::size_t k = 0; k < kCdata.size(); ++k) {
      if (at(i + 1 + k) != kCdata[k]) return fail(kBadCdata, i + 1 + k);
    }
    const std::size_t begin = i + 1 + kCdata.size();
    const std::size_t close = find("]]>", begin);
    if (close == std::string_view::npos) return fail(kBadCdata, data_.size());
    text_ = decode(begin, close, 'c', decodedText_);
    pos_ = close + 3;
    return Step::Text;
  }
  constexpr std::string_view kDoctype = "DOCTYPE";
  for (std::size_t k = 0; k < kDoctype.size(); ++k) {
    if (at(i + k) != kDoctype[k]) return fail(kUnrecognizedTag, i);
  }
  if (!openStarts_.empty()) return fail(kBadDoctype, pos_);
  return doctype();
}

// The DOCTYPE is skipped with its internal subset: nested "<!" groups, quoted strings,
// processing instructions, comments and conditional sections.
XmlEventReader::Step XmlEventReader::doctype() {
  std::size_t i = pos_ + 2;
  std::size_t depth = 0;
  auto skipTo = [&](std::string_view end, std::size_t from) {
    const std::size_t close = find(end, from);
    if (close == std::string_view::npos) return false;
    i = close + end.size();
    return true;
  };
  while (true) {
    const char c = at(i);
    if (c == '\0') return fail(kBadDoctype, i);
    if (c == '<' && at(i + 1) == '!' && at(i + 2) != '-') {
      if (at(i + 2) != '[') {
        i += 2;
        ++depth;
        continue;
      }
      i += 3;
      for (std::size_t nested = 0;;) {
        const char d = at(i);
        if (d == '\0') return fail(kBadDoctype, i);
        if (d == '<' && at(i + 1) == '!' && at(i + 2) == '[') {
          i += 3;
          ++nested;
        } else if (d == ']' && at(i + 1) == ']' && at(i + 2) == '>') {
          i += 3;
          if (nested-- == 0) break;
        } else {
          ++i;
        }
      }
    } else if (c == '"' || c == '\'') {
      if (!skipTo(std::string_view(&c, 1), i + 1)) return fail(kBadDoctype, data_.size());
    } else if (c == '<') {
      if (at(i + 1) == '?') {
        if (!skipTo("?>", i + 2)) return fail(kBadDoctype, data_.size());
      } else if (at(i + 1) == '!' && at(i + 2) == '-' && at(i + 3) == '-') {
        if (!skipTo("-->", i + 4)) return fail(kBadDoctype, data_.size());
      } else {
        return fail(kBadDoctype, i);
      }
    } else if (c == '>') {
      if (depth == 0) {
        pos_ = i + 1;
        return Step::None;
      }
      --depth;
      ++i;
    } else {
      ++i;
    }
  }
}

std::string_view XmlEventReader::decode(std::size_t begin, std::size_t end, char kind,
                                        std::string& into) {
  const std::string_view raw = data_.substr(begin, end - begin);
  const bool attribute = kind == 'a';
  const std::string_view special = kind == 'c' ? "\r" : attribute ? "&\r\n\t" : "&\r";
  if (raw.find_first_of(special) == std::string_view::npos) return raw;
  into.clear();
  for (std::size_t k = 0; k < raw.size();) {
    const char c = raw[k];
    if (c == '\r') {  // CR LF and a lone CR are one line end
      into.push_back(attribute ? ' ' : '\n');
      k += k + 1 < raw.size() && raw[k + 1] == '\n' ? 2 : 1;
    } else if (attribute && (c == '\n' || c == '\t')) {
      into.push_back(' ');
      ++k;
    } else if (c == '&' && kind != 'c') {
      k = expandReference(raw, k, into);
    } else {
      into.push_back(c);
      ++k;
    }
  }
  // pugixml's texts are C strings: a reference to U+0000 ends them.
  if (const std::size_t nul = into.find('\0'); nul != std::string::npos) into.resize(nul);
  return into;
}

}  // namespace qent::text::hocr
