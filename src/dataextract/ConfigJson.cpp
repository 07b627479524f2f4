// ConfigJson.cpp - depth-limited, iterative parse of a configuration document.
#include "dataextract/ConfigJson.h"

#include "base/QentException.h"
#include "base/Unicode.h"
#include "base/json/DepthLimitedParse.h"

#include <rapidjson/error/en.h>
#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>

#include <stdexcept>

namespace qent::dataextract {

void failConfig(const std::string& what, const std::string& detail) {
  std::string message = what;
  message += ": ";
  message += detail;
  throw base::QentException(base::kErrorOption, message);
}

std::string configText(std::u16string_view text, const std::string& what) {
  try {
    return base::utf16ToUtf8(text);
  } catch (const std::invalid_argument& e) {
    failConfig(what, std::string("not valid Unicode: ") + e.what());
  }
}

rapidjson::Document parseConfigJson(std::string_view text, const std::string& what) {
  // Editors on Windows like to start a UTF-8 file with a byte-order mark.
  if (text.substr(0, 3) == "\xEF\xBB\xBF") text.remove_prefix(3);
  if (const std::size_t bad = base::findInvalidUtf8(text); bad != std::string_view::npos) {
    failConfig(what, "not valid UTF-8 (byte " + std::to_string(bad) + ")");
  }
  rapidjson::Document document;
  rapidjson::MemoryStream bytes(text.data(), text.size());
  const auto [result, tooDeep] =
      base::json::parseDepthLimited<rapidjson::kParseStopWhenDoneFlag>(document, bytes,
                                                                        kMaxConfigDepth);
  if (tooDeep) {
    failConfig(what, "values nested deeper than " + std::to_string(kMaxConfigDepth) + " levels");
  }
  if (result.IsError()) {
    failConfig(what, std::string("not valid JSON: ") + rapidjson::GetParseError_En(result.Code()) +
                         " (byte " + std::to_string(result.Offset()) + ")");
  }
  // The stream reads a NUL byte as its end; only white space may follow the document.
  for (std::size_t i = bytes.Tell(); i < text.size(); ++i) {
    const char c = text[i];
    if (c != ' ' && c != '\t' && c != '\n' && c != '\r') {
      failConfig(what, "not valid JSON: text after the document (byte " + std::to_string(i) + ")");
    }
  }
  return document;
}

}  // namespace qent::dataextract
