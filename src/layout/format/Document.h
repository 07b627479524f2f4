// Document.h - one loaded input of a job: a layout tree, or a plain-text file that only
// the operations accepting text read.
#pragma once

#include "layout/Layout.h"
#include "layout/Nodes.h"

#include <filesystem>
#include <memory>
#include <string>

namespace qent::text::layout::format {

class Document {
public:
  enum class Kind { Layout, PlainText };

  // A layout document; takes the layout over.
  Document(std::string name, std::unique_ptr<layout::Layout> layout);
  // A plain-text document: its bytes (UTF-8) and, when it came from a file, the path.
  Document(std::string name, std::string text, std::filesystem::path file);
  ~Document();
  Document(const Document&) = delete;
  Document& operator=(const Document&) = delete;

  Kind kind() const { return layout_ ? Kind::Layout : Kind::PlainText; }
  // Where the document came from: its path, or "memory:N" for the N-th memory block.
  const std::string& name() const { return name_; }
  // Null for a plain-text document.
  layout::Layout* layout() const { return layout_.get(); }
  std::unique_ptr<layout::Layout> takeLayout() { return std::move(layout_); }
  const std::string& text() const { return text_; }
  const std::filesystem::path& file() const { return file_; }
  // The letter a caller put before a text input ("d" in "d;letter.txt"), telling the
  // operations that read text its language; 0 when none was given.
  char16_t textCode() const { return textCode_; }
  void setTextCode(char16_t code) { textCode_ = code; }

private:
  std::string name_;
  std::unique_ptr<layout::Layout> layout_;
  std::string text_;
  std::filesystem::path file_;
  char16_t textCode_ = 0;
};

}  // namespace qent::text::layout::format
