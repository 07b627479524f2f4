// InputLoader.cpp - reading the job's input documents from memory and files.
#include "job/InputLoader.h"

#include "base/FileIo.h"
#include "base/NumberConversion.h"
#include "base/Unicode.h"
#include "base/platform/platform.h"
#include "io/DocumentReader.h"

#include <algorithm>
#include <stdexcept>

namespace qent::job {

namespace fs = std::filesystem;
using io::readDocument;

std::vector<std::u16string> splitItems(const std::u16string& value) {
  std::vector<std::u16string> items;
  std::size_t start = 0;
  while (start <= value.size()) {
    std::size_t end = value.find(u';', start);
    if (end == std::u16string::npos) end = value.size();
    if (end > start) items.push_back(value.substr(start, end - start));
    start = end + 1;
  }
  return items;
}

namespace {

// One "ADDRESS:SIZE" item; both decimal, both non-zero.
std::pair<std::uint64_t, std::uint64_t> parseMemoryItem(const std::string& item,
                                                        std::size_t index) {
  const std::string where = "InputMemoryAddress item " + std::to_string(index) + " \"" + item + "\"";
  const std::size_t colon = item.find(':');
  auto isDecimal = [](std::string_view text) {
    return !text.empty() && std::all_of(text.begin(), text.end(),
                                        [](char c) { return c >= '0' && c <= '9'; });
  };
  if (colon == std::string::npos || !isDecimal(std::string_view(item).substr(0, colon)) ||
      !isDecimal(std::string_view(item).substr(colon + 1))) {
    throw std::runtime_error(where + " is not of the form ADDRESS:SIZE in decimal");
  }
  std::uint64_t address = 0, size = 0;
  try {
    address = base::parseUnsigned64(item.substr(0, colon));
    size = base::parseUnsigned64(item.substr(colon + 1));
  } catch (const std::out_of_range&) {
    throw std::runtime_error(where + " has a number beyond 64 bits");
  }
  if (address == 0) throw std::runtime_error(where + " has the address 0");
  if (size == 0) throw std::runtime_error(where + " has the size 0");
  return {address, size};
}

// "d;letter.txt" arrives as the items "d" and "letter.txt": a single letter followed by
// another item is the text code of the documents that item names, not a file.
bool isTextCode(const std::u16string& item) {
  return item.size() == 1 &&
         ((item[0] >= u'a' && item[0] <= u'z') || (item[0] >= u'A' && item[0] <= u'Z'));
}

}  // namespace

DocumentList InputLoader::loadMemory(const std::u16string& addresses) const {
  DocumentList documents;
  std::size_t index = 0;
  for (const std::u16string& item : splitItems(addresses)) {
    ++index;
    const auto [address, size] = parseMemoryItem(base::utf16ToUtf8Lenient(item), index);
    if (size > base::kMaxFileBytes) {
      std::string message = "InputMemoryAddress item " + std::to_string(index) + " has ";
      message += std::to_string(size) + " bytes, more than the " +
                 std::to_string(base::kMaxFileBytes) + " a document may have";
      throw std::runtime_error(message);
    }
    std::string bytes(reinterpret_cast<const char*>(static_cast<std::uintptr_t>(address)),
                      static_cast<std::size_t>(size));
    const std::string name = "memory:" + std::to_string(index);
    documents.push_back(readDocument(std::move(bytes), name, {}, options_));
  }
  return documents;
}

std::vector<fs::path> InputLoader::expand(const std::u16string& item, bool pattern) const {
  const fs::path path = base::resolveAgainst(workspace_, base::platform::pathFromUtf8(
                                                             base::utf16ToUtf8(item)));
  if (!pattern) return {path};
  const fs::path directory = path.has_parent_path() ? path.parent_path() : fs::path(".");
  const std::u16string filePattern =
      base::utf8ToUtf16(base::platform::pathToUtf8(path.filename()));
  std::error_code ec;
  fs::directory_iterator it(directory, ec);
  if (ec) {
    throw std::runtime_error("No document loaded: cannot list the directory " +
                             base::platform::pathToUtf8(directory) + " of the pattern " +
                             base::utf16ToUtf8Lenient(item) + ": " + ec.message());
  }
  std::vector<fs::path> matches;
  for (const fs::directory_entry& entry : it) {
    if (!entry.is_regular_file(ec)) continue;
    const std::u16string name =
        base::utf8ToUtf16Lenient(base::platform::pathToUtf8(entry.path().filename()));
    if (base::platform::matchesPattern(name, filePattern)) matches.push_back(entry.path());
  }
  if (matches.empty()) {
    throw std::runtime_error("No document loaded: no file matches the pattern " +
                             base::platform::pathToUtf8(path));
  }
  std::sort(matches.begin(), matches.end());
  return matches;
}

DocumentList InputLoader::loadFiles(const std::u16string& items, bool alwaysPattern) const {
  DocumentList documents;
  const std::vector<std::u16string> split = splitItems(items);
  char16_t textCode = 0;
  for (std::size_t i = 0; i < split.size(); ++i) {
    const std::u16string& item = split[i];
    if (isTextCode(item) && i + 1 < split.size()) {
      textCode = item.front();
      continue;
    }
    const bool pattern = alwaysPattern || item.find(u'*') != std::u16string::npos;
    for (const fs::path& file : expand(item, pattern)) {
      documents.push_back(io::readDocumentFile(file, base::platform::pathToUtf8(file), options_));
      documents.back()->setTextCode(textCode);
    }
    textCode = 0;
  }
  if (documents.empty()) throw std::runtime_error("No document loaded");
  return documents;
}

}  // namespace qent::job
