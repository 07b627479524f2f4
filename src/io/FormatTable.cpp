// FormatTable.cpp - the formats, their content tests, readers and writers.
#include "io/FormatTable.h"

#include "base/Unicode.h"
#include "hocr/HocrWriter.h"
#include "hocr/PugiHocrReader.h"
#include "layout/Layout.h"
#include "layout/LayoutFormat.h"
#include "layout/format/CloudOcrReader.h"
#include "layout/format/JSONReader.h"
#include "layout/format/JSONWriter.h"
#include "layout/format/PlainTextWriter.h"
#include "layout/format/WebAnnoReader.h"
#include "layout/format/WebAnnoWriter.h"
#include "layout/format/alto/AltoReader.h"
#include "layout/format/alto/AltoWriter.h"
#include "layout/format/page/PageXmlReader.h"
#include "layout/format/page/PageXmlWriter.h"
#include "layout/format/xml/XmlInput.h"
#include "layout/format/html/HtmlWriter.h"

#include <stdexcept>
#include <string>

namespace qent::io {

namespace {

namespace layout = text::layout;
namespace format = text::layout::format;
using LayoutPointer = std::unique_ptr<layout::Layout>;

// What the top-level keys of a JSON object say about it. Strings are skipped with their
// escapes and brackets counted, nothing is built, and the scan stops at the first deciding
// key. Malformed text simply ends the scan; the real reader reports the error.
enum class JsonKind { Layout, CloudOcr, Undecided };

JsonKind classifyJson(std::string_view text) {
  int depth = 0;
  bool expectKey = false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (c == '"') {
      const std::size_t start = i + 1;
      for (++i; i < text.size() && text[i] != '"'; ++i) {
        if (text[i] == '\\') ++i;
      }
      if (i >= text.size()) break;
      if (depth == 1 && expectKey) {
        const std::string_view key = text.substr(start, i - start);
        if (key == "root") return JsonKind::Layout;
        if (key == "fullTextAnnotation" || key == "responses") return JsonKind::CloudOcr;
        expectKey = false;
      }
    } else if (c == '{' || c == '[') {
      ++depth;
      expectKey = depth == 1;
    } else if (c == '}' || c == ']') {
      if (--depth <= 0) break;
    } else if (c == ',' && depth == 1) {
      expectKey = true;
    }
  }
  return JsonKind::Undecided;
}

bool isCloudOcr(std::string_view text) {
  return text.starts_with('{') && classifyJson(text) == JsonKind::CloudOcr;
}
// Any other JSON object goes to the layout reader, which names what is wrong with it.
bool isJsonLayout(std::string_view text) { return text.starts_with('{'); }
bool isMarkup(std::string_view text) { return text.starts_with('<'); }
bool isWebAnno(std::string_view text) { return text.starts_with("#FORMAT=WebAnno TSV"); }
// By the root element alone: its namespace is the reader's to check, so that an ALTO file
// in an unknown namespace is told so instead of being read as hOCR.
bool isAlto(std::string_view text) { return format::xml::rootElementName(text) == "alto"; }
bool isPageXml(std::string_view text) { return format::xml::rootElementName(text) == "PcGts"; }

LayoutPointer readJson(std::string& utf8, const ReadOptions&) {
  return format::JSONReader().readInPlace(utf8);
}
// Streamed only when a top-level "root" comes before any key that would make it cloud-OCR.
bool jsonLayoutHeadDecides(std::string_view head) {
  return classifyJson(head) == JsonKind::Layout;
}
LayoutPointer readJsonStream(std::string head, base::ByteSource& rest, const ReadOptions&) {
  return format::JSONReader().readStream(std::move(head), rest);
}
LayoutPointer readCloudOcr(std::string& utf8, const ReadOptions&) {
  return format::CloudOcrReader().read(utf8);
}
text::hocr::PugiHocrReader hocrReader(const ReadOptions& options) {
  using Reader = text::hocr::PugiHocrReader;
  return Reader(options.tolerantHocr ? Reader::Dialect::Tolerant : Reader::Dialect::Strict);
}
LayoutPointer readHocr(std::string& utf8, const ReadOptions& options) {
  return hocrReader(options).read(utf8);
}
// Streamed once the beginning holds the whole name of the root element: then it is neither
// ALTO nor PAGE, whatever follows.
bool hocrHeadDecides(std::string_view head) {
  const std::string_view root = format::xml::rootElementName(head);
  return !root.empty() && root.data() + root.size() < head.data() + head.size();
}
LayoutPointer readHocrStream(std::string head, base::ByteSource& rest, const ReadOptions& options) {
  return hocrReader(options).readStream(std::move(head), rest);
}
LayoutPointer readAlto(std::string& utf8, const ReadOptions&) {
  return format::AltoReader().readInPlace(utf8);
}
LayoutPointer readPageXml(std::string& utf8, const ReadOptions&) {
  return format::PageXmlReader().readInPlace(utf8);
}
LayoutPointer readWebAnno(std::string& utf8, const ReadOptions&) {
  return format::WebAnnoReader().read(utf8);
}

void writeJson(const layout::Layout& layout, base::Sink& sink, const WriteOptions&) {
  format::JSONWriter().write(layout, sink);
}
void writeHocr(const layout::Layout& layout, base::Sink& sink, const WriteOptions&) {
  text::hocr::HocrWriter().write(layout, sink);
}
void writeWebAnno(const layout::Layout& layout, base::Sink& sink, const WriteOptions& options) {
  using Writer = format::WebAnnoWriter;
  sink.write(Writer(options.webAnnoUtf16Offsets ? Writer::Offsets::Utf16CodeUnits
                                                : Writer::Offsets::Utf8Bytes)
                 .write(layout));
}
void writeAlto(const layout::Layout& layout, base::Sink& sink, const WriteOptions&) {
  format::AltoWriter().write(layout, sink);
}
void writePageXml(const layout::Layout& layout, base::Sink& sink, const WriteOptions&) {
  format::PageXmlWriter().write(layout, sink);
}
void writeHtml(const layout::Layout& layout, base::Sink& sink, const WriteOptions&) {
  format::html::HtmlWriter().write(layout, sink);
}
void writePlainText(const layout::Layout& layout, base::Sink& sink, const WriteOptions&) {
  sink.write(base::utf16ToUtf8(format::PlainTextWriter().write(layout)));
}

// In the order of OutputFilename.Format's documentation; content tests run in this order,
// so the XML layout formats, told by their root element, come before hOCR, which takes any
// markup.
constexpr Format kFormats[] = {
    {layout::kFormatAlto, "alto", "ALTO", "alto.xml", isAlto, readAlto, writeAlto, true, nullptr,
     nullptr},
    {layout::kFormatPageXml, "page", "PAGE", "page.xml", isPageXml, readPageXml, writePageXml,
     true, nullptr, nullptr},
    {layout::kFormatHocr, "hocr", "hOCR", "hocr", isMarkup, readHocr, writeHocr, false,
     hocrHeadDecides, readHocrStream},
    {layout::kFormatCloudOcr, "", "cloud-OCR JSON", "json", isCloudOcr, readCloudOcr, nullptr,
     false, nullptr, nullptr},
    {layout::kFormatJsonLayout, "json", "JSON layout", "json", isJsonLayout, readJson, writeJson,
     false, jsonLayoutHeadDecides, readJsonStream},
    {layout::kFormatWebAnno, "webanno", "WebAnno TSV", "webAnno", isWebAnno, readWebAnno,
     writeWebAnno, false, nullptr, nullptr},
    {layout::kFormatNone, "txtutf8", "Plain text", "txt", nullptr, nullptr, writePlainText,
     false, nullptr, nullptr},
    {layout::kFormatNone, "html", "HTML", "html", nullptr, nullptr, writeHtml, false, nullptr,
     nullptr},
};

}  // namespace

namespace {

std::string_view skipSpace(std::string_view utf8) {
  const std::size_t start = utf8.find_first_not_of(" \t\n\r");
  return start == std::string_view::npos ? "" : utf8.substr(start);
}

}  // namespace

const Format* formatOfContent(std::string_view utf8) {
  const std::string_view text = skipSpace(utf8);
  for (const Format& format : kFormats) {
    if (format.sniff != nullptr && format.sniff(text)) return &format;
  }
  return nullptr;
}

const Format* streamingFormatOf(std::string_view head) {
  const Format* format = formatOfContent(head);
  if (format == nullptr || format->headDecides == nullptr) return nullptr;
  return format->headDecides(skipSpace(head)) ? format : nullptr;
}

const Format& formatNamed(std::string_view name, bool xmlLayoutFormats) {
  for (const Format& format : kFormats) {
    if (format.write == nullptr || (format.optIn && !xmlLayoutFormats)) continue;
    if (base::equalsIgnoreAsciiCase(name, format.name)) return format;
  }
  throw std::runtime_error("unsupported output format specified");
}

void writeLayout(const Format& format, const text::layout::Layout& layout, base::Sink& sink,
                 const WriteOptions& options) {
  if (format.write == nullptr) {
    throw std::logic_error(std::string(format.title) + " has no writer");
  }
  format.write(layout, sink, options);
}

}  // namespace qent::io
