// ExtractionComparisonStep.cpp - the main layout measured inside the zones of a reference.
#include "job/JobExecution.h"
#include "job/OrmidaJob.h"
#include "job/PropertyStore.h"
#include "job/PropertyValues.h"
#include "job/property_table.h"
#include "job/steps/JobSteps.h"
#include "job/steps/NotBuiltYet.h"
#include "layout/comparison/ExtractionOptions.h"

#include <stdexcept>

namespace qent::job::steps {

namespace {

namespace comparison = text::layout::comparison;

struct StepOptions {
  comparison::ExtractionOptions extraction;
  std::u16string with;
};

StepOptions readOptions(const PropertyStore& properties) {
  StepOptions options;
  comparison::ExtractionOptions& extraction = options.extraction;
  for (const auto& [sub, value] : properties.subProperties(kExtractFromLayout)) {
    switch (sub) {
      case kLevel: extraction.level = comparison::levelFromName(value); break;
      case kEditDistance: extraction.editDistance = toBoolean(value); break;
      case kPartialSegmentationErrors: extraction.partialSegmentationErrors = toBoolean(value); break;
      case kPageOffset: extraction.pageOffset = toInteger(value); break;
      case kRemoveMatchingBoxes: extraction.removeMatchingBoxes = toBoolean(value); break;
      case kTransformStrategy: extraction.alignment = comparison::alignmentFromName(value); break;
      case kWith: options.with = value; break;
      default: break;
    }
  }
  return options;
}

}  // namespace

void extractionComparison(JobExecution& execution) {
  const StepOptions options = readOptions(execution.properties());
  auto reference = execution.loadOptional(options.with);
  if (!reference && execution.job().documents().size() < 2) {
    throw std::runtime_error("Source document is not loaded");
  }
  requireBuilt(kExtractFromLayout);
}

}  // namespace qent::job::steps
