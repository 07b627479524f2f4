// ConfigJson.cpp - depth-limited, iterative parse of a configuration document.
#include "dataextract/ConfigJson.h"

#include "base/QentException.h"
#include "base/Unicode.h"

#include <rapidjson/error/en.h>
#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>

#include <stdexcept>

namespace qent::dataextract {

namespace {

// Forwards the parser's events to the document until values nest too deep.
class DepthLimit {
public:
  explicit DepthLimit(rapidjson::Document& document) : document_(document) {}

  bool Null() { return document_.Null(); }
  bool Bool(bool b) { return document_.Bool(b); }
  bool Int(int i) { return document_.Int(i); }
  bool Uint(unsigned u) { return document_.Uint(u); }
  bool Int64(std::int64_t i) { return document_.Int64(i); }
  bool Uint64(std::uint64_t u) { return document_.Uint64(u); }
  bool Double(double d) { return document_.Double(d); }
  bool RawNumber(const char* s, rapidjson::SizeType n, bool copy) {
    return document_.RawNumber(s, n, copy);
  }
  bool String(const char* s, rapidjson::SizeType n, bool copy) {
    return document_.String(s, n, copy);
  }
  bool Key(const char* s, rapidjson::SizeType n, bool copy) { return document_.Key(s, n, copy); }
  bool StartObject() { return enter() && document_.StartObject(); }
  bool EndObject(rapidjson::SizeType members) {
    --depth_;
    return document_.EndObject(members);
  }
  bool StartArray() { return enter() && document_.StartArray(); }
  bool EndArray(rapidjson::SizeType elements) {
    --depth_;
    return document_.EndArray(elements);
  }

  bool tooDeep() const { return tooDeep_; }

private:
  bool enter() {
    if (++depth_ > kMaxConfigDepth) tooDeep_ = true;
    return !tooDeep_;
  }

  rapidjson::Document& document_;
  std::size_t depth_ = 0;
  bool tooDeep_ = false;
};

}  // namespace

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
  rapidjson::ParseResult result;
  bool tooDeep = false;
  auto generate = [&](rapidjson::Document& target) {
    DepthLimit limit(target);
    rapidjson::Reader reader;
    result = reader.Parse<rapidjson::kParseIterativeFlag | rapidjson::kParseStopWhenDoneFlag>(
        bytes, limit);
    tooDeep = limit.tooDeep();
    return !result.IsError();
  };
  document.Populate(generate);
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
