// DigramTable.h - how plausible each pair of adjacent letters is in a language, 0 to 9.
//
// File layout (UTF-8): lines starting with "#" and blank lines are skipped. The first other
// line is the alphabet, N characters without separators. Exactly N rows follow, row i for
// pairs whose first character is alphabet[i], each with N digits (blanks between them are
// ignored), digit j for the second character alphabet[j]. Lookups lower-case both
// characters; a pair outside the alphabet scores 0.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace qent::text::wordrecognizer {

class DigramTable {
public:
  DigramTable() = default;
  // Parses a table's bytes; errors are QentExceptions whose message is `name` followed by
  // ": digram score table has no data" and the other fixed texts of the format.
  static DigramTable parse(std::string_view bytes, const std::string& name);
  // Reads and parses a file; a missing file is "<name>: digram score table not found".
  static DigramTable load(const std::filesystem::path& path);

  bool empty() const { return size_ == 0; }
  std::uint32_t score(char16_t first, char16_t second) const;

private:
  int indexOf(char16_t c) const;

  std::size_t size_ = 0;
  std::vector<std::uint8_t> scores_;     // size_ x size_, row = first character
  std::vector<std::int16_t> latinIndex_;  // direct index for U+0000..U+024F, -1 when absent
  std::unordered_map<char16_t, int> otherIndex_;
};

}  // namespace qent::text::wordrecognizer
