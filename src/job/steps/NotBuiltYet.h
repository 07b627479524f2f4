// NotBuiltYet.h - the operations this build does not contain yet.
#pragma once

#include <cstdint>

namespace qent::job::steps {

// Throws QentException 20020 "<operation> is not available in this build of Ormida" when
// the operation switched on by `switchProperty` is not built yet; returns otherwise. A
// step calls it after reading and checking its options, so bad options fail as they will
// once the operation exists, and nothing pretends to have run.
void requireBuilt(std::uint32_t switchProperty);

}  // namespace qent::job::steps
