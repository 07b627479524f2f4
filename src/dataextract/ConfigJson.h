// ConfigJson.h - reads the small JSON documents a caller configures the data extraction with
// (region templates, entity configurations) into a RapidJSON DOM.
#pragma once

#include <rapidjson/document.h>

#include <string>
#include <string_view>

namespace qent::dataextract {

// Parses `text` with the iterative parser, so no nesting reaches the stack, and stops at
// kMaxConfigDepth levels, so no nesting makes the DOM huge. Invalid UTF-8, text that is not
// JSON and too deep nesting throw QentException 20020 "<what>: <reason>" naming the byte
// offset; `what` names the document for the caller ("Region template").
inline constexpr std::size_t kMaxConfigDepth = 32;
rapidjson::Document parseConfigJson(std::string_view text, const std::string& what);

// A property's text in UTF-8; a lone surrogate in it fails as "<what>: not valid Unicode".
std::string configText(std::u16string_view text, const std::string& what);

// "<what>: <detail>" as QentException 20020: the option error of the job layer.
[[noreturn]] void failConfig(const std::string& what, const std::string& detail);

}  // namespace qent::dataextract
