// HocrReaderFuzz.cpp - fuzz target of the hOCR reader in both dialects: any bytes give a
// layout or one of the reader's documented exceptions; what the strict dialect reads the
// writer writes as a document the reader takes back, and from then on writing and reading
// change nothing. The HTML writer makes a well-formed document of whatever was read.
#include "base/QentException.h"
#include "hocr/HocrWriter.h"
#include "hocr/PugiHocrReader.h"
#include "layout/Layout.h"
#include "layout/Node.h"
#include "layout/format/PlainTextWriter.h"
#include "layout/format/html/HtmlWriter.h"

#include <pugixml.hpp>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <string_view>

using qent::text::hocr::HocrWriter;
using qent::text::hocr::PugiHocrReader;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  std::unique_ptr<qent::text::layout::Layout> layout;
  // The tolerant dialect reads more (and what is not XML through the HTML parse), with the
  // same exceptions; every writer takes what it builds.
  try {
    layout = PugiHocrReader(PugiHocrReader::Dialect::Tolerant).read(input);
  } catch (const qent::base::QentException& e) {
    if (e.code() != qent::base::kErrorHocr) std::abort();
  } catch (const std::logic_error&) {  // invalid_argument, out_of_range: as below
  }
  if (layout) {
    qent::text::layout::format::PlainTextWriter().write(*layout);
    HocrWriter().write(*layout);
  }
  try {
    layout = PugiHocrReader().read(input);
  } catch (const qent::base::QentException& e) {
    if (e.code() != qent::base::kErrorHocr) std::abort();
    return 0;
  } catch (const std::invalid_argument&) {
    return 0;  // "Width or Height of Rectangle must be > 0", "invalid stod argument", ...
  } catch (const std::out_of_range&) {
    return 0;  // "stod argument out of range", ...
  }
  qent::text::layout::format::PlainTextWriter().write(*layout);
  const std::string html = qent::text::layout::format::html::HtmlWriter().write(*layout);
  if (!pugi::xml_document().load_buffer(html.data(), html.size())) {
    std::fprintf(stderr, "the HTML is not well-formed:\n%s\n", html.c_str());
    std::abort();
  }

  // The first write may drop what hOCR cannot say; the document it gives must read back,
  // and the next round must reproduce it byte for byte.
  const std::string first = HocrWriter().write(*layout);
  const std::string second = HocrWriter().write(*PugiHocrReader().read(first));
  const std::string third = HocrWriter().write(*PugiHocrReader().read(second));
  if (third != second) {
    std::fprintf(stderr, "round trip changed the document:\n%s\n%s\n", second.c_str(),
                 third.c_str());
    std::abort();
  }
  return 0;
}
