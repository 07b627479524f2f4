// ConfigJson.cpp - depth-limited, iterative parse of a configuration document.
#include "dataextract/ConfigJson.h"

#include "base/QentException.h"
#include "base/Unicode.h"
#include "base/json/DepthLimitedParse.h"

#include <rapidjson/error/en.h>
#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>

#include <stdexcept>
#include <vector>

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

namespace {

bool validText(const rapidjson::Value& value) {
  return base::findInvalidUtf8(std::string_view(value.GetString(), value.GetStringLength())) ==
         std::string_view::npos;
}

// The bytes were checked before parsing, but an escape ("\udc00") can still spell a lone
// surrogate, which the parser stores as bytes that are no UTF-8; every later conversion of
// that name or keyword would fail. Refused here, where the message can say so.
void refuseLoneSurrogates(const rapidjson::Value& root, const std::string& what) {
  std::vector<const rapidjson::Value*> pending{&root};
  while (!pending.empty()) {
    const rapidjson::Value& value = *pending.back();
    pending.pop_back();
    if (value.IsString() && !validText(value)) {
      failConfig(what, "a string escapes a lone surrogate (\\ud800 to \\udfff unpaired)");
    }
    if (value.IsArray()) {
      for (const rapidjson::Value& element : value.GetArray()) pending.push_back(&element);
    } else if (value.IsObject()) {
      for (const auto& member : value.GetObject()) {
        pending.push_back(&member.name);
        pending.push_back(&member.value);
      }
    }
  }
}

}  // namespace

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
  refuseLoneSurrogates(document, what);
  return document;
}

}  // namespace qent::dataextract
