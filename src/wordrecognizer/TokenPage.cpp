// TokenPage.cpp - cutting layouts and plain texts into tokens.
#include "wordrecognizer/TokenPage.h"

#include "layout/Layout.h"
#include "layout/NodeClass.h"
#include "layout/NodeIterator.h"
#include "layout/Page.h"
#include "layout/Word.h"
#include "wordrecognizer/Characters.h"

namespace qent::text::wordrecognizer {

namespace {

using layout::NodeClass;

void endLine(TokenPage& page) {
  if (!page.tokens.empty()) page.tokens.back().lineEnd = true;
}

std::u16string wordText(layout::Word& word) {
  if (!word.text().empty()) return word.text();
  std::u16string text;
  for (const auto& child : word.children()) {
    if (child->nodeClass() == NodeClass::Glyph) {
      text += static_cast<const layout::Fragment&>(*child).text();
    }
  }
  return text;
}

}  // namespace

void appendTokens(std::u16string_view text, layout::Word* word, TokenPage& page) {
  std::size_t i = 0;
  while (i < text.size()) {
    while (i < text.size() && isWhiteSpace(text[i])) ++i;
    const std::size_t start = i;
    while (i < text.size() && !isWhiteSpace(text[i])) ++i;
    if (i > start) page.tokens.push_back(Token{std::u16string(text.substr(start, i - start)), false, word});
  }
}

std::vector<TokenPage> tokensOfLayout(const layout::Layout& layout) {
  std::vector<TokenPage> pages;
  if (layout.root() == nullptr) return pages;
  TokenPage loose{"0", {}, nullptr, {}};  // words before or outside the pages
  TokenPage* current = &loose;
  std::size_t pageDepth = 0;
  for (layout::NodeIterator it(layout.root()); it.current() != nullptr; ++it) {
    layout::Node& node = *it;
    if (current != &loose && it.depth() <= pageDepth) current = &loose;
    switch (node.nodeClass()) {
      case NodeClass::Page: {
        endLine(*current);
        auto& page = static_cast<layout::Page&>(node);
        pages.push_back(TokenPage{std::to_string(pages.size() + 1), page.language(), &page, {}});
        current = &pages.back();
        pageDepth = it.depth();
        break;
      }
      case NodeClass::Line: endLine(*current); break;
      case NodeClass::Word: {
        auto& word = static_cast<layout::Word&>(node);
        appendTokens(wordText(word), &word, *current);
        break;
      }
      default: break;
    }
  }
  for (TokenPage& page : pages) endLine(page);
  if (!loose.tokens.empty()) {
    endLine(loose);
    // Pages are numbered from 1; words outside every page come first as page "0".
    pages.insert(pages.begin(), std::move(loose));
  }
  return pages;
}

std::vector<TokenPage> tokensOfText(std::u16string_view text, const std::string& language) {
  std::vector<TokenPage> pages;
  pages.push_back(TokenPage{"1", language, nullptr, {}});
  std::size_t start = 0;
  while (start <= text.size()) {
    std::size_t end = text.find_first_of(u"\n\f", start);
    if (end == std::u16string_view::npos) end = text.size();
    appendTokens(text.substr(start, end - start), nullptr, pages.back());
    endLine(pages.back());
    if (end < text.size() && text[end] == u'\f') {
      pages.push_back(TokenPage{std::to_string(pages.size() + 1), language, nullptr, {}});
    }
    start = end + 1;
  }
  // A form feed that closes the last page does not open another one.
  if (pages.size() > 1 && pages.back().tokens.empty()) pages.pop_back();
  return pages;
}

}  // namespace qent::text::wordrecognizer
