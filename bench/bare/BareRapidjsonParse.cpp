// BareRapidjsonParse.cpp - the floor for reading a JSON layout file: a whole process that
// reads the file into one buffer and builds RapidJSON's DOM of it (copying, validating
// parse), and nothing else. The JSON benchmarks set the tool's load against this program's
// time and peak memory.
#include <rapidjson/document.h>

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
  rapidjson::Document document;
  document.Parse<rapidjson::kParseValidateEncodingFlag>(bytes.data(), bytes.size());
  if (document.HasParseError()) {
    std::fprintf(stderr, "parse error %d at offset %zu\n",
                 static_cast<int>(document.GetParseError()), document.GetErrorOffset());
    return 1;
  }
  std::printf("%u\n", document.IsObject() ? document.MemberCount() : 0U);
  return 0;
}
