// StatisticsReport.h - the recognizer's statistics as a text report, a CSV table or JSON.
//
// Text and CSV lines end with CR LF; numbers print locale-independently (integers in
// decimal, measures in the shortest of fixed or scientific notation with six significant
// digits, as a default-formatted stream prints them). JSON members come in ascending key
// order; "PageStatistics" is an object keyed by page name.
#pragma once

#include "wordrecognizer/RecognizerSettings.h"
#include "wordrecognizer/WordRecognizer.h"

#include <string>

namespace qent::text::wordrecognizer {

struct ReportInput {
  const RecognitionResult& result;
  std::string inputName;  // the document's path, for the CSV column
  bool perPage = false;
  bool all = false;       // frequency lists, per-length counts, garbage ranges (text form)
  double acceptThreshold = 0.5;
};

std::string writeReport(const ReportInput& input, ReportFormat format);

// "word\tcount" lines, CR LF, most frequent first, then by word.
std::string writeWordList(const std::map<std::u16string, std::uint64_t>& frequency);

}  // namespace qent::text::wordrecognizer
