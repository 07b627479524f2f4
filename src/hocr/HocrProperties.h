// HocrProperties.h - the hOCR property grammar shared by the reader and the writer: the
// title/style property map, the numbers, colours and version lists inside it.
//
// Everything here works on UTF-8 views into the parsed document, so a title is split without
// copying; every delimiter of the grammar is ASCII, so the result is the same as splitting the
// wide text. "White space" is ASCII white space (blank, tab, line feed, vertical tab, form
// feed, carriage return) throughout: it is what the number conversions skip, too.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qent::text::hocr {

bool isHocrSpace(char c);
std::string_view trimHocrSpace(std::string_view text);
// True when the text starts with one of the hOCR class prefixes "ocr_" or "ocrx_".
bool hasHocrPrefix(std::string_view text);

// The transient property map of one element: the entries of its `title` (key and value
// split at the first blank) and of its `style` (split at the first ":"), keyed uniquely.
//   - Both are split at ";" into pieces trimmed of white space; empty pieces are kept (an
//     empty piece is an entry with an empty key and value).
//   - Within one attribute a repeated key takes the last value.
//   - A style entry is added only when the title has no entry of that key.
// take() hands a value out once, so a handler converts each property at most once; the
// entries stay listed (with their flag) for the copy into the node's attributes.
class PropertyMap {
public:
  struct Entry {
    std::string_view key;
    std::string_view value;
  };

  void addTitle(std::string_view title) { add(title, ' ', true); }
  void addStyle(std::string_view style) { add(style, ':', false); }
  void clear() {
    entries_.clear();
    lengths_ = 0;
  }

  bool contains(std::string_view key) const;
  // The value, removed from the map; empty when the key is missing or was taken already.
  // An empty value means that the property is not given.
  std::string_view take(std::string_view key);
  // All entries sorted by key, taken ones included.
  const std::vector<Entry>& entries() const { return entries_; }

private:
  void add(std::string_view text, char delimiter, bool replace);
  std::size_t find(std::string_view key) const;

  std::vector<Entry> entries_;            // sorted by key, unique keys
  std::uint64_t lengths_ = 0;             // bit n set: some key has length n (63: 63 or more)
  std::vector<bool> taken_;               // parallel to entries_
  std::vector<std::pair<Entry, std::size_t>> scratch_;  // entry and its position in the text
  std::vector<Entry> merged_;
};

// The pieces of a value split at runs of white space (the "\s+" separator); a leading run
// yields an empty first piece, a trailing run no piece, as a regular-expression split does.
std::vector<std::string_view> splitAtSpace(std::string_view value);

// Four integers read as successive stream extractions into variables that start at 0: white
// space is skipped, an optional sign and decimal digits are read, reading stops at the first
// other character; a field without digits, and every field after it, reads as 0; a number
// beyond the 32-bit range reads as the nearest limit and stops the reading like a failure.
std::array<std::int32_t, 4> readFourIntegers(std::string_view value);

// A CSS colour "rgb(r, g, b)" (blanks anywhere, any case). nullopt when the text does not
// have this form; a component that is not a number throws the "invalid stoi argument" /
// "stoi argument out of range" errors. Components are kept modulo 256.
std::optional<std::array<std::uint8_t, 3>> parseColor(std::string_view text);

// "normal" 1, "italic" 2, "oblique" 3, anything else 0 (exact match).
std::uint32_t fontStyleCode(std::string_view name);
// "light" 1, "normal" 2, "bold" 3, anything else 0.
std::uint32_t fontWeightCode(std::string_view name);
// The names of the codes above; empty for 0 and unknown codes.
std::string_view fontStyleName(std::uint32_t code);
std::string_view fontWeightName(std::uint32_t code);

// The producers listed in an "ocr-system" meta content: pieces at ";" trimmed (empty pieces
// kept); a piece "name:version" splits at its first ":", a piece without ":" names both.
std::vector<std::pair<std::string, std::string>> parseVersions(std::string_view content);

}  // namespace qent::text::hocr
