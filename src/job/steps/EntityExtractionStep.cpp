// EntityExtractionStep.cpp - sensitive entities of the main document.
#include "base/QentException.h"
#include "base/Unicode.h"
#include "base/platform/platform.h"
#include "dataextract/EntityConfiguration.h"
#include "dataextract/EntityExtractionOptions.h"
#include "dataextract/EntityExtractor.h"
#include "job/JobExecution.h"
#include "job/OrmidaJob.h"
#include "job/PropertyStore.h"
#include "job/property_table.h"
#include "job/steps/JobSteps.h"
#include "wordrecognizer/ResourceFolders.h"

#include <stdexcept>

namespace qent::job::steps {

namespace {

dataextract::EntityExtractionOptions readOptions(const PropertyStore& properties) {
  dataextract::EntityExtractionOptions options;
  for (const auto& [sub, value] : properties.subProperties(kEntityExtraction)) {
    if (sub == kConfiguration) options.configuration = value;
    if (sub == kOutputFilename) options.outputFilename = value;
  }
  return options;
}

constexpr const char* kDefaultConfiguration = "entities/default.json";

// The caller's configuration, else the one shipped in the library's data folder.
std::filesystem::path configurationFile(JobExecution& execution, const std::u16string& named) {
  if (!named.empty()) return execution.resolve(named);
  using text::wordrecognizer::ResourceFolders;
  const auto folders = ResourceFolders::dataFoldersOf(base::platform::modulePath());
  for (const std::filesystem::path& folder : folders) {
    const std::filesystem::path file = folder / base::platform::pathFromUtf8(kDefaultConfiguration);
    if (ResourceFolders::isFile(file)) return file;
  }
  throw base::QentException(base::kErrorOption,
                            std::string("Entity configuration: no EntityExtraction.Configuration "
                                        "given and the default ") +
                                kDefaultConfiguration + " is not in " +
                                ResourceFolders::describe(folders));
}

}  // namespace

void entityExtraction(JobExecution& execution) {
  const dataextract::EntityExtractionOptions options = readOptions(execution.properties());
  const auto configuration = dataextract::EntityConfiguration::load(
      configurationFile(execution, options.configuration));
  OrmidaJob& job = execution.job();
  const text::layout::format::Document& main = *job.documents().front();
  if (main.layout() == nullptr) {
    throw std::runtime_error("Entity extraction needs a layout; " + main.name() + " is plain text");
  }
  text::layout::Node* root = main.layout()->root();
  const std::string result = root != nullptr
                                 ? dataextract::extractEntities(*root, configuration)
                                 : std::string(R"({"entities":[]})");
  // Kept for the caller as well: the steps after this one see the marks in the layout.
  job.setSubResult(kEntityExtraction, kResult, base::utf8ToUtf16(result));
  execution.writeResultFile(options.outputFilename, result);
}

}  // namespace qent::job::steps
