// ComparisonResultWriter.cpp - streams the result document with RapidJSON's writer.
#include "layout/comparison/ComparisonResultWriter.h"

#include "base/Unicode.h"
#include "layout/Image.h"
#include "layout/IteratorTemplate.h"
#include "layout/Page.h"
#include "layout/Word.h"

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <optional>

namespace qent::text::layout::comparison {

namespace {

using JsonWriter = rapidjson::Writer<rapidjson::StringBuffer>;

void key(JsonWriter& out, const char* name) { out.Key(name); }

void unsignedValue(JsonWriter& out, std::uint64_t value) { out.Uint64(value); }

// RapidJSON's notation, as in every JSON output of the library: a double always shows a
// decimal point or an exponent ("1.0", "0.5") and reads back to the same value.
void doubleValue(JsonWriter& out, double value) { out.Double(value); }

// {"error", "error_rate", "f1_measure", "good", "length", "recognition_rate"}
void writeStatistics(JsonWriter& out, const NodeStatistics& stats) {
  out.StartObject();
  key(out, "error");
  unsignedValue(out, stats.errors);
  key(out, "error_rate");
  doubleValue(out, stats.errorRate);
  key(out, "f1_measure");
  doubleValue(out, stats.f1Measure);
  key(out, "good");
  unsignedValue(out, stats.count > stats.errors ? stats.count - stats.errors : 0);
  key(out, "length");
  unsignedValue(out, stats.count);
  key(out, "recognition_rate");
  doubleValue(out, stats.recognitionRate);
  out.EndObject();
}

// One side of the root pair: the layout's first image and first page size, and the root's
// statistics.
void writeRootSide(JsonWriter& out, const Node* root, const NodeStatistics& stats) {
  if (root == nullptr) {
    out.Null();
    return;
  }
  Node* start = const_cast<Node*>(root);  // the walk changes nothing
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  if (IteratorTemplate<Page> page(start); !page.atEnd()) {
    width = page->width();
    height = page->height();
  }
  out.StartObject();
  key(out, "height");
  out.Uint(height);
  if (IteratorTemplate<Image> image(start); !image.atEnd()) {
    key(out, "image");
    out.String(base::utf16ToUtf8Lenient(image->image()));
  }
  key(out, "stats");
  writeStatistics(out, stats);
  key(out, "width");
  out.Uint(width);
  out.EndObject();
}

// One side of a page pair; the word-check counters appear when a word of the page was
// checked or rejected.
void writePageSide(JsonWriter& out, const Node* page, const NodeStatistics& stats) {
  if (page == nullptr) {
    out.Null();
    return;
  }
  std::uint64_t checked = 0;
  std::uint64_t rejected = 0;
  for (IteratorTemplate<Word> word(const_cast<Node*>(page)); !word.atEnd(); ++word) {
    checked += word->xChecked() != 0 ? 1 : 0;
    rejected += word->xRejected() != 0 ? 1 : 0;
  }
  out.StartObject();
  if (checked != 0 || rejected != 0) {
    key(out, "checked");
    unsignedValue(out, checked);
    key(out, "rejected");
    unsignedValue(out, rejected);
  }
  key(out, "statistic");
  writeStatistics(out, stats);
  out.EndObject();
}

void writeDiff(JsonWriter& out, const PairSummary& root) {
  out.StartObject();
  key(out, "edits");
  unsignedValue(out, root.edits());
  key(out, "error_count_left");
  unsignedValue(out, root.leftStats.errors);
  key(out, "error_count_right");
  unsignedValue(out, root.rightStats.errors);
  key(out, "f1_measure");
  doubleValue(out, root.f1());
  key(out, "good");
  unsignedValue(out, root.good());
  key(out, "recognition_rate_left");
  doubleValue(out, root.leftStats.recognitionRate);
  key(out, "recognition_rate_right");
  doubleValue(out, root.rightStats.recognitionRate);
  out.EndObject();
}

void rateValue(JsonWriter& out, std::uint64_t edits, std::uint64_t count) {
  if (const std::optional<double> rate = errorRate(edits, count)) {
    doubleValue(out, *rate);
  } else {
    out.Null();
  }
}

// {"cer", "character_edits", "characters", "normalization", "ocr_characters", "ocr_words",
//  "unit", "wer", "word_edits", "words"}; the word members only when words are measured.
void writeMetrics(JsonWriter& out, const TextMetrics& metrics, const ErrorCounts& counts) {
  out.StartObject();
  key(out, "cer");
  rateValue(out, counts.characterEdits, counts.characters);
  key(out, "character_edits");
  unsignedValue(out, counts.characterEdits);
  key(out, "characters");
  unsignedValue(out, counts.characters);
  key(out, "normalization");
  const std::string_view normalization = base::normalizationName(metrics.options.normalization);
  out.String(normalization.data(), static_cast<rapidjson::SizeType>(normalization.size()));
  key(out, "ocr_characters");
  unsignedValue(out, counts.recognizedCharacters);
  if (metrics.withWords) {
    key(out, "ocr_words");
    unsignedValue(out, counts.recognizedWords);
  }
  key(out, "unit");
  out.String(metrics.options.graphemes ? "grapheme" : "codepoint");
  if (metrics.withWords) {
    key(out, "wer");
    rateValue(out, counts.wordEdits, counts.words);
    key(out, "word_edits");
    unsignedValue(out, counts.wordEdits);
    key(out, "words");
    unsignedValue(out, counts.words);
  }
  out.EndObject();
}

}  // namespace

std::string writeComparisonResult(CompareLevel level, const PairSummary& root,
                                  const std::vector<PairSummary>& pages,
                                  const TextMetrics* metrics) {
  rapidjson::StringBuffer buffer;
  JsonWriter out(buffer);
  out.StartObject();
  key(out, "root");
  out.StartObject();
  key(out, "children");
  out.StartArray();
  for (std::size_t i = 0; i < pages.size(); ++i) {
    const PairSummary& page = pages[i];
    out.StartObject();
    key(out, "edits");
    unsignedValue(out, page.edits());
    key(out, "f1_measure");
    doubleValue(out, page.f1());
    key(out, "good");
    unsignedValue(out, page.good());
    key(out, "left");
    writePageSide(out, page.left, page.leftStats);
    key(out, "max_count");
    unsignedValue(out, page.maxCount());
    if (metrics != nullptr && i < metrics->pages.size()) {
      key(out, "metrics");
      writeMetrics(out, *metrics, metrics->pages[i]);
    }
    key(out, "right");
    writePageSide(out, page.right, page.rightStats);
    out.EndObject();
  }
  out.EndArray();
  key(out, "compare");
  const std::string_view name = levelResultName(level);
  out.String(name.data(), static_cast<rapidjson::SizeType>(name.size()));
  key(out, "diff");
  writeDiff(out, root);
  key(out, "left");
  writeRootSide(out, root.left, root.leftStats);
  if (metrics != nullptr) {
    key(out, "metrics");
    writeMetrics(out, *metrics, metrics->total);
  }
  key(out, "right");
  writeRootSide(out, root.right, root.rightStats);
  out.EndObject();
  out.EndObject();
  return std::string(buffer.GetString(), buffer.GetSize());
}

}  // namespace qent::text::layout::comparison
