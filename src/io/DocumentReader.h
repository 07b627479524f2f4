// DocumentReader.h - reads a document of any known format, told apart by its bytes, not by
// its file name.
//
// A UTF-8 BOM is stripped and UTF-16 (marked by its BOM) converted to UTF-8; leading white
// space is skipped; then the format table's content tests choose the reader. Text that no
// format claims is a plain-text document.
#pragma once

#include "io/ReadOptions.h"
#include "layout/format/Document.h"

#include <filesystem>
#include <memory>
#include <string>

namespace qent::io {

// The text as UTF-8 without BOM: UTF-16 input (marked by its BOM) is converted.
std::string normaliseEncoding(std::string bytes);

// Reads one document. `name` names it in messages; `file` is its path when it came from a
// file (kept by plain-text documents). Errors of the readers pass through unchanged; text
// that is empty or only white space is the runtime error "No document loaded: <name> is
// empty".
std::unique_ptr<text::layout::format::Document> readDocument(
    std::string bytes, const std::string& name, const std::filesystem::path& file,
    const ReadOptions& options = {});

// The same for a file. A large file in a format whose reader takes it piece by piece (a JSON
// layout, hOCR) is never held whole, so loading it costs little more than its tree.
std::unique_ptr<text::layout::format::Document> readDocumentFile(
    const std::filesystem::path& file, const std::string& name, const ReadOptions& options = {});

}  // namespace qent::io
