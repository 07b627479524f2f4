// WordListReader.cpp - reading word lists line by line.
#include "wordrecognizer/WordListReader.h"

#include "base/QentException.h"
#include "base/Unicode.h"
#include "wordrecognizer/Characters.h"

namespace qent::text::wordrecognizer {

std::vector<std::u16string> parseWordList(std::string_view bytes, const std::string& name) {
  if (bytes.starts_with("\xEF\xBB\xBF")) bytes.remove_prefix(3);
  std::vector<std::u16string> words;
  std::size_t lineNumber = 0;
  while (!bytes.empty()) {
    ++lineNumber;
    const std::size_t end = bytes.find('\n');
    std::string_view line = bytes.substr(0, end);
    bytes.remove_prefix(end == std::string_view::npos ? bytes.size() : end + 1);
    const std::size_t first = line.find_first_not_of(" \t\r");
    if (first == std::string_view::npos || line[first] == '#') continue;
    line = line.substr(first, line.find_last_not_of(" \t\r") - first + 1);
    if (base::findInvalidUtf8(line) != std::string_view::npos) {
      throw base::QentException(base::kErrorOption, name + ": line " + std::to_string(lineNumber) +
                                                        " is not valid UTF-8");
    }
    words.push_back(base::utf8ToUtf16(line));
  }
  return words;
}

std::vector<std::u16string> parseStopWords(std::string_view bytes, const std::string& name) {
  std::vector<std::u16string> words = parseWordList(bytes, name);
  for (std::u16string& word : words) word = toLower(word);
  return words;
}

}  // namespace qent::text::wordrecognizer
