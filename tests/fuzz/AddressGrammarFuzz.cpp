// AddressGrammarFuzz.cpp - fuzz target of the address grammar: any text gives the two
// decisions and a result that is itself JSON, and never an exception.
#include "base/Unicode.h"
#include "dataextract/address/AddressRecognizer.h"

#include <rapidjson/document.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::u16string text = qent::base::utf8ToUtf16Lenient(
      std::string_view(reinterpret_cast<const char*>(data), size));
  // Any answer will do; what counts is that none throws, crashes or hangs.
  (void)qent::dataextract::isRecipientText(text);
  (void)qent::dataextract::isSenderText(text);
  const std::string result = qent::dataextract::recognizeAddressesInText(text);
  rapidjson::Document document;
  if (document.Parse(result.c_str()).HasParseError() || !document.IsObject() ||
      !document.HasMember("recipient") || !document.HasMember("sender")) {
    std::fprintf(stderr, "result is not the address JSON: %s\n", result.c_str());
    std::abort();
  }
  return 0;
}
