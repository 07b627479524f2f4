// RegionTemplatesStep.cpp - the main layout checked against region templates.
#include "dataextract/RegionTemplateOptions.h"
#include "job/JobExecution.h"
#include "job/PropertyStore.h"
#include "job/PropertyValues.h"
#include "job/property_table.h"
#include "job/steps/JobSteps.h"
#include "job/steps/NotBuiltYet.h"

namespace qent::job::steps {

namespace {

dataextract::RegionTemplateOptions readOptions(const PropertyStore& properties) {
  dataextract::RegionTemplateOptions options;
  for (const auto& [sub, value] : properties.subProperties(kCheckMask)) {
    switch (sub) {
      case kRegions: options.regions = value; break;
      case kOverlapThreshold: options.overlapThreshold = toDouble(value); break;
      case kOutputFilename: options.outputFilename = value; break;
      default: break;
    }
  }
  return options;
}

}  // namespace

void regionTemplates(JobExecution& execution) {
  readOptions(execution.properties());
  requireBuilt(kCheckMask);
}

}  // namespace qent::job::steps
