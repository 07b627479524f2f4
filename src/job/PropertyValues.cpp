// PropertyValues.cpp - typed reading of property values.
#include "job/PropertyValues.h"

#include "base/NumberConversion.h"
#include "base/TraceLog.h"
#include "base/Unicode.h"

#include <stdexcept>

namespace qent::job {

namespace {

// Numbers are ASCII; a value with broken UTF-16 still gets the conversion's own error.
std::string narrow(std::u16string_view value) { return base::utf16ToUtf8Lenient(value); }

}  // namespace

bool toBoolean(std::u16string_view value) {
  return !(value.empty() || value == u"0" || value == u"false" || value == u"no");
}

std::int32_t toInteger(std::u16string_view value) { return base::parseInt(narrow(value)); }
std::uint32_t toUnsigned(std::u16string_view value) {
  return base::parseUnsigned(narrow(value));
}
double toDouble(std::u16string_view value) { return base::parseDouble(narrow(value)); }

float toFloatOr(std::u16string_view value, float fallback) {
  try {
    return base::parseFloat(narrow(value));
  } catch (const std::out_of_range& e) {
    base::TraceLog::write(std::string("float property out of range ") + e.what(),
                          base::kTraceError);
  } catch (const std::invalid_argument& e) {
    base::TraceLog::write(std::string("invalid argument in float property ") + e.what(),
                          base::kTraceError);
  }
  return fallback;
}

}  // namespace qent::job
