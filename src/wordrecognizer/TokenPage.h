// TokenPage.h - a page of text as the recognizer reads it: tokens in reading order, each
// knowing whether it ends a line and which layout word it came from.
#pragma once

#include <string>
#include <vector>

namespace qent::text::layout {
class Layout;
class Page;
class Word;
}  // namespace qent::text::layout

namespace qent::text::wordrecognizer {

struct Token {
  std::u16string text;
  bool lineEnd = false;
  layout::Word* word = nullptr;  // null for text inputs
};

struct TokenPage {
  std::string name;      // "1", "2", ... in document order
  std::string language;  // as the input gives it, not normalised; may be empty
  layout::Page* node = nullptr;
  std::vector<Token> tokens;
};

// Splits at white space, appending to `page`; the last token of the text ends a line.
void appendTokens(std::u16string_view text, layout::Word* word, TokenPage& page);

// The pages of a layout: each Word's text (its glyphs' texts when it has none) split at
// white space; the last token of every Line ends a line. Words outside any Page form one
// page of their own, before the others.
std::vector<TokenPage> tokensOfLayout(const layout::Layout& layout);

// The pages of a plain text: a form feed starts a new page, a line break ends a line.
std::vector<TokenPage> tokensOfText(std::u16string_view text, const std::string& language);

}  // namespace qent::text::wordrecognizer
