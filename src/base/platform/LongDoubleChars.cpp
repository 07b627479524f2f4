// LongDoubleChars.cpp - long double printed with a precision, with a '.' whatever the C
// locale; shared by both platforms, whose libraries differ only in how often they err.
#include "base/platform/platform.h"

#include <algorithm>

namespace qent::base::platform {

std::to_chars_result longDoubleToChars(char* first, char* last, long double value,
                                       std::chars_format format, int precision) {
  const std::to_chars_result result = std::to_chars(first, last, value, format, precision);
  if (result.ec != std::errc() || format == std::chars_format::hex) return result;
  // Digits, then whatever the locale calls its decimal point, then digits and perhaps an
  // exponent: put a '.' in the point's place. Reading the output instead of asking the
  // locale also holds when another thread switches locales meanwhile.
  auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
  char* p = first;
  if (p != result.ptr && *p == '-') ++p;
  if (p == result.ptr || !isDigit(*p)) return result;  // "inf", "nan"
  while (p != result.ptr && isDigit(*p)) ++p;
  char* pointEnd = p;
  while (pointEnd != result.ptr && !isDigit(*pointEnd) && *pointEnd != 'e') ++pointEnd;
  if (pointEnd == p) return result;  // no point
  *p = '.';
  char* end = std::copy(pointEnd, result.ptr, p + 1);
  return {end, std::errc()};
}

}  // namespace qent::base::platform
