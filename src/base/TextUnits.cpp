// TextUnits.cpp - normalisation and grapheme clusters over utf8proc.
#include "base/TextUnits.h"

#include "base/QentException.h"
#include "base/Unicode.h"

#if ORMIDA_HAVE_UTF8PROC
#include <utf8proc.h>
#endif

#include <cstdlib>
#include <memory>

namespace qent::base {

namespace {

#if !ORMIDA_HAVE_UTF8PROC
[[noreturn]] void missingSegmentation(std::string_view what) {
  std::string message = "this build of the library cannot ";
  message += what;
  message += " (built without utf8proc)";
  throw QentException(kErrorOption, message);
}
#endif

bool isAscii(std::u32string_view text) {
  for (const char32_t c : text) {
    if (c >= 0x80) return false;
  }
  return true;
}

}  // namespace

Normalization normalizationFromName(std::u16string_view name) {
  const std::string narrow = toLowerAscii(utf16ToUtf8Lenient(name));
  if (narrow == "none") return Normalization::None;
  if (narrow == "nfc") return Normalization::Nfc;
  if (narrow == "nfkc") return Normalization::Nfkc;
  throw QentException(kErrorOption,
                      "unknown normalization \"" + narrow + "\"; use none, nfc or nfkc");
}

std::string_view normalizationName(Normalization normalization) {
  switch (normalization) {
    case Normalization::Nfc: return "nfc";
    case Normalization::Nfkc: return "nfkc";
    default: return "none";
  }
}

bool hasUnicodeSegmentation() { return ORMIDA_HAVE_UTF8PROC != 0; }

std::u32string normalizedCodePoints(std::u16string_view text, Normalization normalization) {
  std::u32string points = utf16ToCodePoints(text);
  // ASCII is the same in every normalisation form.
  if (normalization == Normalization::None || isAscii(points)) return points;
#if ORMIDA_HAVE_UTF8PROC
  const std::string utf8 = utf16ToUtf8Lenient(text);
  int options = UTF8PROC_STABLE | UTF8PROC_COMPOSE;
  if (normalization == Normalization::Nfkc) options |= UTF8PROC_COMPAT;
  utf8proc_uint8_t* mapped = nullptr;
  const utf8proc_ssize_t size =
      utf8proc_map(reinterpret_cast<const utf8proc_uint8_t*>(utf8.data()),
                   static_cast<utf8proc_ssize_t>(utf8.size()), &mapped,
                   static_cast<utf8proc_option_t>(options));
  const std::unique_ptr<utf8proc_uint8_t, decltype(&std::free)> owned(mapped, &std::free);
  if (size < 0) {
    throw QentException(kErrorOption, std::string("Unicode normalization failed: ") +
                                          utf8proc_errmsg(size));
  }
  return utf8ToCodePoints(std::string_view(reinterpret_cast<const char*>(mapped),
                                           static_cast<std::size_t>(size)));
#else
  missingSegmentation("normalize text");
#endif
}

std::vector<std::size_t> graphemeBoundaries(std::u32string_view text) {
  std::vector<std::size_t> starts;
  starts.reserve(text.size() + 1);
#if ORMIDA_HAVE_UTF8PROC
  utf8proc_int32_t state = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (i == 0 || utf8proc_grapheme_break_stateful(static_cast<utf8proc_int32_t>(text[i - 1]),
                                                   static_cast<utf8proc_int32_t>(text[i]),
                                                   &state)) {
      starts.push_back(i);
    }
  }
#else
  if (!text.empty()) missingSegmentation("count grapheme clusters");
#endif
  starts.push_back(text.size());
  return starts;
}

bool isWhiteSpace(char32_t c) {
  return (c >= 0x09 && c <= 0x0D) || c == 0x20 || c == 0x85 || c == 0xA0 || c == 0x1680 ||
         (c >= 0x2000 && c <= 0x200A) || c == 0x2028 || c == 0x2029 || c == 0x202F ||
         c == 0x205F || c == 0x3000;
}

}  // namespace qent::base
