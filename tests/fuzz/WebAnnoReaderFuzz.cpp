// WebAnnoReaderFuzz.cpp - fuzz target of the WebAnno TSV reader: any bytes give a layout or
// the reader's documented error, and what the writer makes of a read layout reads back and
// writes again to the same text.
#include "base/QentException.h"
#include "layout/Layout.h"
#include "layout/Node.h"
#include "layout/format/WebAnnoReader.h"
#include "layout/format/WebAnnoWriter.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

using qent::text::layout::format::WebAnnoReader;
using qent::text::layout::format::WebAnnoWriter;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  std::string written;
  try {
    written = WebAnnoWriter().write(*WebAnnoReader().read(input));
  } catch (const qent::base::QentException& e) {
    if (e.code() != qent::base::kErrorHocr) {
      std::fprintf(stderr, "unexpected error code %u: %s\n", e.code(), e.what());
      std::abort();
    }
    return 0;  // the documented failures; anything else escapes and is reported
  }
  // The reader splits at tabs and line breaks, so no text it keeps can hold one, and the
  // writer's rows read back into the same words, marks and sentences.
  const std::string again = WebAnnoWriter().write(*WebAnnoReader().read(written));
  if (again != written) {
    std::fprintf(stderr, "round trip changed the document:\n%s\n%s\n", written.c_str(),
                 again.c_str());
    std::abort();
  }
  return 0;
}
