// PropertyValues.h - how a property's wide-string value reads as a boolean or a number.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace qent::job {

// Empty, "0", "false" and "no" (exactly, case-sensitive) are false; anything else is true.
bool toBoolean(std::u16string_view value);

// Decimal numbers with the standard library's rules and error texts
// ("invalid stoi argument", "stod argument out of range", ...).
std::int32_t toInteger(std::u16string_view value);
std::uint32_t toUnsigned(std::u16string_view value);
double toDouble(std::u16string_view value);

// A float that falls back to `fallback` on a bad value, writing the reason to the trace
// log at error level instead of failing the execution.
float toFloatOr(std::u16string_view value, float fallback);

}  // namespace qent::job
