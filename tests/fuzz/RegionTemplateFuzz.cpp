// RegionTemplateFuzz.cpp - fuzz target of the region template reader: any bytes give
// templates or the documented option error (20020), and templates that read are evaluated
// on a small page to a result that is itself JSON.
#include "base/QentException.h"
#include "dataextract/RegionEvaluation.h"
#include "dataextract/RegionTemplate.h"
#include "layout/Nodes.h"

#include <rapidjson/document.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string_view>

namespace {

std::unique_ptr<qent::text::layout::Page> samplePage() {
  using namespace qent::text::layout;
  auto page = std::make_unique<Page>();
  page->setWidth(2000);
  page->setHeight(3000);
  Line& line = page->appendChild(std::make_unique<Line>());
  const char16_t* texts[] = {u"Rechnungsnummer:", u"RE-2026", u"Total"};
  for (int i = 0; i < 3; ++i) {
    Word& word = line.appendChild(std::make_unique<Word>());
    word.setText(texts[i]);
    word.setRect({100 + 400 * i, 300, 380, 50});
  }
  return page;
}

void failWith(const char* what, const char* detail) {
  std::fprintf(stderr, "%s: %s\n", what, detail);
  std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const auto page = samplePage();
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  std::vector<qent::dataextract::RegionTemplate> regions;
  try {
    regions = qent::dataextract::parseRegionTemplates(input);
  } catch (const qent::base::QentException& e) {
    if (e.code() != qent::base::kErrorOption) failWith("unexpected error code", e.what());
    return 0;
  }
  for (const double threshold : {0.0, 0.5}) {
    std::string result;
    try {
      result = qent::dataextract::evaluateRegions(*page, regions, threshold);
    } catch (const qent::base::QentException& e) {
      if (e.code() != qent::base::kErrorOption) failWith("unexpected error code", e.what());
      continue;
    }
    rapidjson::Document document;
    if (document.Parse(result.c_str()).HasParseError()) failWith("result is not JSON", result.c_str());
  }
  return 0;
}
