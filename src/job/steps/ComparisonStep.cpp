// ComparisonStep.cpp - the main layout compared with a second layout.
#include "base/TextUnits.h"
#include "base/Unicode.h"
#include "job/JobExecution.h"
#include "job/OrmidaJob.h"
#include "job/PropertyStore.h"
#include "job/PropertyValues.h"
#include "job/property_table.h"
#include "job/steps/JobSteps.h"
#include "layout/comparison/LayoutComparison.h"
#include "layout/comparison/report/ComparisonReport.h"

#include <filesystem>
#include <stdexcept>
#include <vector>

namespace qent::job::steps {

namespace {

namespace comparison = text::layout::comparison;
using text::layout::format::Document;

struct StepOptions {
  comparison::CompareOptions compare;  // Word, Text, edit distance, partial errors, Corner
  std::u16string with;
  std::u16string outputFilename;
  std::u16string reportFilename;
};

comparison::MetricsOptions& metrics(comparison::CompareOptions& compare) {
  if (!compare.metrics) compare.metrics.emplace();
  return *compare.metrics;
}

StepOptions readOptions(const PropertyStore& properties) {
  StepOptions options;
  comparison::CompareOptions& compare = options.compare;
  for (const auto& [sub, value] : properties.subProperties(kCompare)) {
    switch (sub) {
      case kLevel: compare.level = comparison::levelFromName(value); break;
      case kMode: compare.mode = comparison::modeFromName(value); break;
      case kEditDistance: compare.characterwise = toBoolean(value); break;
      case kPartialSegmentationErrors: compare.countLengthDifference = toBoolean(value); break;
      case kTransformStrategy: compare.alignment = comparison::alignmentFromName(value); break;
      case kWith: options.with = value; break;
      case kOutputFilename: options.outputFilename = value; break;
      // Either one asks for the error counts; the other keeps its default.
      case kNormalization:
        metrics(compare).normalization = base::normalizationFromName(value);
        break;
      case kGraphemes: metrics(compare).graphemes = toBoolean(value); break;
      default: break;
    }
  }
  options.reportFilename = properties.string(kComparisonReportFilename);
  return options;
}

// Where the report looks for page images the layouts name: beside each compared document,
// then in the WorkSpace.
std::vector<std::filesystem::path> imageFolders(const JobExecution& execution,
                                                const Document& left, const Document& right) {
  std::vector<std::filesystem::path> folders;
  for (const Document* document : {&left, &right}) {
    if (document->name().rfind("memory:", 0) == 0) continue;
    folders.push_back(
        execution.resolve(base::utf8ToUtf16Lenient(document->name())).parent_path());
  }
  folders.push_back(execution.resolve(u"."));
  return folders;
}

}  // namespace

void comparison(JobExecution& execution) {
  const StepOptions options = readOptions(execution.properties());
  OrmidaJob& job = execution.job();
  auto second = execution.loadOptional(options.with);
  if (!second && job.documents().size() < 2) {
    throw std::runtime_error("No CompareWidth document loaded");
  }
  const Document& left = *job.documents().front();
  const Document& right = second ? *second : *job.documents()[1];
  for (const Document* document : {&left, &right}) {
    if (document->layout() == nullptr) {
      throw std::runtime_error("Layout comparison needs two layouts; " + document->name() +
                               " is plain text");
    }
  }
  // A reference loaded from Compare.With is dropped after this step: its annotations would
  // never be read.
  std::function<void(const comparison::Comparator&)> report;
  if (!options.reportFilename.empty()) {
    report = [&](const comparison::Comparator& comparator) {
      comparison::report::writeComparisonReport(comparator,
                                                execution.resolve(options.reportFilename),
                                                imageFolders(execution, left, right));
    };
  }
  const std::string result = comparison::compareLayouts(
      options.compare, *left.layout(), *right.layout(), second == nullptr, report);
  job.setSubResult(kCompare, kResult, base::utf8ToUtf16(result));
  execution.writeResultFile(options.outputFilename, result);
}

}  // namespace qent::job::steps
