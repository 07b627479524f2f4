// InputLoader.h - turns the input properties into loaded documents.
//
// InputMemoryAddress: "ADDRESS:SIZE" items in decimal joined by ";", each one document's
//   bytes in the caller's memory, named "memory:1", "memory:2", ... in messages.
// InputFilename / InputFilenamePattern: file names joined by ";"; relative names are
//   resolved against the workspace; an InputFilename item containing "*" (and every
//   InputFilenamePattern item) is a pattern over its directory, whose matching files are
//   loaded in sorted order. An empty file or a pattern that matches nothing is an error.
//   An item of one letter followed by another item ("d;brief.txt") is not a file: the
//   letter is the text code of that item's documents (a file named "d" is "./d").
#pragma once

#include "io/ReadOptions.h"
#include "layout/format/Document.h"

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace qent::job {

using DocumentList = std::vector<std::unique_ptr<text::layout::format::Document>>;

class InputLoader {
public:
  // `options` go to the reader of every document loaded.
  explicit InputLoader(std::filesystem::path workspace, io::ReadOptions options = {})
      : workspace_(std::move(workspace)), options_(options) {}

  DocumentList loadMemory(const std::u16string& addresses) const;
  // `alwaysPattern` treats every item as a pattern (InputFilenamePattern).
  DocumentList loadFiles(const std::u16string& items, bool alwaysPattern) const;

  // The files an item names, after pattern expansion (sorted, deterministic).
  std::vector<std::filesystem::path> expand(const std::u16string& item, bool pattern) const;

private:
  std::filesystem::path workspace_;
  io::ReadOptions options_;
};

std::vector<std::u16string> splitItems(const std::u16string& value);

}  // namespace qent::job
