// ExtractionComparisonStep.cpp - the main layout measured inside the zones of a reference.
#include "base/Unicode.h"
#include "job/JobExecution.h"
#include "job/OrmidaJob.h"
#include "job/PropertyStore.h"
#include "job/PropertyValues.h"
#include "job/property_table.h"
#include "job/steps/JobSteps.h"
#include "layout/comparison/ExtractionOptions.h"
#include "layout/comparison/extraction/ExtractionComparison.h"
#include "layout/comparison/extraction/ExtractionResultWriter.h"

#include <stdexcept>

namespace qent::job::steps {

namespace {

namespace comparison = text::layout::comparison;
namespace extraction = text::layout::comparison::extraction;
using text::layout::format::Document;

struct StepOptions {
  comparison::ExtractionOptions extraction;
  std::u16string with;
  std::u16string outputFilename;
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
      case kOutputFilename: options.outputFilename = value; break;
      default: break;
    }
  }
  return options;
}

}  // namespace

void extractionComparison(JobExecution& execution) {
  const StepOptions options = readOptions(execution.properties());
  OrmidaJob& job = execution.job();
  auto reference = execution.loadOptional(options.with);
  if (!reference && job.documents().size() < 2) {
    throw std::runtime_error("Source document is not loaded");
  }
  const Document& main = *job.documents().front();
  const Document& source = reference ? *reference : *job.documents()[1];
  for (const Document* document : {&main, &source}) {
    if (document->layout() == nullptr) {
      throw std::runtime_error("Extraction comparison needs two layouts; " + document->name() +
                               " is plain text");
    }
  }
  const extraction::ExtractionResult result =
      extraction::compareExtraction(options.extraction, *main.layout(), *source.layout());
  // The figures are stored before the details are written, so a file that cannot be
  // written still leaves them readable.
  job.setResult(kCompareErrorRate, base::utf8ToUtf16(extraction::writeErrorRates(result)));
  if (!options.outputFilename.empty()) {
    execution.writeResultFile(options.outputFilename, extraction::writeExtractionDetails(result));
  }
}

}  // namespace qent::job::steps
