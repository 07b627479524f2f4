// ExtractionSummary.cpp - reads the error-rate document and lays it out as a short table.
#include "ExtractionSummary.h"

#include <rapidjson/document.h>

#include <cstdio>
#include <string>

namespace ormida::cli {

namespace {

using Value = rapidjson::Value;

const Value* number(const Value& object, const char* name) {
  const auto found = object.FindMember(name);
  if (found == object.MemberEnd() || !found->value.IsNumber()) return nullptr;
  return &found->value;
}

// The numbers are our own and the tool never changes its C locale, so "%f" prints a point.
std::string percent(double rate) {
  char buffer[64];
  std::snprintf(buffer, sizeof buffer, "%7.2f %%", rate * 100.0);
  return buffer;
}

}  // namespace

std::string extractionSummary(const std::string& errorRateJson) {
  const std::string notOurs = "(the result is not an extraction error-rate result)\n";
  rapidjson::Document document;
  document.Parse<rapidjson::kParseIterativeFlag>(errorRateJson.c_str(), errorRateJson.size());
  if (document.HasParseError() || !document.IsObject()) return notOurs;
  const Value* rate = number(document, "errorRate");
  const Value* worst = number(document, "maxErrorRate");
  const auto pages = document.FindMember("pageErrorRates");
  if (rate == nullptr || worst == nullptr || pages == document.MemberEnd() ||
      !pages->value.IsArray()) {
    return notOurs;
  }
  // Appended piece by piece: GCC 12 warns falsely on "literal" + a temporary string.
  std::string out = "Extraction comparison: error rate inside the reference zones\n";
  out += "  document   ";
  out += percent(rate->GetDouble());
  out += "\n  worst page ";
  out += percent(worst->GetDouble());
  out += "\n";
  if (pages->value.Empty()) return out;
  out += "\n  page  error rate\n";
  unsigned page = 0;
  for (const Value& value : pages->value.GetArray()) {
    char label[16];
    std::snprintf(label, sizeof label, "  %4u  ", ++page);
    out += label;
    out += value.IsNumber() ? percent(value.GetDouble()) : std::string("?");
    out += "\n";
  }
  return out;
}

}  // namespace ormida::cli
