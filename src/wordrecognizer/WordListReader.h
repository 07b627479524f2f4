// WordListReader.h - one-word-per-line lists: stop words and a user's own words.
//
// UTF-8 (a BOM is skipped), CR LF or LF, "#" starts a comment line, blanks around a word
// are dropped, empty lines skipped. Invalid UTF-8 is a QentException naming the file and
// the line; nothing of a broken list is used.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace qent::text::wordrecognizer {

// The words as written, in file order.
std::vector<std::u16string> parseWordList(std::string_view bytes, const std::string& name);
// The same words lower-cased, for matching without regard to case (stop words).
std::vector<std::u16string> parseStopWords(std::string_view bytes, const std::string& name);

}  // namespace qent::text::wordrecognizer
