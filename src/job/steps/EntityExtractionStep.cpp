// EntityExtractionStep.cpp - sensitive entities of the main document.
#include "dataextract/EntityExtractionOptions.h"
#include "job/JobExecution.h"
#include "job/PropertyStore.h"
#include "job/property_table.h"
#include "job/steps/JobSteps.h"
#include "job/steps/NotBuiltYet.h"

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

}  // namespace

void entityExtraction(JobExecution& execution) {
  readOptions(execution.properties());
  requireBuilt(kEntityExtraction);
}

}  // namespace qent::job::steps
