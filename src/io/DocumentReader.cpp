// DocumentReader.cpp - encoding normalisation and the choice of reader.
#include "io/DocumentReader.h"

#include "base/FileIo.h"
#include "base/Unicode.h"
#include "io/FormatTable.h"
#include "layout/Layout.h"

#include <stdexcept>

namespace qent::io {

using text::layout::format::Document;

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

std::unique_ptr<Document> readDocument(std::string bytes, const std::string& name,
                                       const std::filesystem::path& file,
                                       const ReadOptions& options) {
  if (bytes.find_first_not_of(" \t\r\n") == std::string::npos) {
    throw std::runtime_error("No document loaded: " + name + " is empty");
  }
  std::string text = normaliseEncoding(std::move(bytes));
  if (const Format* format = formatOfContent(text)) {
    return std::make_unique<Document>(name, format->read(text, options));
  }
  return std::make_unique<Document>(name, std::move(text), file);
}

std::unique_ptr<Document> readDocumentFile(const std::filesystem::path& file,
                                           const std::string& name, const ReadOptions& options) {
  // Enough to decide the format of any layout whose first top-level key is "root", and of
  // any markup whose root element starts early.
  constexpr std::size_t kHead = 1 << 16;
  base::FileReader reader(file);
  std::string head;
  reader.readInto(head, kHead);
  if (!reader.atEnd()) {
    if (std::string_view(head).substr(0, 3) == "\xEF\xBB\xBF") head.erase(0, 3);
    if (const Format* format = streamingFormatOf(head)) {
      return std::make_unique<Document>(name, format->readStream(std::move(head), reader, options));
    }
    reader.readInto(head);
  }
  return readDocument(std::move(head), name, file, options);
}

}  // namespace qent::io
