// BestOfStep.cpp - several recognitions of one document merged into one layout.
#include "base/TraceLog.h"
#include "base/Unicode.h"
#include "bestof/BestOfOptions.h"
#include "job/JobExecution.h"
#include "job/PropertyStore.h"
#include "job/PropertyValues.h"
#include "job/property_table.h"
#include "job/steps/JobSteps.h"
#include "job/steps/NotBuiltYet.h"

namespace qent::job::steps {

namespace {

bestof::BestOfOptions readOptions(const PropertyStore& properties) {
  const bestof::BestOfOptions defaults;
  bestof::BestOfOptions options;
  for (const auto& [sub, value] : properties.subProperties(kBestOfLayout)) {
    switch (sub) {
      case kRasterFactorX: options.rasterFactorX = toInteger(value); break;
      case kRasterFactorY: options.rasterFactorY = toInteger(value); break;
      case kPageWidth: options.pageWidth = toInteger(value); break;
      case kPageHeight: options.pageHeight = toInteger(value); break;
      // A bad float keeps the default and says why in the trace log.
      case kOverlapThreshold:
        options.overlapThreshold = toFloatOr(value, defaults.overlapThreshold);
        break;
      case kClusterAreaTolerance:
        options.clusterAreaTolerance = toFloatOr(value, defaults.clusterAreaTolerance);
        break;
      case kWordHeightFactor:
        options.wordHeightFactor = toFloatOr(value, defaults.wordHeightFactor);
        break;
      case kWordWidthFactor:
        options.wordWidthFactor = toFloatOr(value, defaults.wordWidthFactor);
        break;
      case kVerticalConfidenceMin:
        options.verticalConfidenceMin = toFloatOr(value, defaults.verticalConfidenceMin);
        break;
      case kMaxWordDistance:
        options.maxWordDistance = toFloatOr(value, defaults.maxWordDistance);
        break;
      case kMaxLineHeightDeviation:
        options.maxLineHeightDeviation = toFloatOr(value, defaults.maxLineHeightDeviation);
        break;
      case kEqualizeLayouts: options.equalizeLayouts = toBoolean(value); break;
      case kReferenceImageFilename: options.referenceImageFilename = value; break;
      case kTraceDirectory: options.traceDirectory = value; break;
      default:
        // The merge reports an unknown name and goes on without it. The name in the warning
        // is the value of the plain property numbered like the sub name (empty for a name
        // outside the property table), a quirk callers' log filters already know.
        base::TraceLog::writeFormatted(
            base::kTraceWarning, "Unknown subproperty was set: %s",
            base::utf16ToUtf8(properties.string(sub)).c_str());
    }
  }
  return options;
}

}  // namespace

void bestOfMerge(JobExecution& execution) {
  readOptions(execution.properties());
  requireBuilt(kBestOfLayout);
}

}  // namespace qent::job::steps
