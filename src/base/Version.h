// Version.h - the library's version in the three forms callers see; they must agree.
#pragma once

#include <cstdint>

namespace qent::base {

inline constexpr std::uint32_t kVersionNumber = 0x01070000;  // major 1, minor 7
inline constexpr const char* kVersionText = "Ormida 1.7.0.170980";
inline constexpr const char* kVersionTraceLine = "Ormida 1.7.0 64 bit";

}  // namespace qent::base
