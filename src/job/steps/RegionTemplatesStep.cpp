// RegionTemplatesStep.cpp - the main layout checked against region templates.
#include "base/Unicode.h"
#include "dataextract/ConfigJson.h"
#include "dataextract/RegionEvaluation.h"
#include "dataextract/RegionTemplate.h"
#include "dataextract/RegionTemplateOptions.h"
#include "job/JobExecution.h"
#include "job/OrmidaJob.h"
#include "job/PropertyStore.h"
#include "job/PropertyValues.h"
#include "job/property_table.h"
#include "job/steps/JobSteps.h"

#include <stdexcept>

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
  const dataextract::RegionTemplateOptions options = readOptions(execution.properties());
  // The template is checked before the layout is looked at, so a faulty template is
  // reported as such whatever the input.
  const auto regions = dataextract::parseRegionTemplates(
      dataextract::configText(options.regions, "CheckMask.Regions"));
  OrmidaJob& job = execution.job();
  const text::layout::format::Document& main = *job.documents().front();
  if (main.layout() == nullptr) {
    throw std::runtime_error("Region templates need a layout; " + main.name() + " is plain text");
  }
  text::layout::Node empty;  // a layout without root has no words
  text::layout::Node* root = main.layout()->root();
  const std::string result = dataextract::evaluateRegions(root != nullptr ? *root : empty,
                                                          regions, options.overlapThreshold);
  job.setSubResult(kCheckMask, kResult, base::utf8ToUtf16(result));
  execution.writeResultFile(options.outputFilename, result);
}

}  // namespace qent::job::steps
