// EntityExtractor.cpp - page texts with their word spans, RE2 searches mapped back onto the
// words, and the output written with RapidJSON's writer.
#include "dataextract/EntityExtractor.h"

#include "base/Unicode.h"
#include "dataextract/PageWords.h"
#include "layout/Word.h"

#include <re2/re2.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <algorithm>
#include <limits>

namespace qent::dataextract {

namespace {

using text::layout::Rect;
using text::layout::Word;

struct Span {
  std::size_t begin;
  std::size_t end;
};

// A page's text in UTF-8 and where each word stands in it; words without text are left
// out.
struct PageText {
  std::string text;
  std::vector<Word*> words;
  std::vector<Span> spans;
  std::vector<std::size_t> positions;  // of the word among the page's words, from 1
};

PageText pageText(const PageWords& page) {
  PageText result;
  const text::layout::Line* line = nullptr;
  std::size_t position = 0;
  for (const PlacedWord& placed : page.words) {
    ++position;
    const std::string text = base::utf16ToUtf8Lenient(wordText(*placed.word));
    if (text.empty()) continue;
    if (!result.words.empty()) result.text += placed.line == line ? ' ' : '\n';
    line = placed.line;
    result.spans.push_back(Span{result.text.size(), result.text.size() + text.size()});
    result.text += text;
    result.words.push_back(placed.word);
    result.positions.push_back(position);
  }
  return result;
}

struct Entity {
  const EntityType* type;
  std::uint32_t page;
  std::size_t begin;  // byte offset in the page text, for ordering
  std::string text;
  std::vector<std::size_t> words;  // indices into PageText::words
  const PageText* pageText;
};

// The words [first, last) that bytes [begin, end) touch.
std::pair<std::size_t, std::size_t> coveredWords(const PageText& page, std::size_t begin,
                                                 std::size_t end) {
  const auto first = std::partition_point(page.spans.begin(), page.spans.end(),
                                          [begin](const Span& s) { return s.end <= begin; });
  const auto last = std::partition_point(first, page.spans.end(),
                                         [end](const Span& s) { return s.begin < end; });
  return {static_cast<std::size_t>(first - page.spans.begin()),
          static_cast<std::size_t>(last - page.spans.begin())};
}

void searchPage(const PageText& page, std::uint32_t number, const EntityType& type,
                std::vector<bool>& taken, std::vector<Entity>& out) {
  const re2::RE2& pattern = *type.pattern;
  const int groups = std::min(pattern.NumberOfCapturingGroups(), 1) + 1;
  re2::StringPiece match[2];
  const re2::StringPiece text(page.text);
  std::size_t position = 0;
  while (position <= text.size() &&
         pattern.Match(text, position, text.size(), re2::RE2::UNANCHORED, match, groups)) {
    const std::size_t matchEnd = static_cast<std::size_t>(match[0].data() - text.data()) + match[0].size();
    const re2::StringPiece found = groups == 2 && match[1].data() != nullptr ? match[1] : match[0];
    std::size_t begin = static_cast<std::size_t>(found.data() - text.data());
    std::size_t end = begin + found.size();
    // Past an empty match by one character, so the search moves on.
    position = matchEnd > position ? matchEnd : position + 1;
    while (position < text.size() && (static_cast<unsigned char>(text[position]) & 0xC0) == 0x80) {
      ++position;
    }
    auto [first, last] = coveredWords(page, begin, end);
    // A failed check may be due to a word the pattern took too many: cut back word by word.
    while (first < last &&
           !validate(type.validator, std::string_view(page.text).substr(begin, end - begin))) {
      --last;
      end = first < last ? std::min(end, page.spans[last - 1].end) : begin;
    }
    if (first == last) continue;
    if (std::any_of(taken.begin() + static_cast<std::ptrdiff_t>(first),
                    taken.begin() + static_cast<std::ptrdiff_t>(last), [](bool t) { return t; })) {
      continue;
    }
    Entity entity{&type, number, begin, page.text.substr(begin, end - begin), {}, &page};
    for (std::size_t w = first; w < last; ++w) {
      taken[w] = true;
      entity.words.push_back(w);
    }
    out.push_back(std::move(entity));
  }
}

Rect unionOf(const Entity& entity) {
  std::int64_t left = std::numeric_limits<std::int64_t>::max(), top = left;
  std::int64_t right = std::numeric_limits<std::int64_t>::min(), bottom = right;
  for (const std::size_t w : entity.words) {
    const Rect& rect = entity.pageText->words[w]->rect();
    if (!rect.hasGeometry()) continue;
    left = std::min<std::int64_t>(left, rect.left);
    top = std::min<std::int64_t>(top, rect.top);
    right = std::max(right, rect.right());
    bottom = std::max(bottom, rect.bottom());
  }
  if (left > right) return Rect{};
  // A word box ends before 2^32, so the union's size fits its field when clamped.
  const auto clamp = [](std::int64_t v) {
    return static_cast<std::int32_t>(std::min<std::int64_t>(v, std::numeric_limits<std::int32_t>::max()));
  };
  return Rect{static_cast<std::int32_t>(left), static_cast<std::int32_t>(top), clamp(right - left),
              clamp(bottom - top)};
}

std::string wordName(const Entity& entity, std::size_t w) {
  const Word& word = *entity.pageText->words[w];
  if (!word.id().empty()) return base::utf16ToUtf8Lenient(word.id());
  // Appended piece by piece: GCC 12 at -O3 warns falsely on "literal" + std::string&&.
  std::string name = "#";
  name += std::to_string(entity.page);
  name += '.';
  name += std::to_string(entity.pageText->positions[w]);
  return name;
}

}  // namespace

std::string extractEntities(text::layout::Node& root, const EntityConfiguration& configuration) {
  const std::vector<PageWords> pages = collectPageWords(root);
  std::vector<PageText> texts;
  texts.reserve(pages.size());  // entities point into it
  std::vector<Entity> entities;
  for (const PageWords& page : pages) {
    texts.push_back(pageText(page));
    const PageText& text = texts.back();
    std::vector<bool> taken(text.words.size(), false);
    const std::size_t first = entities.size();
    for (const EntityType& type : configuration.types()) searchPage(text, page.number, type, taken, entities);
    std::stable_sort(entities.begin() + static_cast<std::ptrdiff_t>(first), entities.end(),
                     [](const Entity& a, const Entity& b) { return a.begin < b.begin; });
  }

  rapidjson::StringBuffer buffer;
  rapidjson::Writer<rapidjson::StringBuffer> out(buffer);
  out.StartObject();
  out.Key("entities");
  out.StartArray();
  std::uint32_t id = 0;
  for (const Entity& entity : entities) {
    ++id;
    const std::string mark = entity.type->name + " " + std::to_string(id);
    for (const std::size_t w : entity.words) {
      Word& word = *entity.pageText->words[w];
      word.setXEntity(mark);
      word.setXSensibility(entity.type->sensibility);
    }
    const Rect rect = unionOf(entity);
    out.StartObject();
    out.Key("height");
    out.Int(rect.height);
    out.Key("id");
    out.Uint(id);
    out.Key("left");
    out.Int(rect.left);
    out.Key("page");
    out.Uint(entity.page);
    out.Key("text");
    out.String(entity.text);
    out.Key("top");
    out.Int(rect.top);
    out.Key("type");
    out.String(entity.type->name);
    out.Key("width");
    out.Int(rect.width);
    out.Key("words");
    out.StartArray();
    for (const std::size_t w : entity.words) out.String(wordName(entity, w));
    out.EndArray();
    out.EndObject();
  }
  out.EndArray();
  out.EndObject();
  return std::string(buffer.GetString(), buffer.GetSize());
}

}  // namespace qent::dataextract
