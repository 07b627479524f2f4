// KeywordSearch.h - whole-word search without regard to case, for region keywords.
#pragma once

#include <string>
#include <string_view>

namespace qent::dataextract {

// The form both sides are compared in: lower case (Latin, Greek, Cyrillic), every run of
// white space one blank, no blanks at the ends. A keyword written with a line break or two
// blanks thus still finds its words on two lines.
std::u16string searchForm(std::u16string_view text);

// Whether `keyword` occurs in `text` (both in search form) as whole words: a letter or
// digit at either end of the keyword may not continue into the text around it, so "Nr"
// is not found in "Nrn" while "Nr." is found in "Nr.:".
bool containsWholeWord(std::u16string_view text, std::u16string_view keyword);

}  // namespace qent::dataextract
