// TransformLayoutStep.cpp - the main layout moved onto a reference's coordinates, computed
// when the result TransformLayout is read.
#include "base/Unicode.h"
#include "job/JobExecution.h"
#include "job/OrmidaJob.h"
#include "job/PropertyStore.h"
#include "job/PropertyValues.h"
#include "job/property_table.h"
#include "job/steps/JobSteps.h"
#include "layout/Layout.h"
#include "layout/comparison/LayoutTransformation.h"
#include "layout/format/JSONWriter.h"

#include <stdexcept>

namespace qent::job::steps {

namespace {

namespace comparison = text::layout::comparison;
using text::layout::format::Document;

struct TransformOptions {
  std::u16string with;
  std::u16string outputFilename;
  std::int32_t pageOffset = 0;
  comparison::Alignment alignment = comparison::Alignment::Corner;
};

TransformOptions readOptions(const PropertyStore& properties) {
  TransformOptions options;
  for (const auto& [sub, value] : properties.subProperties(kTransformLayout)) {
    switch (sub) {
      case kWith: options.with = value; break;
      case kOutputFilename: options.outputFilename = value; break;
      case kPageOffset: options.pageOffset = toInteger(value); break;
      case kTransformStrategy: options.alignment = comparison::alignmentFromName(value); break;
      default: break;
    }
  }
  return options;
}

}  // namespace

std::u16string transformLayout(JobExecution& execution) {
  const TransformOptions options = readOptions(execution.properties());
  DocumentList& documents = execution.job().documents();
  if (documents.empty() || documents.front()->layout() == nullptr) {
    throw std::runtime_error("No Main document loaded");
  }
  // Without With, the second main document is the reference, as for the comparison.
  auto reference = execution.loadOptional(options.with);
  const Document* fixed = reference ? reference.get() : nullptr;
  if (fixed == nullptr && options.with.empty() && documents.size() >= 2) {
    fixed = documents[1].get();
  }
  if (fixed == nullptr || fixed->layout() == nullptr) {
    throw std::runtime_error("Document for comparison is not found!");
  }
  text::layout::Layout& main = *documents.front()->layout();
  std::string json;
  {
    // Undone at the end of the scope: the job's layout stays as it was loaded.
    comparison::LayoutTransformation transformation(main, *fixed->layout(), options.alignment,
                                                    options.pageOffset);
    json = text::layout::format::JSONWriter().write(main);
  }
  execution.writeResultFile(options.outputFilename, json);
  return base::utf8ToUtf16(json);
}

}  // namespace qent::job::steps
