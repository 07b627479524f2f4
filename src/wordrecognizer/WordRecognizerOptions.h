// WordRecognizerOptions.h - how the word recognizer judges a text and where it reports.
//
// Unset numbers keep the recognizer's own defaults.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace qent::text::wordrecognizer {

struct WordRecognizerOptions {
  std::u16string rejectedWordsFilename;
  std::u16string recognizedWordsFilename;
  std::u16string statisticsFilename;
  std::u16string dictionaryWorkSpace;  // empty: the job's WorkSpace
  std::u16string inputFormat;
  std::u16string options;
  std::u16string statisticsOutputFormat;
  std::optional<bool> statisticsPerPage;
  std::optional<std::uint32_t> largeWordLimit;
  std::optional<std::uint32_t> smallWordLimit;
  std::optional<std::uint32_t> garbageThreshold;
  std::optional<double> textAcceptThreshold;
};

}  // namespace qent::text::wordrecognizer
