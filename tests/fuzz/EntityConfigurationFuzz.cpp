// EntityConfigurationFuzz.cpp - fuzz target of the entity configuration reader: any bytes
// give a configuration or the documented option error (20020), and a configuration that
// reads is run on a small page to a result that is itself JSON.
#include "base/QentException.h"
#include "dataextract/EntityConfiguration.h"
#include "dataextract/EntityExtractor.h"
#include "layout/Nodes.h"

#include <rapidjson/document.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string_view>

namespace {

std::unique_ptr<qent::text::layout::Page> samplePage() {
  using namespace qent::text::layout;
  auto page = std::make_unique<Page>();
  Line& line = page->appendChild(std::make_unique<Line>());
  const char16_t* texts[] = {u"IBAN", u"DE89", u"3704", u"0044", u"0532", u"0130", u"00",
                             u"Erika", u"Beispiel", u"14.03.2026", u"max@beispiel.de"};
  int left = 0;
  for (const char16_t* text : texts) {
    Word& word = line.appendChild(std::make_unique<Word>());
    word.setText(text);
    word.setRect({left, 0, 200, 50});
    left += 220;
  }
  return page;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  // Word lists are looked up beside the shipped configuration, as for the default one.
  static const std::filesystem::path folder =
      std::filesystem::path(ORMIDA_SOURCE_DIR) / "data" / "entities";
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  try {
    const auto configuration = qent::dataextract::EntityConfiguration::parse(input, folder);
    const auto page = samplePage();
    const std::string result = qent::dataextract::extractEntities(*page, configuration);
    rapidjson::Document document;
    if (document.Parse(result.c_str()).HasParseError()) {
      std::fprintf(stderr, "result is not JSON: %s\n", result.c_str());
      std::abort();
    }
  } catch (const qent::base::QentException& e) {
    if (e.code() != qent::base::kErrorOption) {
      std::fprintf(stderr, "unexpected error code %u: %s\n", e.code(), e.what());
      std::abort();
    }
  }
  return 0;
}
