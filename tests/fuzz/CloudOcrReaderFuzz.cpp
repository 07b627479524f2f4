// CloudOcrReaderFuzz.cpp - fuzz target of the cloud-OCR JSON reader: any bytes give a layout
// or one of the reader's documented errors, and every layout it builds can be written as a
// JSON layout and as WebAnno TSV and read back.
#include "base/QentException.h"
#include "layout/Layout.h"
#include "layout/Node.h"
#include "layout/format/CloudOcrReader.h"
#include "layout/format/JSONReader.h"
#include "layout/format/JSONWriter.h"
#include "layout/format/WebAnnoWriter.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

using qent::text::layout::Layout;
using qent::text::layout::format::CloudOcrReader;
using qent::text::layout::format::JSONReader;
using qent::text::layout::format::JSONWriter;
using qent::text::layout::format::WebAnnoWriter;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  std::unique_ptr<Layout> layout;
  try {
    layout = CloudOcrReader().read(input);
  } catch (const qent::base::QentException& e) {
    if (e.code() != qent::base::kErrorJson) {
      std::fprintf(stderr, "unexpected error code %u: %s\n", e.code(), e.what());
      std::abort();
    }
    return 0;  // the documented failures; anything else escapes and is reported
  }
  // The reader checked every text and number, so the writers must not refuse anything.
  const std::string json = JSONWriter().write(*layout);
  JSONReader().read(json);
  WebAnnoWriter().write(*layout);
  return 0;
}
