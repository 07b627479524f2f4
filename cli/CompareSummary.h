// CompareSummary.h - a short human-readable summary of a comparison result document
// (the Compare.Result JSON): recognition rates, error counts and f1, for the document and
// per page.
#pragma once

#include <string>

namespace ormida::cli {

// The summary text, lines ending in "\n". A text that is not a comparison result gives a
// one-line note saying so instead of failing.
std::string compareSummary(const std::string& resultJson);

}  // namespace ormida::cli
