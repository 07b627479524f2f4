// RecognizerSettings.cpp - reading the Options tokens, formats and limits.
#include "wordrecognizer/RecognizerSettings.h"

#include "base/QentException.h"
#include "base/Unicode.h"
#include "wordrecognizer/Language.h"

#include <optional>
#include <string_view>

namespace qent::text::wordrecognizer {

namespace {

using base::equalsIgnoreAsciiCase;

[[noreturn]] void fail(const std::string& message) {
  throw base::QentException(base::kErrorOption, message);
}

std::optional<ReportFormat> formatFromName(std::string_view name) {
  if (equalsIgnoreAsciiCase(name, "text") || equalsIgnoreAsciiCase(name, "FormatText")) {
    return ReportFormat::Text;
  }
  if (equalsIgnoreAsciiCase(name, "csv") || equalsIgnoreAsciiCase(name, "FormatCsv")) {
    return ReportFormat::Csv;
  }
  if (equalsIgnoreAsciiCase(name, "json") || equalsIgnoreAsciiCase(name, "FormatJSON")) {
    return ReportFormat::Json;
  }
  return std::nullopt;
}

TextEncoding encodingFromName(const std::u16string& value) {
  const std::string name = base::utf16ToUtf8Lenient(value);
  struct Named {
    std::string_view name;
    TextEncoding encoding;
  };
  constexpr Named kEncodings[] = {
      {"auto", TextEncoding::Auto},       {"utf8", TextEncoding::Utf8},
      {"utf-8", TextEncoding::Utf8},      {"utf16le", TextEncoding::Utf16Le},
      {"utf16be", TextEncoding::Utf16Be}, {"latin1", TextEncoding::Latin1},
      {"cp1252", TextEncoding::Cp1252},
  };
  if (name.empty()) return TextEncoding::Auto;
  for (const Named& named : kEncodings) {
    if (equalsIgnoreAsciiCase(name, named.name)) return named.encoding;
  }
  fail("unsupported WordRecognizer.InputFormat: " + name);
}

std::string_view trim(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t");
  if (first == std::string_view::npos) return {};
  const std::size_t last = text.find_last_not_of(" \t");
  return text.substr(first, last - first + 1);
}

// "ALL;FormatCsv, Language=eng" - tokens split at ";" or ",", names without case.
void readOptionTokens(const std::u16string& value, RecognizerSettings& settings,
                      std::optional<ReportFormat>& flagFormat) {
  const std::string text = base::utf16ToUtf8Lenient(value);
  std::size_t start = 0;
  while (start <= text.size()) {
    std::size_t end = text.find_first_of(";,", start);
    if (end == std::string::npos) end = text.size();
    const std::string_view token = trim(std::string_view(text).substr(start, end - start));
    start = end + 1;
    if (token.empty()) continue;
    const std::size_t equals = token.find('=');
    const std::string_view name = trim(token.substr(0, equals));
    const std::string_view argument =
        equals == std::string_view::npos ? std::string_view() : trim(token.substr(equals + 1));
    if (equals != std::string_view::npos && equalsIgnoreAsciiCase(name, "Language") &&
        !argument.empty()) {
      settings.language = normaliseLanguage(argument);
    } else if (equals != std::string_view::npos && equalsIgnoreAsciiCase(name, "DigramTable") &&
               !argument.empty()) {
      settings.digramTable = base::utf8ToUtf16Lenient(argument);
    } else if (equals == std::string_view::npos && equalsIgnoreAsciiCase(name, "ALL")) {
      settings.reportAll = true;
    } else if (equals == std::string_view::npos && equalsIgnoreAsciiCase(name, "NoMarkWords")) {
      settings.markWords = false;
    } else if (equals == std::string_view::npos && equalsIgnoreAsciiCase(name, "NoDehyphenate")) {
      settings.dehyphenate = false;
    } else if (equals == std::string_view::npos && name.size() > 6 &&
               equalsIgnoreAsciiCase(name.substr(0, 6), "Format") && formatFromName(name)) {
      // Only the flag names (FormatCsv, ...); the bare "csv" belongs to the property.
      flagFormat = formatFromName(name);
    } else {
      fail("unknown option in WordRecognizer.Options: " + std::string(token));
    }
  }
}

}  // namespace

RecognizerSettings readSettings(const WordRecognizerOptions& options) {
  RecognizerSettings settings;
  if (options.smallWordLimit) settings.smallWordLimit = *options.smallWordLimit;
  if (options.largeWordLimit) settings.largeWordLimit = *options.largeWordLimit;
  if (options.garbageThreshold) settings.garbageThreshold = *options.garbageThreshold;
  if (options.textAcceptThreshold) settings.textAcceptThreshold = *options.textAcceptThreshold;
  if (options.statisticsPerPage) settings.statisticsPerPage = *options.statisticsPerPage;
  if (settings.smallWordLimit >= settings.largeWordLimit) {
    fail("WordRecognizer.SmallWordLimit must be smaller than LargeWordLimit");
  }
  settings.encoding = encodingFromName(options.inputFormat);

  std::optional<ReportFormat> flagFormat;
  readOptionTokens(options.options, settings, flagFormat);
  if (flagFormat) settings.format = *flagFormat;
  // The dedicated property names the form outright, so it wins over a flag in Options.
  if (!options.statisticsOutputFormat.empty()) {
    const std::string name = base::utf16ToUtf8Lenient(options.statisticsOutputFormat);
    const std::optional<ReportFormat> format = formatFromName(name);
    if (!format) fail("unsupported WordRecognizer.StatisticsOutputFormat: " + name);
    settings.format = *format;
  }
  return settings;
}

}  // namespace qent::text::wordrecognizer
