// ErrorCounts.cpp - counts edit operations over characters and words along the pairing of a
// finished comparison.
#include "layout/comparison/ErrorCounts.h"

#include "base/QentException.h"
#include "layout/NodeText.h"
#include "layout/comparison/Comparator.h"
#include "layout/comparison/EditDistance.h"
#include "layout/comparison/LevelNodes.h"

#include <map>

namespace qent::text::layout::comparison {

namespace {

// Turns node texts into symbol sequences: characters (code points, or one symbol per
// grapheme cluster) and words. A cluster of one code point is that code point; longer
// clusters and all words get numbers above the code point range, the same number for the
// same text throughout one measurement, so that equal symbols compare equal.
class Symbolizer {
public:
  explicit Symbolizer(const MetricsOptions& options) : options_(options) {}

  std::u32string characters(const Node& node) {
    return symbols(base::normalizedCodePoints(nodeText(node), options_.normalization));
  }

  std::u32string words(Node& node) {
    std::vector<Node*> wordNodes;
    collectLevelNodes(node, CompareLevel::Word, wordNodes);
    if (wordNodes.empty()) wordNodes.push_back(&node);
    std::u32string out;
    for (const Node* word : wordNodes) {
      const std::u32string text =
          base::normalizedCodePoints(nodeText(*word), options_.normalization);
      std::size_t start = 0;
      for (std::size_t i = 0; i <= text.size(); ++i) {
        if (i < text.size() && !base::isWhiteSpace(text[i])) continue;
        if (i > start) out.push_back(intern(text.substr(start, i - start)));
        start = i + 1;
      }
    }
    return out;
  }

private:
  std::u32string symbols(std::u32string points) {
    if (!options_.graphemes) return points;
    const std::vector<std::size_t> bounds = base::graphemeBoundaries(points);
    std::u32string out;
    out.reserve(bounds.size());
    for (std::size_t i = 0; i + 1 < bounds.size(); ++i) {
      const std::size_t length = bounds[i + 1] - bounds[i];
      out.push_back(length == 1 ? points[bounds[i]] : intern(points.substr(bounds[i], length)));
    }
    return out;
  }

  char32_t intern(std::u32string text) {
    const auto next = static_cast<char32_t>(kFirstId + interned_.size());
    return interned_.try_emplace(std::move(text), next).first->second;
  }

  static constexpr char32_t kFirstId = 0x110000;
  MetricsOptions options_;
  std::map<std::u32string, char32_t> interned_;
};

void measurePage(const Comparator& comparator, Node& leftPage, Node& rightPage,
                 Symbolizer& symbolizer, bool withWords, ErrorCounts& counts) {
  std::vector<Node*> recognized, truth;
  collectLevelNodes(leftPage, comparator.level(), recognized);
  collectLevelNodes(rightPage, comparator.level(), truth);
  for (Node* node : truth) {
    const NodeStatistics* stats = comparator.statistics(node);
    Node* partner = stats != nullptr ? stats->partner : nullptr;
    const std::u32string chars = symbolizer.characters(*node);
    counts.characters += chars.size();
    counts.characterEdits +=
        partner != nullptr ? symbolEditDistance(symbolizer.characters(*partner), chars)
                           : chars.size();
    if (!withWords) continue;
    const std::u32string words = symbolizer.words(*node);
    counts.words += words.size();
    counts.wordEdits += partner != nullptr
                            ? symbolEditDistance(symbolizer.words(*partner), words)
                            : words.size();
  }
  for (Node* node : recognized) {
    const NodeStatistics* stats = comparator.statistics(node);
    const bool paired = stats != nullptr && stats->partner != nullptr;
    const std::size_t chars = symbolizer.characters(*node).size();
    counts.recognizedCharacters += chars;
    if (!paired) counts.characterEdits += chars;
    if (!withWords) continue;
    const std::size_t words = symbolizer.words(*node).size();
    counts.recognizedWords += words;
    if (!paired) counts.wordEdits += words;
  }
}

}  // namespace

ErrorCounts& ErrorCounts::operator+=(const ErrorCounts& other) {
  characters += other.characters;
  recognizedCharacters += other.recognizedCharacters;
  characterEdits += other.characterEdits;
  words += other.words;
  recognizedWords += other.recognizedWords;
  wordEdits += other.wordEdits;
  return *this;
}

TextMetrics measureErrors(const Comparator& comparator, const MetricsOptions& options) {
  // Refused up front, not at the first text that needs it: an ASCII-only document must not
  // pass where another would fail.
  if ((options.normalization != base::Normalization::None || options.graphemes) &&
      !base::hasUnicodeSegmentation()) {
    throw base::QentException(base::kErrorOption,
                              "this build of the library cannot normalize text or count "
                              "grapheme clusters (built without utf8proc)");
  }
  TextMetrics metrics;
  metrics.options = options;
  metrics.withWords = comparator.level() != CompareLevel::Glyph;
  Symbolizer symbolizer(options);
  for (const auto& [leftPage, rightPage] : comparator.pagePairs()) {
    ErrorCounts& page = metrics.pages.emplace_back();
    measurePage(comparator, *leftPage, *rightPage, symbolizer, metrics.withWords, page);
    metrics.total += page;
  }
  return metrics;
}

std::optional<double> errorRate(std::uint64_t edits, std::uint64_t count) {
  if (count == 0) return std::nullopt;
  return static_cast<double>(edits) / static_cast<double>(count);
}

}  // namespace qent::text::layout::comparison
