// BarePugixmlParse.cpp - the floor for reading an hOCR file: a whole process that reads the
// file into one buffer and lets pugixml parse it in place with its default options, and
// nothing else. The hOCR benchmarks set the tool's load against this program's time and
// peak memory.
#include <pugixml.hpp>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: %s FILE\n", argv[0]);
    return 2;
  }
  std::ifstream in(argv[1], std::ios::binary);
  std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  if (!in && !in.eof()) {
    std::fprintf(stderr, "cannot read %s\n", argv[1]);
    return 1;
  }
  pugi::xml_document document;
  const pugi::xml_parse_result parsed = document.load_buffer_inplace(
      bytes.data(), bytes.size(), pugi::parse_default, pugi::encoding_utf8);
  if (!parsed) {
    std::fprintf(stderr, "%s at offset %lld\n", parsed.description(),
                 static_cast<long long>(parsed.offset));
    return 1;
  }
  std::printf("%s\n", document.first_child().name());
  return 0;
}
