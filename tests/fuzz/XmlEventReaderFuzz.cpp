// XmlEventReaderFuzz.cpp - differential fuzz target: the streaming XML reader, whole and in
// pieces, must accept what pugixml accepts and give the events of pugixml's tree.
#include "../hocr/XmlEvents.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  const std::string want = qent::test::domEvents(input);
  const std::string whole = qent::test::streamedEvents(input);
  const std::string pieces = qent::test::streamedEvents(input, size / 3, 1 + size % 7);
  if (whole != want || pieces != want) {
    std::fprintf(stderr, "pugixml:\n%s\nwhole:\n%s\nin pieces:\n%s\n", want.c_str(), whole.c_str(),
                 pieces.c_str());
    std::abort();
  }
  return 0;
}
