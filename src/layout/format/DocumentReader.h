// DocumentReader.h - tells the input formats apart by their bytes, not by file names, and
// hands each document to its reader.
//
//   UTF-8 BOM stripped; UTF-16 (by BOM) converted to UTF-8; leading white space skipped.
//   "{"  -> JSON: a top-level "root" member is a JSON layout; "fullTextAnnotation" or
//           "responses" is a cloud-OCR answer; anything else goes to the JSON layout reader,
//           which reports its own error.
//   "<"  -> hOCR.
//   "#FORMAT=WebAnno TSV" on the first line -> WebAnno TSV.
//   anything else -> a plain-text document.
#pragma once

#include "layout/format/Document.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

namespace qent::text::layout::format {

enum class DocumentFormat { JsonLayout, CloudOcr, Hocr, WebAnno, PlainText };

// Format codes stored in a read Layout.
enum LayoutFormatCode : std::uint32_t {
  kFormatHocr = 1,
  kFormatWebAnno = 2,
  kFormatCloudOcr = 3,
  kFormatJsonLayout = 4,
};

// The text as UTF-8 without BOM: UTF-16 input (marked by its BOM) is converted.
std::string normaliseEncoding(std::string bytes);

DocumentFormat detectFormat(std::string_view utf8);

// Reads one document. `name` names it in messages; `file` is its path when it came from a
// file (kept by plain-text documents). Errors of the readers pass through unchanged.
std::unique_ptr<Document> readDocument(std::string bytes, const std::string& name,
                                       const std::filesystem::path& file);

}  // namespace qent::text::layout::format
