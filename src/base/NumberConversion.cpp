// NumberConversion.cpp - stoi/stod look-alikes over from_chars/to_chars.
#include "base/NumberConversion.h"

#include "base/platform/platform.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <system_error>
#include <type_traits>

namespace qent::base {

namespace {

bool isBlank(char c) {
  return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r';
}

std::string_view skipBlanks(std::string_view text) {
  std::size_t i = 0;
  while (i < text.size() && isBlank(text[i])) ++i;
  return text.substr(i);
}

[[noreturn]] void invalid(const char* fn) {
  throw std::invalid_argument(std::string("invalid ") + fn + " argument");
}
[[noreturn]] void outOfRange(const char* fn) {
  throw std::out_of_range(std::string(fn) + " argument out of range");
}

struct Signed {
  bool negative = false;
  std::string_view digits;
};

Signed splitSign(std::string_view text) {
  Signed s;
  text = skipBlanks(text);
  if (!text.empty() && (text[0] == '+' || text[0] == '-')) {
    s.negative = text[0] == '-';
    text.remove_prefix(1);
  }
  s.digits = text;
  return s;
}

// Reads the leading decimal digits as a magnitude; false when it overflows 64 bits.
bool readMagnitude(std::string_view digits, const char* fn, std::uint64_t& value) {
  if (digits.empty() || digits[0] < '0' || digits[0] > '9') invalid(fn);
  const auto [ptr, ec] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  (void)ptr;
  return ec != std::errc::result_out_of_range;
}

template <class T>
T parseFloating(std::string_view text, const char* fn) {
  const Signed s = splitSign(text);
  // from_chars takes no '+', so the sign is handled here; it would also take a second
  // sign after ours, which strtod does not.
  if (s.digits.empty() || s.digits[0] == '-' || s.digits[0] == '+') invalid(fn);
  T value{};
  const char* first = s.digits.data();
  const char* last = first + s.digits.size();
  // long double goes through the platform layer: MinGW's from_chars reads it as a double.
  const auto [ptr, ec] = [&] {
    if constexpr (std::is_same_v<T, long double>) {
      return platform::longDoubleFromChars(first, last, value);
    } else {
      return std::from_chars(first, last, value, std::chars_format::general);
    }
  }();
  (void)ptr;
  if (ec == std::errc::invalid_argument) invalid(fn);
  if (ec == std::errc::result_out_of_range) outOfRange(fn);
  return s.negative ? -value : value;
}

template <class T>
std::string toChars(T value, std::chars_format format, int precision) {
  char buffer[5000];  // a long double in fixed notation can need about 4,950 digits
  // long double goes through the platform layer: MinGW prints it with the C locale's point.
  const auto [ptr, ec] = [&] {
    if constexpr (std::is_same_v<T, long double>) {
      return platform::longDoubleToChars(buffer, buffer + sizeof buffer, value, format, precision);
    } else {
      return std::to_chars(buffer, buffer + sizeof buffer, value, format, precision);
    }
  }();
  if (ec != std::errc()) return "nan";
  return std::string(buffer, ptr);
}

// printf prints non-finite values as "inf", "-inf" and "nan"/"-nan".
template <class T>
std::string fixed6(T value) {
  if (std::isnan(value)) return std::signbit(value) ? "-nan" : "nan";
  if (std::isinf(value)) return value < 0 ? "-inf" : "inf";
  return toChars(value, std::chars_format::fixed, 6);
}

}  // namespace

std::int32_t parseInt(std::string_view text) {
  const Signed s = splitSign(text);
  std::uint64_t magnitude = 0;
  if (!readMagnitude(s.digits, "stoi", magnitude)) outOfRange("stoi");
  const std::uint64_t limit = s.negative ? 2147483648ULL : 2147483647ULL;
  if (magnitude > limit) outOfRange("stoi");
  return s.negative ? static_cast<std::int32_t>(-static_cast<std::int64_t>(magnitude))
                    : static_cast<std::int32_t>(magnitude);
}

std::uint32_t parseUnsigned(std::string_view text) {
  const Signed s = splitSign(text);
  std::uint64_t magnitude = 0;
  if (!readMagnitude(s.digits, "stoul", magnitude)) outOfRange("stoul");
  if (magnitude > std::numeric_limits<std::uint32_t>::max()) outOfRange("stoul");
  // strtoul negates a leading minus in unsigned arithmetic; so do we.
  const auto value = static_cast<std::uint32_t>(magnitude);
  return s.negative ? static_cast<std::uint32_t>(0u - value) : value;
}

std::uint64_t parseUnsigned64(std::string_view text) {
  const Signed s = splitSign(text);
  std::uint64_t magnitude = 0;
  if (s.negative) invalid("stoull");
  if (!readMagnitude(s.digits, "stoull", magnitude)) outOfRange("stoull");
  return magnitude;
}

double parseDouble(std::string_view text) { return parseFloating<double>(text, "stod"); }
float parseFloat(std::string_view text) { return parseFloating<float>(text, "stof"); }
long double parseLongDouble(std::string_view text) {
  return parseFloating<long double>(text, "stold");
}

std::string formatFixed6(double value) { return fixed6(value); }
std::string formatFixed6(long double value) { return fixed6(value); }

std::string formatShortest(double value) {
  if (std::isnan(value)) return "nan";
  if (std::isinf(value)) return value < 0 ? "-inf" : "inf";
  char buffer[64];
  const auto [ptr, ec] = std::to_chars(buffer, buffer + sizeof buffer, value);
  (void)ec;
  return std::string(buffer, ptr);
}

}  // namespace qent::base
