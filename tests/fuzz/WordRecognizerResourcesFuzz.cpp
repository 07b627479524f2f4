// WordRecognizerResourcesFuzz.cpp - fuzz target of the word recognizer's resource readers:
// the digram score table, the stop-word list and the user word list. Any bytes give a
// table or list, or the readers' documented error (a QentException naming the input).
#include "base/QentException.h"
#include "wordrecognizer/DigramTable.h"
#include "wordrecognizer/WordListReader.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace wr = qent::text::wordrecognizer;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  try {
    const wr::DigramTable table = wr::DigramTable::parse(input, "fuzz.digram");
    // Every score is a digit, whatever pair is asked for.
    for (char16_t a : {u'a', u'\u00E4', u'Z', u'\u4E00'}) {
      if (table.score(a, u'e') > 9) std::abort();
    }
  } catch (const qent::base::QentException& e) {
    if (e.code() != qent::base::kErrorOption) std::abort();
  }
  try {
    for (const auto& word : wr::parseStopWords(input, "fuzz.stop")) {
      if (word.empty()) std::abort();  // blank lines are skipped, never words
    }
    wr::parseWordList(input, "fuzz.user.txt");
  } catch (const qent::base::QentException& e) {
    if (e.code() != qent::base::kErrorOption) {
      std::fprintf(stderr, "unexpected error code %u: %s\n", e.code(), e.what());
      std::abort();
    }
  }
  return 0;
}
