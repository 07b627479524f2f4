// NumberConversion.h - locale-independent number parsing and printing.
//
// The library runs inside its caller's process, whose C locale may use a decimal comma;
// none of these functions consult it. The parsers follow the standard stoi/stoul/stod
// rules (leading white space skipped, optional sign, trailing text ignored) and fail with
// the same exception types and, unlike libstdc++, the same texts on every platform:
// "invalid stoi argument", "stoi argument out of range", and so on.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace qent::base {

std::int32_t parseInt(std::string_view text);      // stoi
std::uint32_t parseUnsigned(std::string_view text); // stoul, with a 32-bit unsigned long
double parseDouble(std::string_view text);         // stod
float parseFloat(std::string_view text);           // stof
long double parseLongDouble(std::string_view text); // stold
// stoull-like, used for addresses and sizes that need all 64 bits.
std::uint64_t parseUnsigned64(std::string_view text);

// printf's "%f" / "%Lf": fixed notation with six decimals, always a decimal point.
std::string formatFixed6(double value);
std::string formatFixed6(long double value);
// Shortest text that reads back to the same double ("0.5", "1e+300").
std::string formatShortest(double value);

}  // namespace qent::base
