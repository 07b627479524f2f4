// BestOfStep.cpp - several recognitions of one document merged into one layout.
#include "base/QentException.h"
#include "base/TraceLog.h"
#include "base/Unicode.h"
#include "bestof/BestOfMerge.h"
#include "bestof/BestOfOptions.h"
#include "bestof/ReferenceImage.h"
#include "job/JobExecution.h"
#include "job/OrmidaJob.h"
#include "job/PropertyStore.h"
#include "job/PropertyValues.h"
#include "job/property_table.h"
#include "job/steps/JobSteps.h"
#include "layout/format/Document.h"

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

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

constexpr char kNoPageSize[] =
    "No valid reference Image scaling was set. Calcluations require information from the "
    "image used for OCR!";

// Without an explicit size, the page size comes from the reference image, else from the
// largest page of the inputs.
void resolvePageSize(bestof::BestOfOptions& options, const JobExecution& execution,
                     std::span<const text::layout::Layout* const> layouts) {
  if (options.pageWidth >= 1 || options.pageHeight >= 1) return;
  std::optional<bestof::ImageSize> size;
  if (!options.referenceImageFilename.empty()) {
    size = bestof::readImageSize(execution.resolve(options.referenceImageFilename));
    if (!size) {
      base::TraceLog::write(
          "Invalid Reference Image. Make sure the file is in PNG or JPEG format!",
          base::kTraceError);
    }
  }
  if (!size) size = bestof::largestPage(layouts);
  if (size) {
    options.pageWidth = size->width;
    options.pageHeight = size->height;
  }
  if (options.pageWidth < 1 && options.pageHeight < 1) {
    base::TraceLog::write(kNoPageSize, base::kTraceError);
    throw base::QentException(base::kErrorOption, kNoPageSize);
  }
}

// A raster finer than the page has cells smaller than a pixel: halve the page size instead.
// A threshold above 1 would ask more inputs to agree than there are.
void fitRasterAndThreshold(bestof::BestOfOptions& options) {
  if (options.pageWidth < options.rasterFactorX) {
    options.rasterFactorX = options.pageWidth / 2;
    base::TraceLog::write("rasterSizeX is larger than layout. Set rasterSizeX to: " +
                              std::to_string(options.rasterFactorX),
                          base::kTraceError);
  }
  if (options.pageHeight < options.rasterFactorY) {
    options.rasterFactorY = options.pageHeight / 2;
    base::TraceLog::write("rasterSizeY is larger than layout. Set rasterSizeY to: " +
                              std::to_string(options.rasterFactorY),
                          base::kTraceError);
  }
  if (options.overlapThreshold > 1.0f) {
    base::TraceLog::write(
        "Threshold was set to a value that would require more collisions than there are input "
        "layouts! Defaulted to 1.",
        base::kTraceWarning);
    options.overlapThreshold = 1.0f;
  }
}

[[noreturn]] void failMerge(const std::string& reason) {
  base::TraceLog::write(reason, base::kTraceError);
  base::TraceLog::write("Merge Failed! Check log for details!", base::kTraceError);
  throw std::runtime_error("Merging Failed!");
}

}  // namespace

void bestOfMerge(JobExecution& execution) {
  bestof::BestOfOptions options = readOptions(execution.properties());
  auto& documents = execution.job().documents();
  std::vector<const text::layout::Layout*> layouts;
  for (const auto& document : documents) {
    if (document->layout() != nullptr) layouts.push_back(document->layout());
  }
  resolvePageSize(options, execution, layouts);
  fitRasterAndThreshold(options);

  if (layouts.size() != documents.size()) {
    for (const auto& document : documents) {
      if (document->layout() == nullptr) {
        failMerge("Best-Of merge: " + document->name() + " is plain text, not a layout");
      }
    }
  }
  std::unique_ptr<text::layout::Layout> merged;
  try {
    const std::filesystem::path traceDirectory =
        options.traceDirectory.empty() ? std::filesystem::path()
                                       : execution.resolve(options.traceDirectory);
    merged = bestof::mergeLayouts(layouts, options, traceDirectory);
  } catch (const std::runtime_error& e) {
    failMerge(e.what());
  }
  documents.clear();
  documents.push_back(std::make_unique<text::layout::format::Document>("bestof", std::move(merged)));
}

}  // namespace qent::job::steps
