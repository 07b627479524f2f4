// RecognizerSettings.h - the word recognizer's options checked and with their defaults
// filled in, so the recognizer itself never sees a raw property text.
#pragma once

#include "wordrecognizer/WordRecognizerOptions.h"

#include <cstdint>
#include <string>

namespace qent::text::wordrecognizer {

enum class ReportFormat { Text, Csv, Json };
enum class TextEncoding { Auto, Utf8, Utf16Le, Utf16Be, Latin1, Cp1252 };

struct RecognizerSettings {
  std::uint32_t smallWordLimit = 2;
  std::uint32_t largeWordLimit = 6;
  std::uint32_t garbageThreshold = 3;
  double textAcceptThreshold = 0.5;
  bool statisticsPerPage = false;
  ReportFormat format = ReportFormat::Text;
  TextEncoding encoding = TextEncoding::Auto;
  bool reportAll = false;       // frequency lists, per-length counts and the garbage list
  bool markWords = true;        // x_checked / x_rejected on the layout's words and pages
  bool dehyphenate = true;
  std::string language;         // ISO 639-2/T, overrides pages and letters when set
  std::u16string digramTable;   // an explicitly named table, else the default lookup
};

// Throws QentException 20020 with a message naming the bad option.
RecognizerSettings readSettings(const WordRecognizerOptions& options);

}  // namespace qent::text::wordrecognizer
