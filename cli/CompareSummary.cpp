// CompareSummary.cpp - reads the comparison result document and lays it out as a table.
#include "CompareSummary.h"

#include <rapidjson/document.h>

#include <cstdio>
#include <string>

namespace ormida::cli {

namespace {

using Value = rapidjson::Value;

const Value* member(const Value& object, const char* name) {
  if (!object.IsObject()) return nullptr;
  const auto found = object.FindMember(name);
  return found == object.MemberEnd() ? nullptr : &found->value;
}

double number(const Value* object, const char* name) {
  const Value* value = object != nullptr ? member(*object, name) : nullptr;
  return value != nullptr && value->IsNumber() ? value->GetDouble() : 0.0;
}

unsigned long long count(const Value* object, const char* name) {
  const Value* value = object != nullptr ? member(*object, name) : nullptr;
  return value != nullptr && value->IsUint64() ? value->GetUint64() : 0;
}

// Text of printf-style formatting; numbers here are our own, and the C locale of this tool
// is never changed, so "%.2f" prints a decimal point.
template <class... Args>
std::string format(const char* pattern, Args... args) {
  char buffer[256];
  std::snprintf(buffer, sizeof buffer, pattern, args...);
  return buffer;
}

std::string percent(double rate) { return format("%6.2f %%", rate * 100.0); }

// The statistics of one side of a page pair, or null when the page is missing.
const Value* pageStatistics(const Value& pair, const char* side) {
  const Value* page = member(pair, side);
  if (page == nullptr || !page->IsObject()) return nullptr;
  return member(*page, "statistic");
}

// "  3.45 %" of edits over a count, or "n/a" when nothing was there to count against.
std::string rate(const Value* metrics, const char* edits, const char* of) {
  const unsigned long long n = count(metrics, of);
  if (n == 0) return "   n/a  ";
  return percent(static_cast<double>(count(metrics, edits)) / static_cast<double>(n));
}

// CER and WER as OCR-evaluation users know them, each with what it counted.
std::string metricsLines(const Value& metrics) {
  const Value* unit = member(metrics, "unit");
  const Value* normalization = member(metrics, "normalization");
  std::string out = format(
      "  CER               %s  (%llu edits / %llu GT characters; %s, normalization %s)\n",
      rate(&metrics, "character_edits", "characters").c_str(), count(&metrics, "character_edits"),
      count(&metrics, "characters"), unit != nullptr && unit->IsString() ? unit->GetString() : "?",
      normalization != nullptr && normalization->IsString() ? normalization->GetString() : "?");
  if (member(metrics, "words") != nullptr) {
    out += format("  WER               %s  (%llu edits / %llu GT words)\n",
                  rate(&metrics, "word_edits", "words").c_str(), count(&metrics, "word_edits"),
                  count(&metrics, "words"));
  }
  return out;
}

}  // namespace

std::string compareSummary(const std::string& resultJson) {
  rapidjson::Document document;
  document.Parse<rapidjson::kParseIterativeFlag>(resultJson.c_str(), resultJson.size());
  const Value* root = document.HasParseError() ? nullptr : member(document, "root");
  const Value* diff = root != nullptr ? member(*root, "diff") : nullptr;
  if (diff == nullptr) return "(the result is not a comparison result)\n";

  const Value* level = member(*root, "compare");
  const std::string unit = level != nullptr && level->IsString() ? level->GetString() : "node";
  const Value* left = member(*root, "left");
  const Value* right = member(*root, "right");
  const Value* leftStats = left != nullptr ? member(*left, "stats") : nullptr;
  const Value* rightStats = right != nullptr ? member(*right, "stats") : nullptr;

  std::string out;
  out += "Comparison at " + unit + " level: recognition (left) against reference (right)\n";
  const Value* metrics = member(*root, "metrics");
  if (metrics != nullptr) out += metricsLines(*metrics);
  out += "  recognition rate  " + percent(number(diff, "recognition_rate_left")) + " left, " +
         percent(number(diff, "recognition_rate_right")) + " right\n";
  out += format("  errors            %llu of %llu left, %llu of %llu right\n",
                count(diff, "error_count_left"), count(leftStats, "length"),
                count(diff, "error_count_right"), count(rightStats, "length"));
  out += format("  edits             %llu (good %llu)\n", count(diff, "edits"), count(diff, "good"));
  out += format("  f1 measure        %.4f\n", number(diff, "f1_measure"));

  const Value* children = member(*root, "children");
  if (children == nullptr || !children->IsArray() || children->Empty()) return out;
  out += "\n  page  rate left  rate right  errors left  errors right      f1";
  out += metrics != nullptr ? "       CER       WER\n" : "\n";
  unsigned page = 0;
  for (const Value& pair : children->GetArray()) {
    ++page;
    const Value* l = pageStatistics(pair, "left");
    const Value* r = pageStatistics(pair, "right");
    const std::string rateLeft = l != nullptr ? percent(number(l, "recognition_rate")) : "missing";
    const std::string rateRight = r != nullptr ? percent(number(r, "recognition_rate")) : "missing";
    out += format("  %4u  %9s  %10s  %11llu  %12llu  %.4f", page, rateLeft.c_str(),
                  rateRight.c_str(), count(l, "error"), count(r, "error"),
                  number(&pair, "f1_measure"));
    if (const Value* pageMetrics = metrics != nullptr ? member(pair, "metrics") : nullptr) {
      out += "  " + rate(pageMetrics, "character_edits", "characters") + "  " +
             (member(*pageMetrics, "words") != nullptr ? rate(pageMetrics, "word_edits", "words")
                                                      : std::string("   n/a  "));
    }
    out += "\n";
  }
  return out;
}

}  // namespace ormida::cli
