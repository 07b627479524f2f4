// NotBuiltYet.cpp - the one list of operations still to come; a row goes when its
// operation lands.
#include "job/steps/NotBuiltYet.h"

#include "base/QentException.h"
#include "job/property_table.h"

#include <string>

namespace qent::job::steps {

namespace {

struct Unbuilt {
  std::uint32_t switchProperty;
  const char* name;
};
constexpr Unbuilt kNotBuiltYet[] = {
    {kAddressRecognition, "Address recognition (AddressRecognition)"},
};

}  // namespace

void requireBuilt(std::uint32_t switchProperty) {
  for (const Unbuilt& unbuilt : kNotBuiltYet) {
    if (unbuilt.switchProperty == switchProperty) {
      throw base::QentException(base::kErrorOption, std::string(unbuilt.name) +
                                                        " is not available in this build of Ormida");
    }
  }
}

}  // namespace qent::job::steps
