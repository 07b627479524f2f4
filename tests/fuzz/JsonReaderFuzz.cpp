// JsonReaderFuzz.cpp - fuzz target of the JSON layout reader: any bytes give a layout or one
// of the reader's documented exceptions, and what it reads is written and read back stably.
#include "base/QentException.h"
#include "layout/Layout.h"
#include "layout/format/JSONReader.h"
#include "layout/format/JSONWriter.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <string_view>

using qent::text::layout::format::JSONReader;
using qent::text::layout::format::JSONWriter;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  std::string written;
  try {
    written = JSONWriter().write(*JSONReader().read(input));
  } catch (const qent::base::QentException&) {
    return 0;  // the documented failures; anything else escapes and is reported
  } catch (const std::invalid_argument&) {
    return 0;
  }
  // A tree the reader built holds only what the format carries, so its document must come
  // back byte for byte.
  const std::string again = JSONWriter().write(*JSONReader().read(written));
  if (again != written) {
    std::fprintf(stderr, "round trip changed the document:\n%s\n%s\n", written.c_str(),
                 again.c_str());
    std::abort();
  }
  return 0;
}
