// CorpusSummary.h - the counts of a compared corpus, document by document, and their
// totals. Summaries hold counts, never only rates, so partial summaries of one corpus (from
// several machines or runs) merge into exactly the summary of the whole.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace ormida::cli {

struct DocumentCounts {
  std::string name;  // the shared name stem of the pair
  std::string truth;
  std::string recognition;
  std::uint64_t pages = 0;
  // Error counts over characters and words (see the library's metrics documentation).
  std::uint64_t characters = 0;
  std::uint64_t characterEdits = 0;
  std::uint64_t ocrCharacters = 0;
  std::uint64_t words = 0;
  std::uint64_t wordEdits = 0;
  std::uint64_t ocrWords = 0;
  // The library's own figures over UTF-16 code units (or nodes): errors and units compared
  // on each side, from which its recognition rates follow.
  std::uint64_t errorsOcr = 0;
  std::uint64_t lengthOcr = 0;
  std::uint64_t errorsTruth = 0;
  std::uint64_t lengthTruth = 0;

  void add(const DocumentCounts& other);
};

struct FailedDocument {
  std::string name;
  std::string error;
};

struct CorpusSummary {
  // What the counts mean; summaries that differ in any of these cannot be merged.
  std::string level = "word";
  std::string normalization = "none";
  std::string unit = "codepoint";
  bool withWords = true;
  std::vector<DocumentCounts> documents;
  std::vector<FailedDocument> failed;

  // Sums over the documents: every character weighs the same, whichever document holds it.
  DocumentCounts totals() const;
};

// The counts of one comparison result document (Compare.Result with metrics). Throws
// std::runtime_error when the text is not such a document.
DocumentCounts countsFromResult(const std::string& resultJson);

std::string summaryToJson(const CorpusSummary& summary);
// Throws std::runtime_error naming what is wrong when the text is not a summary.
CorpusSummary summaryFromJson(const std::string& json);
// One row per document, a last row "(total)"; failed documents are not rows.
std::string summaryToCsv(const CorpusSummary& summary);
// Adds part to whole. Throws std::runtime_error when the two count different things or
// share a document name (it would be counted twice).
void mergeSummary(CorpusSummary& whole, const CorpusSummary& part);
// The totals for people: CER and WER with their counts, the library's recognition rates.
std::string totalsText(const CorpusSummary& summary);

}  // namespace ormida::cli
