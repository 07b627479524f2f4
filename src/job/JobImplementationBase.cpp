// JobImplementationBase.cpp - property setting common to all jobs.
#include "job/JobImplementationBase.h"

#include "base/TraceLog.h"
#include "base/Unicode.h"
#include "job/property_table.h"

#include <cstdint>

namespace qent::job {

JobImplementationBaseDummy::~JobImplementationBaseDummy() = default;

JobImplementationBase::JobImplementationBase() = default;

JobImplementationBase::~JobImplementationBase() = default;

bool JobImplementationBase::setPropertyById(std::uint32_t number, const std::u16string& value) {
  properties_.setPlain(number, value);
  return true;
}

bool JobImplementationBase::setProperty(const std::u16string& name, const std::u16string& value) {
  // Names are ASCII; a name with broken UTF-16 simply resolves to nothing.
  const std::string narrowName = base::utf16ToUtf8Lenient(name);
  if (const std::uint32_t number = propertyNumber(narrowName); number != kUnknownProperty) {
    return setPropertyById(number, value);
  }
  const std::size_t dot = name.find(u'.');
  if (dot != std::u16string::npos) {
    const std::uint32_t mainNumber = propertyNumber(narrowName.substr(0, narrowName.find('.')));
    if (mainNumber != kUnknownProperty) {
      properties_.appendSub(mainNumber, name.substr(dot + 1), value);
      if (base::TraceLog::isOn()) {
        base::TraceLog::write("setting property for job [" +
                                  std::to_string(reinterpret_cast<std::uintptr_t>(this)) +
                                  "]: " + narrowName + " value: \"" +
                                  base::utf16ToUtf8Lenient(value) + "\"",
                              base::kTraceInfo);
      }
      return true;
    }
  }
  properties_.appendUnknown(name, value);
  return false;
}

}  // namespace qent::job
