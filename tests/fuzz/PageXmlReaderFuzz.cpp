// PageXmlReaderFuzz.cpp - fuzz target of the PAGE XML reader: any bytes give a layout or one of
// the reader's documented errors, and whatever it reads its own writer writes as a document
// the reader takes back; the other XML writer writes it too.
#include "base/QentException.h"
#include "layout/Layout.h"
#include "layout/Node.h"
#include "layout/format/page/PageXmlReader.h"
#include "layout/format/page/PageXmlWriter.h"
#include "layout/format/alto/AltoWriter.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

using qent::text::layout::Layout;
using namespace qent::text::layout::format;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  std::unique_ptr<Layout> layout;
  try {
    layout = PageXmlReader().read(input);
  } catch (const qent::base::QentException& e) {
    if (e.code() != qent::base::kErrorHocr) {
      std::fprintf(stderr, "unexpected error code %u: %s\n", e.code(), e.what());
      std::abort();
    }
    return 0;  // the documented failures; anything else escapes and is reported
  }
  try {
    PageXmlReader().read(PageXmlWriter().write(*layout));
    AltoWriter().write(*layout);
  } catch (const std::runtime_error& e) {
    // PAGE XML holds one page per document; its writer refuses more, and nothing else.
    if (std::string_view(e.what()).find("one page per document") == std::string_view::npos) throw;
  }
  return 0;
}
