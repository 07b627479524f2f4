// DocumentPair.cpp - the benchmark's ground truth and OCR recognition generator.
#include "support/DocumentPair.h"

#include "base/Unicode.h"
#include "layout/Layout.h"
#include "layout/Nodes.h"

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <algorithm>
#include <array>
#include <random>

namespace ormida::bench {

namespace {

using namespace qent::text::layout;

constexpr std::int32_t kPageWidth = 2480;
constexpr std::int32_t kPageHeight = 3508;
constexpr std::int32_t kCharWidth = 18;
constexpr std::int32_t kLineHeight = 42;
constexpr std::int32_t kLinePitch = 78;

class Random {
public:
  explicit Random(std::uint64_t seed) : engine_(seed) {}
  int below(int bound) { return static_cast<int>(engine_() % static_cast<std::uint64_t>(bound)); }
  double unit() { return static_cast<double>(engine_() >> 11) * 0x1.0p-53; }

private:
  std::mt19937_64 engine_;
};

// Words built from syllables read like a European language, so texts repeat and vary as
// real ones do.
std::u16string makeWord(Random& random) {
  static constexpr std::array<const char16_t*, 24> kSyllables = {
      u"der", u"ung", u"en", u"ge", u"schaft", u"tion", u"re", u"in", u"an", u"mi",
      u"lo", u"kra", u"st", u"ü", u"ber", u"äch", u"ti", u"or", u"ne", u"ha",
      u"fö", u"ß", u"el", u"pa"};
  std::u16string word;
  const int syllables = 1 + random.below(3);
  for (int i = 0; i < syllables; ++i) word += kSyllables[random.below(kSyllables.size())];
  if (random.below(8) == 0) word[0] = static_cast<char16_t>(word[0] >= u'a' && word[0] <= u'z' ? word[0] - 32 : word[0]);
  const int tail = random.below(20);
  if (tail == 0) word += u',';
  if (tail == 1) word += u'.';
  if (random.below(25) == 0) {
    word.assign(2, u'1');
    word[1] = static_cast<char16_t>(u'0' + random.below(10));
  }
  return word;
}

char16_t confusion(char16_t unit, Random& random) {
  switch (unit) {
    case u'e': return u'c';
    case u'l': return u'1';
    case u'o': return u'0';
    case u'i': return u'l';
    case u'ü': return u'u';
    case u'ä': return u'a';
    case u'ß': return u'B';
    default: return static_cast<char16_t>(u'a' + random.below(26));
  }
}

std::u16string damage(const std::u16string& text, double rate, Random& random) {
  std::u16string out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (random.unit() >= rate) {
      out.push_back(text[i]);
      continue;
    }
    const int kind = random.below(10);
    if (kind < 6) {
      out.push_back(confusion(text[i], random));
    } else if (kind < 8) {
      // dropped
    } else if (kind == 8 && text[i] == u'm') {
      out += u"rn";
    } else {
      out.push_back(text[i]);
      out.push_back(u'i');
    }
  }
  return out;
}

GeneratedDocument makeTruth(const DocumentPairOptions& options, Random& random) {
  GeneratedDocument document;
  document.pages.resize(static_cast<std::size_t>(options.pages));
  for (auto& page : document.pages) {
    page.resize(static_cast<std::size_t>(options.linesPerPage));
    for (std::size_t l = 0; l < page.size(); ++l) {
      std::int32_t x = 200;
      const std::int32_t y = 200 + static_cast<std::int32_t>(l) * kLinePitch;
      for (int w = 0; w < options.wordsPerLine; ++w) {
        std::u16string text = makeWord(random);
        const auto width = static_cast<std::int32_t>(text.size()) * kCharWidth;
        if (x + width > kPageWidth - 200) break;
        page[l].words.push_back({x, y, width, kLineHeight, std::move(text)});
        x += width + 22;
      }
    }
  }
  return document;
}

GeneratedDocument recognise(const GeneratedDocument& truth, double rate, Random& random) {
  GeneratedDocument document;
  for (const auto& truthPage : truth.pages) {
    auto& page = document.pages.emplace_back();
    for (const GeneratedLine& truthLine : truthPage) {
      GeneratedLine& line = page.emplace_back();
      for (std::size_t i = 0; i < truthLine.words.size(); ++i) {
        GeneratedWord word = truthLine.words[i];
        const int roll = random.below(1000);
        if (roll < 3) continue;  // lost
        if (roll < 8 && word.text.size() > 3) {  // split
          const auto cut = static_cast<std::int32_t>(1 + random.below(static_cast<int>(word.text.size()) - 1));
          line.words.push_back({word.left, word.top, cut * kCharWidth - 4, word.height, word.text.substr(0, cut)});
          word.left += cut * kCharWidth;
          word.width -= cut * kCharWidth;
          word.text = word.text.substr(static_cast<std::size_t>(cut));
        } else if (roll < 13 && i + 1 < truthLine.words.size()) {  // merged with the next
          const GeneratedWord& next = truthLine.words[++i];
          word.width = next.left + next.width - word.left;
          word.text += next.text;
        }
        word.left += random.below(5) - 2;
        word.top += random.below(5) - 2;
        word.text = damage(word.text, rate, random);
        if (word.text.empty()) word.text.assign(1, u'.');
        line.words.push_back(std::move(word));
      }
      if (random.below(200) == 0) {  // speckle read as a word
        line.words.push_back({kPageWidth - 150, line.words.empty() ? 100 : line.words[0].top, 20, 20, u"·"});
      }
    }
  }
  return document;
}

}  // namespace

std::size_t GeneratedDocument::wordCount() const {
  std::size_t count = 0;
  for (const auto& page : pages) {
    for (const auto& line : page) count += line.words.size();
  }
  return count;
}

std::size_t GeneratedDocument::characterCount() const {
  std::size_t count = 0;
  for (const auto& page : pages) {
    for (const auto& line : page) {
      for (const auto& word : line.words) count += word.text.size();
    }
  }
  return count;
}

GeneratedPair generateDocumentPair(const DocumentPairOptions& options) {
  Random random(options.seed);
  GeneratedPair pair;
  pair.truth = makeTruth(options, random);
  pair.recognition = recognise(pair.truth, options.characterErrorRate, random);
  return pair;
}

namespace {

std::u16string idOf(const std::string& prefix, std::size_t page, std::size_t line, std::size_t word) {
  const std::string id = prefix + "_" + std::to_string(page) + "_" + std::to_string(line) + "_" +
                         std::to_string(word);
  return std::u16string(id.begin(), id.end());
}

// The box around a line's words.
Rect lineRect(const GeneratedLine& line) {
  if (line.words.empty()) return {};
  std::int32_t left = line.words[0].left, top = line.words[0].top;
  std::int32_t right = left, bottom = top;
  for (const auto& w : line.words) {
    left = std::min(left, w.left);
    top = std::min(top, w.top);
    right = std::max(right, w.left + w.width);
    bottom = std::max(bottom, w.top + w.height);
  }
  return {left, top, right - left, bottom - top};
}

// Glyph i of a word: an equal share of its width.
Rect glyphRect(const GeneratedWord& word, std::size_t i) {
  const auto n = static_cast<std::int32_t>(word.text.size());
  const std::int32_t left = word.left + word.width * static_cast<std::int32_t>(i) / n;
  const std::int32_t right = word.left + word.width * static_cast<std::int32_t>(i + 1) / n;
  return {left, word.top, std::max(1, right - left), word.height};
}

}  // namespace

std::unique_ptr<Layout> buildLayout(const GeneratedDocument& document, bool glyphs,
                                    const std::string& idPrefix) {
  auto root = std::make_unique<Content>();
  root->setTypeName(u"node");
  for (std::size_t p = 0; p < document.pages.size(); ++p) {
    auto& page = root->appendChild(std::make_unique<Page>());
    page.setWidth(kPageWidth);
    page.setHeight(kPageHeight);
    page.setIndexInLayout(static_cast<std::uint32_t>(p));
    for (std::size_t l = 0; l < document.pages[p].size(); ++l) {
      const GeneratedLine& source = document.pages[p][l];
      auto& line = page.appendChild(std::make_unique<Line>());
      line.setRect(lineRect(source));
      for (std::size_t w = 0; w < source.words.size(); ++w) {
        const GeneratedWord& sourceWord = source.words[w];
        auto& word = line.appendChild(std::make_unique<Word>());
        word.setId(idOf(idPrefix, p, l, w));
        word.setRect({sourceWord.left, sourceWord.top, sourceWord.width, sourceWord.height});
        word.setText(sourceWord.text);
        word.setConfidence(90);
        if (!glyphs) continue;
        for (std::size_t g = 0; g < sourceWord.text.size(); ++g) {
          auto& glyph = word.appendChild(std::make_unique<Glyph>());
          glyph.setRect(glyphRect(sourceWord, g));
          glyph.setText(std::u16string(1, sourceWord.text[g]));
        }
      }
    }
  }
  return std::make_unique<Layout>(std::move(root));
}

std::string writeJson(const GeneratedDocument& document, bool glyphs, const std::string& idPrefix) {
  rapidjson::StringBuffer buffer;
  rapidjson::Writer<rapidjson::StringBuffer> out(buffer);
  auto rect = [&out](const Rect& r) {
    out.Key("height");
    out.Int(r.height);
    out.Key("left");
    out.Int(r.left);
    out.Key("top");
    out.Int(r.top);
    out.Key("width");
    out.Int(r.width);
  };
  out.StartObject();
  out.Key("root");
  out.StartObject();
  out.Key("children");
  out.StartArray();
  for (std::size_t p = 0; p < document.pages.size(); ++p) {
    out.StartObject();
    out.Key("children");
    out.StartArray();
    for (std::size_t l = 0; l < document.pages[p].size(); ++l) {
      const GeneratedLine& line = document.pages[p][l];
      out.StartObject();
      out.Key("children");
      out.StartArray();
      for (std::size_t w = 0; w < line.words.size(); ++w) {
        const GeneratedWord& word = line.words[w];
        out.StartObject();
        if (glyphs) {
          out.Key("children");
          out.StartArray();
          for (std::size_t g = 0; g < word.text.size(); ++g) {
            out.StartObject();
            rect(glyphRect(word, g));
            out.Key("text");
            out.String(qent::base::utf16ToUtf8(word.text.substr(g, 1)));
            out.Key("type");
            out.String("glyph");
            out.EndObject();
          }
          out.EndArray();
        }
        out.Key("confidence");
        out.Double(90.0);
        const Rect wordRect{word.left, word.top, word.width, word.height};
        out.Key("height");
        out.Int(wordRect.height);
        out.Key("id");
        out.String(qent::base::utf16ToUtf8(idOf(idPrefix, p, l, w)));
        out.Key("left");
        out.Int(wordRect.left);
        out.Key("text");
        out.String(qent::base::utf16ToUtf8(word.text));
        out.Key("top");
        out.Int(wordRect.top);
        out.Key("type");
        out.String("word");
        out.Key("width");
        out.Int(wordRect.width);
        out.EndObject();
      }
      out.EndArray();
      rect(lineRect(line));
      out.Key("type");
      out.String("line");
      out.EndObject();
    }
    out.EndArray();
    out.Key("height");
    out.Int(kPageHeight);
    out.Key("index_in_layout");
    out.Uint(static_cast<unsigned>(p));
    out.Key("type");
    out.String("page");
    out.Key("width");
    out.Int(kPageWidth);
    out.EndObject();
  }
  out.EndArray();
  out.Key("type");
  out.String("node");
  out.EndObject();
  out.EndObject();
  return std::string(buffer.GetString(), buffer.GetSize());
}

}  // namespace ormida::bench
