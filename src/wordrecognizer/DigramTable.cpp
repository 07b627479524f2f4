// DigramTable.cpp - reading digram score tables.
#include "wordrecognizer/DigramTable.h"

#include "base/FileIo.h"
#include "base/QentException.h"
#include "base/Unicode.h"
#include "base/platform/platform.h"
#include "wordrecognizer/Characters.h"

namespace qent::text::wordrecognizer {

namespace {

constexpr char16_t kLatinEnd = 0x250;

[[noreturn]] void fail(const std::string& name, std::string_view what) {
  throw base::QentException(base::kErrorOption, name + ": " + std::string(what));
}

// The lines that carry data: comments and blank lines dropped, CR LF accepted.
std::vector<std::string_view> dataLines(std::string_view bytes) {
  if (bytes.starts_with("\xEF\xBB\xBF")) bytes.remove_prefix(3);
  std::vector<std::string_view> lines;
  while (!bytes.empty()) {
    std::size_t end = bytes.find('\n');
    std::string_view line = bytes.substr(0, end);
    bytes.remove_prefix(end == std::string_view::npos ? bytes.size() : end + 1);
    while (!line.empty() && (line.back() == '\r' || line.back() == ' ' || line.back() == '\t')) {
      line.remove_suffix(1);
    }
    const std::size_t first = line.find_first_not_of(" \t");
    if (first == std::string_view::npos || line[first] == '#') continue;
    lines.push_back(line.substr(first));
  }
  return lines;
}

}  // namespace

DigramTable DigramTable::parse(std::string_view bytes, const std::string& name) {
  const std::vector<std::string_view> lines = dataLines(bytes);
  if (lines.empty()) fail(name, "digram score table has no data");
  if (base::findInvalidUtf8(lines.front()) != std::string::npos) {
    fail(name, "digram score table alphabet is not valid UTF-8");
  }
  const std::u16string alphabet = base::utf8ToUtf16(lines.front());
  DigramTable table;
  table.latinIndex_.assign(kLatinEnd, -1);
  for (char16_t c : alphabet) {
    const char16_t lower = toLower(c);
    if (table.indexOf(lower) >= 0) {
      fail(name, "digram score table alphabet names the character '" +
                     base::utf16ToUtf8Lenient(std::u16string(1, c)) + "' twice");
    }
    const int index = static_cast<int>(table.size_++);
    if (lower < kLatinEnd) {
      table.latinIndex_[lower] = static_cast<std::int16_t>(index);
    } else {
      table.otherIndex_.emplace(lower, index);
    }
  }
  const std::size_t n = table.size_;
  if (lines.size() - 1 != n) fail(name, "digram score table has inconsistent number of lines");
  // Every row holds n digits, so the table is never larger than its input.
  table.scores_.reserve(n * n);
  for (std::size_t row = 1; row < lines.size(); ++row) {
    std::size_t values = 0;
    for (char c : lines[row]) {
      if (c == ' ' || c == '\t') continue;
      if (c < '0' || c > '9') fail(name, "invalid digram score value (expectes '0' .. '9')");
      if (++values > n) break;
      table.scores_.push_back(static_cast<std::uint8_t>(c - '0'));
    }
    if (values != n) fail(name, "digram score table has inconsistent number of values");
  }
  return table;
}

DigramTable DigramTable::load(const std::filesystem::path& path) {
  const std::string name = base::platform::pathToUtf8(path);
  std::error_code ec;
  if (!std::filesystem::is_regular_file(path, ec)) fail(name, "digram score table not found");
  return parse(base::readFile(path), name);
}

int DigramTable::indexOf(char16_t c) const {
  if (c < kLatinEnd) return latinIndex_.empty() ? -1 : latinIndex_[c];
  const auto found = otherIndex_.find(c);
  return found == otherIndex_.end() ? -1 : found->second;
}

std::uint32_t DigramTable::score(char16_t first, char16_t second) const {
  const int row = indexOf(toLower(first));
  const int column = indexOf(toLower(second));
  if (row < 0 || column < 0) return 0;
  return scores_[static_cast<std::size_t>(row) * size_ + static_cast<std::size_t>(column)];
}

}  // namespace qent::text::wordrecognizer
