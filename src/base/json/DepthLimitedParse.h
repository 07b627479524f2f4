// DepthLimitedParse.h - a RapidJSON DOM parse that stops as soon as values nest deeper than a
// limit, so that a hostile document can neither make the tree of values huge nor, with the
// iterative parser, the stack deep.
#pragma once

#include <rapidjson/document.h>
#include <rapidjson/reader.h>

#include <cmath>
#include <cstddef>
#include <cstdint>

namespace qent::base::json {

struct DepthLimitedResult {
  rapidjson::ParseResult result;
  bool tooDeep = false;  // the parse stopped at a value nested deeper than the limit
};

namespace detail {

// Forwards the parser's events to the document until values nest too deep.
class DepthLimit {
public:
  DepthLimit(rapidjson::Document& document, std::size_t maxDepth)
      : document_(document), maxDepth_(maxDepth) {}

  bool Null() { return document_.Null(); }
  bool Bool(bool b) { return document_.Bool(b); }
  bool Int(int i) { return document_.Int(i); }
  bool Uint(unsigned u) { return document_.Uint(u); }
  bool Int64(std::int64_t i) { return document_.Int64(i); }
  bool Uint64(std::uint64_t u) { return document_.Uint64(u); }
  // The parser's quick path turns a number just above the largest double (1.9e308) into
  // infinity instead of reporting it too big; no reader could do anything sound with it.
  bool Double(double d) {
    if (!std::isfinite(d)) {
      numberTooBig_ = true;
      return false;
    }
    return document_.Double(d);
  }
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
  bool numberTooBig() const { return numberTooBig_; }

private:
  bool enter() {
    if (++depth_ > maxDepth_) tooDeep_ = true;
    return !tooDeep_;
  }

  rapidjson::Document& document_;
  const std::size_t maxDepth_;
  std::size_t depth_ = 0;
  bool tooDeep_ = false;
  bool numberTooBig_ = false;
};

}  // namespace detail

// Parses the stream into the document with the iterative parser and the given extra flags.
template <unsigned kFlags, class Stream>
DepthLimitedResult parseDepthLimited(rapidjson::Document& document, Stream& stream,
                                     std::size_t maxDepth) {
  DepthLimitedResult out;
  auto generate = [&](rapidjson::Document& target) {
    detail::DepthLimit limit(target, maxDepth);
    rapidjson::Reader reader;
    out.result = reader.Parse<rapidjson::kParseIterativeFlag | kFlags>(stream, limit);
    out.tooDeep = limit.tooDeep();
    if (limit.numberTooBig()) {
      out.result.Set(rapidjson::kParseErrorNumberTooBig, out.result.Offset());
    }
    return !out.result.IsError();
  };
  document.Populate(generate);
  return out;
}

}  // namespace qent::base::json
