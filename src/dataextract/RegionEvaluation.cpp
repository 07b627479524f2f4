// RegionEvaluation.cpp - selects the words of each region, orders them for reading and
// writes the result with RapidJSON's writer.
#include "dataextract/RegionEvaluation.h"

#include "base/MeanOf.h"
#include "base/Unicode.h"
#include "dataextract/ConfigJson.h"
#include "dataextract/KeywordSearch.h"
#include "dataextract/PageWords.h"
#include "layout/Line.h"
#include "layout/Page.h"
#include "layout/Word.h"

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <algorithm>
#include <cmath>
#include <map>

namespace qent::dataextract {

namespace {

using text::layout::Line;
using text::layout::Page;
using text::layout::Rect;
using text::layout::Word;

struct Box {
  double left, top, right, bottom;
};

double overlap(double from1, double to1, double from2, double to2) {
  return std::max(0.0, std::min(to1, to2) - std::max(from1, from2));
}

// The region in pixels of this page.
Box pixelBox(const RegionTemplate& region, const PageWords& page) {
  if (region.unit == RegionUnit::Pixel) {
    return {region.left, region.top, region.left + region.width, region.top + region.height};
  }
  const double width = page.page->width();
  const double height = page.page->height();
  if (width <= 0 || height <= 0) {
    failConfig("Region template", "region \"" + region.name +
                                      "\" is measured in permille, but page " +
                                      std::to_string(page.number) + " states no size");
  }
  return {region.left * width / 1000, region.top * height / 1000,
          (region.left + region.width) * width / 1000, (region.top + region.height) * height / 1000};
}

bool inside(const Rect& rect, const Box& box, double threshold) {
  if (rect.width <= 0 || rect.height <= 0) return false;
  const double shared = overlap(rect.left, static_cast<double>(rect.right()), box.left, box.right) *
                        overlap(rect.top, static_cast<double>(rect.bottom()), box.top, box.bottom);
  if (shared <= 0) return false;
  const double area = static_cast<double>(rect.width) * static_cast<double>(rect.height);
  return shared / area >= threshold;
}

// A run of the region's words that share a line, placed by the line's own rectangle when it
// has one (else by its first word), so that a line cut at the region's edge keeps its place.
struct ReadingLine {
  double top;
  double left;
  std::vector<const Word*> words;
};

// Lines top to bottom (left to right on a tie), words left to right; one blank between
// words, a line feed between lines.
std::u16string readingText(const std::vector<PlacedWord>& words) {
  std::vector<ReadingLine> lines;
  std::map<const Line*, std::size_t> lineIndex;
  for (const PlacedWord& placed : words) {
    auto found = placed.line != nullptr ? lineIndex.find(placed.line) : lineIndex.end();
    if (found == lineIndex.end()) {
      const Rect& rect = placed.line != nullptr && placed.line->rect().hasGeometry()
                             ? placed.line->rect()
                             : placed.word->rect();
      lines.push_back(ReadingLine{static_cast<double>(rect.top), static_cast<double>(rect.left), {}});
      if (placed.line != nullptr) found = lineIndex.emplace(placed.line, lines.size() - 1).first;
    }
    const std::size_t index = found != lineIndex.end() ? found->second : lines.size() - 1;
    lines[index].words.push_back(placed.word);
  }
  std::stable_sort(lines.begin(), lines.end(), [](const ReadingLine& a, const ReadingLine& b) {
    return a.top != b.top ? a.top < b.top : a.left < b.left;
  });
  std::u16string text;
  for (ReadingLine& line : lines) {
    std::stable_sort(line.words.begin(), line.words.end(), [](const Word* a, const Word* b) {
      return a->rect().left < b->rect().left;
    });
    if (!text.empty()) text += u'\n';
    bool first = true;
    for (const Word* word : line.words) {
      if (!first) text += u' ';
      first = false;
      text += wordText(*word);
    }
  }
  return text;
}

// Mean of the confidences the words state; -1 (the library's "unset") when none does.
double meanConfidence(const std::vector<PlacedWord>& words) {
  base::MeanOf mean;
  for (const PlacedWord& placed : words) {
    const double confidence = placed.word->confidence();
    if (confidence < 0) continue;
    mean.add(confidence);
  }
  return mean.count() == 0 ? -1.0 : mean.mean();
}

}  // namespace

std::string evaluateRegions(text::layout::Node& root, const std::vector<RegionTemplate>& regions,
                            double overlapThreshold) {
  if (!(overlapThreshold >= 0 && overlapThreshold <= 1)) {
    failConfig("CheckMask.OverlapThreshold", "must be between 0 and 1, is " +
                                                 std::to_string(overlapThreshold));
  }
  const std::vector<PageWords> pages = collectPageWords(root);
  std::uint32_t pageCount = 0;
  for (const PageWords& page : pages) pageCount = std::max(pageCount, page.number);

  struct Entry {
    const RegionTemplate* region;
    std::uint32_t page;
    std::u16string text;
    std::size_t words;
    double confidence;
    std::vector<const std::string*> found;
    std::vector<const std::string*> missing;
  };
  std::vector<Entry> entries;
  bool matched = true;
  for (const RegionTemplate& region : regions) {
    std::vector<std::u16string> keywords;
    for (const std::string& keyword : region.keywords) {
      keywords.push_back(searchForm(base::utf8ToUtf16(keyword)));
    }
    bool anyFound = false;
    for (const PageWords& page : pages) {
      if (!region.pages.selects(page.number, pageCount)) continue;
      const Box box = pixelBox(region, page);
      std::vector<PlacedWord> words;
      for (const PlacedWord& placed : page.words) {
        if (inside(placed.word->rect(), box, overlapThreshold)) words.push_back(placed);
      }
      Entry entry{&region, page.number, readingText(words), words.size(), meanConfidence(words),
                  {}, {}};
      const std::u16string searched = searchForm(entry.text);
      for (std::size_t k = 0; k < keywords.size(); ++k) {
        (containsWholeWord(searched, keywords[k]) ? entry.found : entry.missing)
            .push_back(&region.keywords[k]);
      }
      anyFound = anyFound || !entry.found.empty();
      entries.push_back(std::move(entry));
    }
    if (!region.keywords.empty() && !anyFound) matched = false;
  }

  rapidjson::StringBuffer buffer;
  rapidjson::Writer<rapidjson::StringBuffer> out(buffer);
  const auto strings = [&out](const std::vector<const std::string*>& list) {
    out.StartArray();
    for (const std::string* text : list) out.String(*text);
    out.EndArray();
  };
  out.StartObject();
  out.Key("matched");
  out.Bool(matched);
  out.Key("regions");
  out.StartArray();
  for (const Entry& entry : entries) {
    out.StartObject();
    out.Key("confidence");
    out.Double(entry.confidence);
    out.Key("keywordsFound");
    strings(entry.found);
    out.Key("keywordsMissing");
    strings(entry.missing);
    out.Key("name");
    out.String(entry.region->name);
    out.Key("page");
    out.Uint(entry.page);
    out.Key("text");
    out.String(base::utf16ToUtf8Lenient(entry.text));
    out.Key("words");
    out.Uint64(entry.words);
    out.EndObject();
  }
  out.EndArray();
  out.EndObject();
  return std::string(buffer.GetString(), buffer.GetSize());
}

}  // namespace qent::dataextract
