// CorpusSummary.cpp - summaries as JSON (RapidJSON) and CSV, and their exact merge.
#include "CorpusSummary.h"

#include <rapidjson/document.h>
#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>

#include <cstdio>
#include <set>
#include <stdexcept>

namespace ormida::cli {

namespace {

using Value = rapidjson::Value;
using JsonWriter = rapidjson::PrettyWriter<rapidjson::StringBuffer>;

const Value& member(const Value& object, const char* name, const char* where) {
  if (object.IsObject()) {
    const auto found = object.FindMember(name);
    if (found != object.MemberEnd()) return found->value;
  }
  throw std::runtime_error(std::string(where) + " has no \"" + name + "\"");
}

std::uint64_t count(const Value& object, const char* name, const char* where) {
  const Value& value = member(object, name, where);
  if (!value.IsUint64()) {
    throw std::runtime_error(std::string(where) + ": \"" + name + "\" is not a count");
  }
  return value.GetUint64();
}

std::string text(const Value& object, const char* name, const char* where) {
  const Value& value = member(object, name, where);
  if (!value.IsString()) {
    throw std::runtime_error(std::string(where) + ": \"" + name + "\" is not a string");
  }
  return value.GetString();
}

rapidjson::Document parse(const std::string& json, const char* what) {
  rapidjson::Document document;
  document.Parse<rapidjson::kParseIterativeFlag>(json.c_str(), json.size());
  if (document.HasParseError()) {
    throw std::runtime_error(std::string("not a ") + what + ": invalid JSON at byte " +
                             std::to_string(document.GetErrorOffset()));
  }
  return document;
}

void rate(JsonWriter& out, std::uint64_t edits, std::uint64_t of) {
  if (of == 0) {
    out.Null();
  } else {
    out.Double(static_cast<double>(edits) / static_cast<double>(of));
  }
}

std::string csvRate(std::uint64_t edits, std::uint64_t of) {
  if (of == 0) return "";
  char buffer[32];
  std::snprintf(buffer, sizeof buffer, "%.6f", static_cast<double>(edits) / static_cast<double>(of));
  return buffer;
}

// A field quoted when it holds a separator, a quote or a line break.
std::string csvField(const std::string& field) {
  if (field.find_first_of(",\"\r\n") == std::string::npos) return field;
  std::string out = "\"";
  for (const char c : field) {
    if (c == '"') out += '"';
    out += c;
  }
  out += '"';
  return out;
}

void writeCounts(JsonWriter& out, const DocumentCounts& counts, bool withWords, bool named) {
  out.StartObject();
  out.Key("cer");
  rate(out, counts.characterEdits, counts.characters);
  out.Key("character_edits");
  out.Uint64(counts.characterEdits);
  out.Key("characters");
  out.Uint64(counts.characters);
  out.Key("errors_ocr");
  out.Uint64(counts.errorsOcr);
  out.Key("errors_truth");
  out.Uint64(counts.errorsTruth);
  out.Key("length_ocr");
  out.Uint64(counts.lengthOcr);
  out.Key("length_truth");
  out.Uint64(counts.lengthTruth);
  if (named) {
    out.Key("name");
    out.String(counts.name);
  }
  out.Key("ocr_characters");
  out.Uint64(counts.ocrCharacters);
  if (withWords) {
    out.Key("ocr_words");
    out.Uint64(counts.ocrWords);
  }
  out.Key("pages");
  out.Uint64(counts.pages);
  if (named) {
    out.Key("recognition");
    out.String(counts.recognition);
    out.Key("truth");
    out.String(counts.truth);
  }
  if (withWords) {
    out.Key("wer");
    rate(out, counts.wordEdits, counts.words);
    out.Key("word_edits");
    out.Uint64(counts.wordEdits);
    out.Key("words");
    out.Uint64(counts.words);
  }
  out.EndObject();
}

DocumentCounts readCounts(const Value& object, bool withWords) {
  const char* where = "a document of the summary";
  DocumentCounts counts;
  counts.name = text(object, "name", where);
  counts.truth = text(object, "truth", where);
  counts.recognition = text(object, "recognition", where);
  counts.pages = count(object, "pages", where);
  counts.characters = count(object, "characters", where);
  counts.characterEdits = count(object, "character_edits", where);
  counts.ocrCharacters = count(object, "ocr_characters", where);
  if (withWords) {
    counts.words = count(object, "words", where);
    counts.wordEdits = count(object, "word_edits", where);
    counts.ocrWords = count(object, "ocr_words", where);
  }
  counts.errorsOcr = count(object, "errors_ocr", where);
  counts.lengthOcr = count(object, "length_ocr", where);
  counts.errorsTruth = count(object, "errors_truth", where);
  counts.lengthTruth = count(object, "length_truth", where);
  return counts;
}

std::string percent(std::uint64_t edits, std::uint64_t of) {
  if (of == 0) return "   n/a  ";
  char buffer[32];
  std::snprintf(buffer, sizeof buffer, "%6.2f %%",
                100.0 * static_cast<double>(edits) / static_cast<double>(of));
  return buffer;
}

}  // namespace

void DocumentCounts::add(const DocumentCounts& other) {
  pages += other.pages;
  characters += other.characters;
  characterEdits += other.characterEdits;
  ocrCharacters += other.ocrCharacters;
  words += other.words;
  wordEdits += other.wordEdits;
  ocrWords += other.ocrWords;
  errorsOcr += other.errorsOcr;
  lengthOcr += other.lengthOcr;
  errorsTruth += other.errorsTruth;
  lengthTruth += other.lengthTruth;
}

DocumentCounts CorpusSummary::totals() const {
  DocumentCounts sum;
  for (const DocumentCounts& document : documents) sum.add(document);
  return sum;
}

DocumentCounts countsFromResult(const std::string& resultJson) {
  const rapidjson::Document document = parse(resultJson, "comparison result");
  const char* where = "the comparison result";
  const Value& root = member(document, "root", where);
  const Value& metrics = member(root, "metrics", where);
  DocumentCounts counts;
  counts.pages = member(root, "children", where).IsArray() ? member(root, "children", where).Size() : 0;
  counts.characters = count(metrics, "characters", where);
  counts.characterEdits = count(metrics, "character_edits", where);
  counts.ocrCharacters = count(metrics, "ocr_characters", where);
  if (metrics.HasMember("words")) {
    counts.words = count(metrics, "words", where);
    counts.wordEdits = count(metrics, "word_edits", where);
    counts.ocrWords = count(metrics, "ocr_words", where);
  }
  const auto side = [&](const char* name, std::uint64_t& errors, std::uint64_t& length) {
    const Value& layout = member(root, name, where);
    if (layout.IsNull()) return;
    const Value& stats = member(layout, "stats", where);
    errors = count(stats, "error", where);
    length = count(stats, "length", where);
  };
  side("left", counts.errorsOcr, counts.lengthOcr);
  side("right", counts.errorsTruth, counts.lengthTruth);
  return counts;
}

std::string summaryToJson(const CorpusSummary& summary) {
  rapidjson::StringBuffer buffer;
  JsonWriter out(buffer);
  out.SetIndent(' ', 1);
  out.StartObject();
  out.Key("documents");
  out.StartArray();
  for (const DocumentCounts& document : summary.documents) {
    writeCounts(out, document, summary.withWords, true);
  }
  out.EndArray();
  out.Key("failed");
  out.StartArray();
  for (const FailedDocument& failed : summary.failed) {
    out.StartObject();
    out.Key("error");
    out.String(failed.error);
    out.Key("name");
    out.String(failed.name);
    out.EndObject();
  }
  out.EndArray();
  out.Key("level");
  out.String(summary.level);
  out.Key("normalization");
  out.String(summary.normalization);
  out.Key("totals");
  writeCounts(out, summary.totals(), summary.withWords, false);
  out.Key("unit");
  out.String(summary.unit);
  out.EndObject();
  return std::string(buffer.GetString(), buffer.GetSize()) + "\n";
}

CorpusSummary summaryFromJson(const std::string& json) {
  const rapidjson::Document document = parse(json, "summary");
  const char* where = "the summary";
  CorpusSummary summary;
  summary.level = text(document, "level", where);
  summary.normalization = text(document, "normalization", where);
  summary.unit = text(document, "unit", where);
  summary.withWords = summary.level != "glyph";
  const Value& documents = member(document, "documents", where);
  const Value& failed = member(document, "failed", where);
  if (!documents.IsArray() || !failed.IsArray()) {
    throw std::runtime_error("the summary's \"documents\" and \"failed\" must be arrays");
  }
  for (const Value& item : documents.GetArray()) {
    summary.documents.push_back(readCounts(item, summary.withWords));
  }
  for (const Value& item : failed.GetArray()) {
    summary.failed.push_back({text(item, "name", "a failed document"),
                              text(item, "error", "a failed document")});
  }
  return summary;
}

std::string summaryToCsv(const CorpusSummary& summary) {
  std::string out =
      "name,truth,recognition,pages,characters,character_edits,ocr_characters,cer,words,"
      "word_edits,ocr_words,wer,errors_ocr,length_ocr,errors_truth,length_truth\n";
  const auto row = [&out, &summary](const DocumentCounts& d) {
    const auto n = [](std::uint64_t value) { return std::to_string(value) + ","; };
    out += csvField(d.name) + "," + csvField(d.truth) + "," + csvField(d.recognition) + ",";
    out += n(d.pages) + n(d.characters) + n(d.characterEdits) + n(d.ocrCharacters);
    out += csvRate(d.characterEdits, d.characters) + ",";
    if (summary.withWords) {
      out += n(d.words) + n(d.wordEdits) + n(d.ocrWords) + csvRate(d.wordEdits, d.words) + ",";
    } else {
      out += ",,,,";
    }
    out += n(d.errorsOcr) + n(d.lengthOcr) + n(d.errorsTruth) + std::to_string(d.lengthTruth);
    out += "\n";
  };
  for (const DocumentCounts& document : summary.documents) row(document);
  DocumentCounts total = summary.totals();
  total.name = "(total)";
  row(total);
  return out;
}

void mergeSummary(CorpusSummary& whole, const CorpusSummary& part) {
  if (whole.level != part.level || whole.normalization != part.normalization ||
      whole.unit != part.unit) {
    throw std::runtime_error("summaries count different things: level " + whole.level + "/" +
                             part.level + ", normalization " + whole.normalization + "/" +
                             part.normalization + ", unit " + whole.unit + "/" + part.unit);
  }
  std::set<std::string> names;
  for (const DocumentCounts& document : whole.documents) names.insert(document.name);
  for (const DocumentCounts& document : part.documents) {
    if (!names.insert(document.name).second) {
      throw std::runtime_error("document \"" + document.name +
                               "\" is in two summaries; it would be counted twice");
    }
    whole.documents.push_back(document);
  }
  whole.failed.insert(whole.failed.end(), part.failed.begin(), part.failed.end());
}

std::string totalsText(const CorpusSummary& summary) {
  const DocumentCounts t = summary.totals();
  const auto counted = [](std::size_t n, const char* what) {
    return std::to_string(n) + " " + what + (n == 1 ? "" : "s");
  };
  std::string out = counted(summary.documents.size(), "document") + ", " +
                    counted(t.pages, "page") + " compared at " + summary.level + " level";
  if (!summary.failed.empty()) out += ", " + std::to_string(summary.failed.size()) + " failed";
  out += "\n  CER " + percent(t.characterEdits, t.characters) + "  " +
         std::to_string(t.characterEdits) + " edits / " + std::to_string(t.characters) +
         " characters (" + summary.unit + "s, normalization " + summary.normalization + ")\n";
  if (summary.withWords) {
    out += "  WER " + percent(t.wordEdits, t.words) + "  " + std::to_string(t.wordEdits) +
           " edits / " + std::to_string(t.words) + " words\n";
  }
  return out;
}

}  // namespace ormida::cli
