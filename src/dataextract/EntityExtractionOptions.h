// EntityExtractionOptions.h - what the entity extractor is configured with.
#pragma once

#include <string>

namespace qent::dataextract {

struct EntityExtractionOptions {
  std::u16string configuration;   // the extractor's configuration file
  std::u16string outputFilename;  // receives the entities JSON when set
};

}  // namespace qent::dataextract
