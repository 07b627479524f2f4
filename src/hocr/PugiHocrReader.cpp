// PugiHocrReader.cpp - the input side of the hOCR reader: the format check, the XML events,
// and in the tolerant dialect the HTML parse of documents that are not XML.
#include "hocr/PugiHocrReader.h"

#include "base/QentException.h"
#include "base/TraceLog.h"
#include "base/Unicode.h"
#include "hocr/GumboMarkup.h"
#include "hocr/HocrTreeBuilder.h"
#include "hocr/XmlEventReader.h"
#include "layout/Layout.h"
#include "layout/Node.h"

#include <algorithm>
#include <vector>

namespace qent::text::hocr {

namespace {

[[noreturn]] void fail(const std::string& message) {
  throw base::QentException(base::kErrorHocr, message);
}

bool containsHtmlTag(std::string_view text, bool anyCase) {
  if (!anyCase) return text.find("<html") != std::string_view::npos;
  for (std::size_t at = text.find('<'); at != std::string_view::npos; at = text.find('<', at + 1)) {
    if (base::equalsIgnoreAsciiCase(text.substr(at + 1, 4), "html")) return true;
  }
  return false;
}

// The rest of a streamed document as the XML reader takes it, watched for the "<html" that
// makes a text hOCR (anywhere in it, also after where the XML ends or breaks), and kept
// whole for the tolerant dialect's HTML parse.
class WatchedSource final : public base::ByteSource {
public:
  WatchedSource(base::ByteSource& inner, bool anyCase, bool keep)
      : inner_(inner), anyCase_(anyCase), keep_(keep) {}

  std::size_t read(char* buffer, std::size_t size) override {
    const std::size_t n = inner_.read(buffer, size);
    watch(std::string_view(buffer, n));
    return n;
  }
  void watch(std::string_view piece) {
    if (keep_) kept_.append(piece);
    if (found_ || piece.empty()) return;
    // A tag across two pieces starts in the last four bytes before this one.
    const std::string seam = tail_ + std::string(piece.substr(0, 4));
    found_ = containsHtmlTag(seam, anyCase_) || containsHtmlTag(piece, anyCase_);
    tail_.append(piece.substr(piece.size() - std::min<std::size_t>(piece.size(), 4)));
    if (tail_.size() > 4) tail_.erase(0, tail_.size() - 4);
  }
  void drain() {
    std::vector<char> buffer(1 << 16);
    while (read(buffer.data(), buffer.size()) > 0) {
    }
  }
  bool found() const { return found_; }
  std::string& kept() { return kept_; }

private:
  base::ByteSource& inner_;
  const bool anyCase_;
  const bool keep_;
  bool found_ = false;
  std::string tail_;
  std::string kept_;
};

// Feeds the builder until the document ends; false when the XML breaks.
bool feed(XmlEventReader& xml, HocrTreeBuilder& builder) {
  while (true) {
    switch (xml.next()) {
      case XmlEventReader::Event::StartElement:
        builder.startElement(xml.name(), xml.attributes(), static_cast<std::int64_t>(xml.offset()));
        break;
      case XmlEventReader::Event::Text:
        builder.text(xml.text());
        break;
      case XmlEventReader::Event::EndElement:
        builder.endElement();
        break;
      case XmlEventReader::Event::End:
        return true;
      case XmlEventReader::Event::Error:
        base::TraceLog::writeFormatted(base::kTraceError, "hOCR: %s at offset %llu", xml.error(),
                                       static_cast<unsigned long long>(xml.errorOffset()));
        return false;
    }
  }
}

// The HTML parser's tree, walked as the XML events would report it: the first text of an
// element right after its start.
std::unique_ptr<layout::Layout> readHtml(std::string_view utf8, bool tolerant) {
  // Many engines write HTML 4 (unclosed meta, unquoted attributes, a bare "&"), which is
  // not XML; the HTML parsing rules give the tree a browser would show.
  base::TraceLog::write("hOCR: reading the document as HTML", base::kTraceWarning);
  const GumboMarkup tree(utf8);
  HocrTreeBuilder builder(tolerant);
  std::vector<MarkupAttribute> attributes;
  auto open = [&](MarkupTree::Element element) {
    tree.attributes(element, attributes);
    builder.startElement(tree.name(element), attributes, tree.offset(element));
    if (const std::string_view text = tree.directText(element); !text.empty()) builder.text(text);
  };
  if (const MarkupTree::Element html = tree.html(); html != nullptr) {
    open(html);
    std::vector<MarkupTree::Element> next{tree.firstChild(html)};  // per open element
    while (!next.empty()) {
      const MarkupTree::Element element = next.back();
      if (element == nullptr) {
        next.pop_back();
        builder.endElement();
        continue;
      }
      next.back() = tree.nextSibling(element);
      open(element);
      next.push_back(tree.firstChild(element));
    }
  }
  return builder.finish();
}

}  // namespace

std::unique_ptr<layout::Layout> PugiHocrReader::read(std::string_view utf8) {
  const bool tolerant = dialect_ == Dialect::Tolerant;
  if (utf8.empty() || !containsHtmlTag(utf8, tolerant)) fail("No HOCR file found");
  XmlEventReader xml(utf8);
  HocrTreeBuilder builder(tolerant);
  if (feed(xml, builder)) return builder.finish();
  if (!tolerant) fail("HOCR parsing error");
  return readHtml(utf8, tolerant);
}

std::unique_ptr<layout::Layout> PugiHocrReader::readStream(std::string head,
                                                           base::ByteSource& rest) {
  const bool tolerant = dialect_ == Dialect::Tolerant;
  WatchedSource source(rest, tolerant, tolerant);
  source.watch(head);
  XmlEventReader xml(std::move(head), source);
  HocrTreeBuilder builder(tolerant);
  const bool parsed = feed(xml, builder);
  source.drain();  // the XML may end before the text does
  if (!source.found()) fail("No HOCR file found");
  if (parsed) return builder.finish();
  if (!tolerant) fail("HOCR parsing error");
  return readHtml(source.kept(), tolerant);
}

}  // namespace qent::text::hocr
