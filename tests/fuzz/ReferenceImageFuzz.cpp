// ReferenceImageFuzz.cpp - fuzz target of the reference image header reader: any bytes give a
// size or nothing, never a crash, and a size given is a real one.
#include "bestof/ReferenceImage.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto found =
      qent::bestof::imageSize(std::string_view(reinterpret_cast<const char*>(data), size));
  if (found && (found->width < 1 || found->height < 1)) std::abort();
  return 0;
}
