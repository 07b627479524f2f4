// WebAnnoReader.cpp - sentences to lines and token rows to words.
#include "layout/format/WebAnnoReader.h"

#include "base/QentException.h"
#include "base/TraceLog.h"
#include "base/Unicode.h"
#include "layout/Layout.h"
#include "layout/LayoutFormat.h"
#include "layout/Nodes.h"

#include <algorithm>
#include <string>
#include <vector>

namespace qent::text::layout::format {

namespace {

constexpr std::string_view kHeader = "#FORMAT=WebAnno TSV";
constexpr std::string_view kSentence = "#Text=";
constexpr std::size_t kQuotedRowLength = 60;

[[noreturn]] void fail(const std::string& message) {
  throw base::QentException(base::kErrorHocr, "WebAnno TSV: " + message);
}

bool isSpace(char c) {
  return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f' || c == '\v';
}

std::string_view trim(std::string_view row) {
  while (!row.empty() && isSpace(row.front())) row.remove_prefix(1);
  while (!row.empty() && isSpace(row.back())) row.remove_suffix(1);
  return row;
}

bool isDigits(std::string_view text) {
  return !text.empty() &&
         std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

// "12-40": two numbers joined by "-".
bool isNumberPair(std::string_view text) {
  const std::size_t dash = text.find('-');
  return dash != std::string_view::npos && isDigits(text.substr(0, dash)) &&
         isDigits(text.substr(dash + 1));
}

std::string_view trimEnd(std::string_view row, std::string_view characters) {
  const std::size_t last = row.find_last_not_of(characters);
  return last == std::string_view::npos ? std::string_view() : row.substr(0, last + 1);
}

std::size_t columnCount(std::string_view row) {
  return static_cast<std::size_t>(std::count(row.begin(), row.end(), '\t')) + 1;
}

std::vector<std::string_view> splitColumns(std::string_view row) {
  std::vector<std::string_view> columns;
  std::size_t start = 0;
  for (;;) {
    const std::size_t tab = row.find('\t', start);
    columns.push_back(row.substr(start, tab == std::string_view::npos ? tab : tab - start));
    if (tab == std::string_view::npos) break;
    start = tab + 1;
  }
  return columns;
}

[[noreturn]] void failTokenRow(std::size_t rowNumber, std::string_view row) {
  std::string quoted = base::utf16ToUtf8Lenient(base::utf8ToUtf16Lenient(
      row.substr(0, kQuotedRowLength)));
  if (row.size() > kQuotedRowLength) quoted += "...";
  fail("row " + std::to_string(rowNumber) +
       " is not a token row (a token id such as 1-3, a tab and offsets such as 0-5 must "
       "begin it): \"" + quoted + "\"");
}

// "sensitive[E]" in any case marks the word; E, as written, becomes its entity id.
void applyLabel(Word& word, std::string_view label) {
  if (label == "_") {
    word.setXSensibility(0);
    return;
  }
  if (base::toLowerAscii(label).find("sensitive") == std::string::npos) return;
  word.setXSensibility(1.0);
  const std::size_t open = label.find('[');
  const std::size_t close = label.rfind(']');
  if (open == std::string_view::npos || close == std::string_view::npos || close <= open) return;
  const std::string_view id = label.substr(open + 1, close - open - 1);
  // Blanks alone name nothing; kept, they would make "other" the id written next time.
  if (std::all_of(id.begin(), id.end(), isSpace)) return;
  // The class is not part of the column; "other" stands for it, and writers take the id
  // from the end again.
  word.setXEntity("other " + std::string(id));
}

std::u16string asciiId(std::string_view prefix, std::string_view tokenId) {
  std::u16string id(prefix.begin(), prefix.end());
  for (const char c : tokenId) id += c == '-' ? u'_' : static_cast<char16_t>(c);
  return id;
}

}  // namespace

std::unique_ptr<Layout> WebAnnoReader::read(std::string_view utf8) {
  if (utf8.substr(0, 3) == "\xEF\xBB\xBF") utf8.remove_prefix(3);
  if (trim(utf8).substr(0, kHeader.size()) != kHeader) {
    fail("the text does not begin with a " + std::string(kHeader) + " header");
  }
  if (const std::size_t bad = base::findInvalidUtf8(utf8); bad != std::string_view::npos) {
    const auto rows = std::count(utf8.begin(), utf8.begin() + static_cast<std::ptrdiff_t>(bad), '\n');
    fail("row " + std::to_string(rows + 1) + " is not valid UTF-8");
  }

  auto root = std::make_unique<Content>();
  root->setTypeName(u"node");
  Page& page = root->appendChild(std::make_unique<Page>());
  page.setId(u"page_1");

  Line* line = nullptr;
  std::string_view lineSentence;  // sentence number of the line's first token; empty: none yet
  bool afterSentenceText = false;
  std::size_t lineCount = 0;
  auto openLine = [&] {
    line = &page.appendChild(std::make_unique<Line>());
    const std::string number = std::to_string(++lineCount);
    line->setId(u"line_" + std::u16string(number.begin(), number.end()));
    lineSentence = {};
  };

  std::size_t rowNumber = 0;
  std::size_t start = 0;
  while (start <= utf8.size()) {
    std::size_t end = utf8.find('\n', start);
    if (end == std::string_view::npos) end = utf8.size();
    const std::string_view raw = utf8.substr(start, end - start);
    const std::string_view row = trim(raw);
    start = end + 1;
    ++rowNumber;

    if (row.empty()) {
      afterSentenceText = false;
      continue;
    }
    if (row.front() == '#') {
      const bool sentenceText = row.substr(0, kSentence.size()) == kSentence;
      if (sentenceText && !afterSentenceText) openLine();
      afterSentenceText = sentenceText;
      continue;
    }
    afterSentenceText = false;

    const std::vector<std::string_view> columns = splitColumns(row);
    const std::string_view tokenId = columns[0];
    const std::size_t dot = tokenId.find('.');
    const std::string_view mainId = tokenId.substr(0, dot);
    const bool validId = isNumberPair(mainId) &&
                         (dot == std::string_view::npos || isDigits(tokenId.substr(dot + 1)));
    // A token row as it stood in the file, before trimming took the tabs around an empty
    // text: fewer than three columns has no text column at all. Such rows come from
    // hand-edited files and name no word; they are left out rather than failing the file.
    if (validId && columnCount(trimEnd(raw, "\r ")) < 3) {
      std::string message = "WebAnno TSV: row ";
      message.append(std::to_string(rowNumber)).append(" has no text column and is skipped");
      base::TraceLog::write(message, base::kTraceWarning);
      continue;
    }
    if (columns.size() < 2 || !validId || !isNumberPair(columns[1])) {
      failTokenRow(rowNumber, row);
    }
    if (dot != std::string_view::npos) continue;  // a sub-token: part of the token before

    const std::string_view sentence = mainId.substr(0, mainId.find('-'));
    if (line == nullptr || (!lineSentence.empty() && lineSentence != sentence)) openLine();
    if (lineSentence.empty()) lineSentence = sentence;

    Word& word = line->appendChild(std::make_unique<Word>());
    word.setId(asciiId("word_", tokenId));
    if (columns.size() >= 3) word.setText(base::utf8ToUtf16(columns[2]));
    if (columns.size() == 4) applyLabel(word, columns[3]);
  }

  auto layout = std::make_unique<Layout>(std::move(root));
  layout->setFormat(kFormatWebAnno);
  return layout;
}

}  // namespace qent::text::layout::format
