// ExtractionSummary.h - a short human-readable summary of the extraction comparison's error
// rates (the CompareErrorRate JSON): the document's rate, the worst page and every page.
#pragma once

#include <string>

namespace ormida::cli {

// The summary text, lines ending in "\n". A text that is not the error-rate document gives a
// one-line note saying so instead of failing.
std::string extractionSummary(const std::string& errorRateJson);

}  // namespace ormida::cli
