// DocumentReader.cpp - format detection and dispatch to the readers.
#include "layout/format/DocumentReader.h"

#include "base/QentException.h"
#include "base/Unicode.h"
#include "hocr/PugiHocrReader.h"
#include "layout/Layout.h"
#include "layout/format/CloudOcrReader.h"
#include "layout/format/JSONReader.h"
#include "layout/format/WebAnnoReader.h"

#include <stdexcept>

namespace qent::text::layout::format {

namespace {

bool isJsonSpace(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

std::string_view skipSpace(std::string_view text) {
  std::size_t i = 0;
  while (i < text.size() && isJsonSpace(text[i])) ++i;
  return text.substr(i);
}

// Collects the keys of the top-level object without building anything: strings are
// skipped with their escapes, brackets counted. Stops as soon as a deciding key is seen.
// Malformed text simply ends the scan; the real reader reports the error.
DocumentFormat classifyJson(std::string_view text) {
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
        if (key == "root") return DocumentFormat::JsonLayout;
        if (key == "fullTextAnnotation" || key == "responses") return DocumentFormat::CloudOcr;
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
  return DocumentFormat::JsonLayout;
}

static_assert(CloudOcrReader::kFormatCode == kFormatCloudOcr);
static_assert(WebAnnoReader::kFormatCode == kFormatWebAnno);

}  // namespace

std::string normaliseEncoding(std::string bytes) {
  if (bytes.size() >= 3 && bytes.compare(0, 3, "\xEF\xBB\xBF") == 0) return bytes.substr(3);
  if (bytes.size() >= 2) {
    const auto b0 = static_cast<unsigned char>(bytes[0]);
    const auto b1 = static_cast<unsigned char>(bytes[1]);
    const bool little = b0 == 0xFF && b1 == 0xFE;
    const bool big = b0 == 0xFE && b1 == 0xFF;
    if (little || big) {
      if (bytes.size() % 2 != 0) {
        throw std::runtime_error("UTF-16 input has an odd number of bytes");
      }
      std::u16string wide;
      wide.reserve(bytes.size() / 2);
      for (std::size_t i = 2; i + 1 < bytes.size(); i += 2) {
        const auto lo = static_cast<unsigned char>(bytes[little ? i : i + 1]);
        const auto hi = static_cast<unsigned char>(bytes[little ? i + 1 : i]);
        wide.push_back(static_cast<char16_t>(hi << 8 | lo));
      }
      return base::utf16ToUtf8(wide);
    }
  }
  return bytes;
}

DocumentFormat detectFormat(std::string_view utf8) {
  const std::string_view text = skipSpace(utf8);
  if (text.empty()) return DocumentFormat::PlainText;
  if (text[0] == '{') return classifyJson(text);
  if (text[0] == '<') return DocumentFormat::Hocr;
  if (text.substr(0, 19) == "#FORMAT=WebAnno TSV") return DocumentFormat::WebAnno;
  return DocumentFormat::PlainText;
}

std::unique_ptr<Document> readDocument(std::string bytes, const std::string& name,
                                       const std::filesystem::path& file) {
  std::string text = normaliseEncoding(std::move(bytes));
  switch (detectFormat(text)) {
    case DocumentFormat::JsonLayout:
      return std::make_unique<Document>(name, JSONReader().read(text));
    case DocumentFormat::CloudOcr: {
      auto layout = CloudOcrReader().read(text);
      layout->setFormat(kFormatCloudOcr);
      return std::make_unique<Document>(name, std::move(layout));
    }
    case DocumentFormat::Hocr: {
      auto layout = hocr::PugiHocrReader().read(text);
      layout->setFormat(kFormatHocr);
      return std::make_unique<Document>(name, std::move(layout));
    }
    case DocumentFormat::WebAnno: {
      auto layout = WebAnnoReader().read(text);
      layout->setFormat(kFormatWebAnno);
      return std::make_unique<Document>(name, std::move(layout));
    }
    case DocumentFormat::PlainText:
      break;
  }
  return std::make_unique<Document>(name, std::move(text), file);
}

}  // namespace qent::text::layout::format
