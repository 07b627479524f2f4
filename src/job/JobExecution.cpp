// JobExecution.cpp - the order of the execution steps and what they share.
#include "job/JobExecution.h"

#include "base/FileIo.h"
#include "base/TraceLog.h"
#include "base/Unicode.h"
#include "base/platform/platform.h"
#include "job/OrmidaJob.h"
#include "job/PropertyStore.h"
#include "job/property_table.h"
#include "job/steps/JobSteps.h"

#include <stdexcept>

namespace qent::job {

namespace {

using text::layout::format::Document;

std::filesystem::path pathOf(const std::u16string& text) {
  return base::platform::pathFromUtf8(base::utf16ToUtf8(text));
}

io::ReadOptions readOptionsOf(const PropertyStore& properties) {
  io::ReadOptions options;
  options.tolerantHocr = properties.boolean(kTolerantHocr);
  return options;
}

// The operations in the order they run, each behind its switch.
struct Step {
  std::uint32_t switchProperty;
  void (*run)(JobExecution&);
};
constexpr Step kSteps[] = {
    {kEntityExtraction, steps::entityExtraction}, {kExtractFromLayout, steps::extractionComparison},
    {kCheckMask, steps::regionTemplates},         {kCompare, steps::comparison},
    {kWordRecognizer, steps::wordRecognition},    {kBestOfLayout, steps::bestOfMerge},
};

}  // namespace

JobExecution::JobExecution(OrmidaJob& job)
    : job_(job),
      properties_(job.properties()),
      loader_(pathOf(job.properties().string(kWorkSpace)), readOptionsOf(job.properties())) {}

std::filesystem::path JobExecution::resolve(const std::u16string& path) const {
  return base::resolveAgainst(pathOf(properties_.string(kWorkSpace)), pathOf(path));
}

void JobExecution::writeResultFile(const std::u16string& path, const std::string& text) const {
  if (!path.empty()) base::writeFileAtomic(resolve(path), text);
}

void JobExecution::run() {
  loadMainDocuments();
  for (const Step& step : kSteps) {
    if (properties_.boolean(step.switchProperty)) step.run(*this);
  }
  // Address recognition answers instead of the output formats.
  if (properties_.boolean(kAddressRecognition)) {
    steps::addressRecognition(*this);
  } else {
    steps::writeOutput(*this);
  }
}

std::u16string JobExecution::transformLayout() { return steps::transformLayout(*this); }

void JobExecution::loadMainDocuments() {
  DocumentList documents;
  if (properties_.isSet(kInputMemoryAddress)) {
    documents = loader_.loadMemory(properties_.string(kInputMemoryAddress));
  } else if (properties_.isSet(kInputFilename)) {
    documents = loader_.loadFiles(properties_.string(kInputFilename), false);
  } else if (properties_.isSet(kInputFilenamePattern)) {
    documents = loader_.loadFiles(properties_.string(kInputFilenamePattern), true);
  }
  if (documents.empty()) throw std::runtime_error("No Main document loaded");
  job_.documents() = std::move(documents);
}

std::unique_ptr<Document> JobExecution::loadOptional(const std::u16string& with) {
  if (with.empty()) return nullptr;
  try {
    DocumentList loaded = loader_.loadFiles(with, false);
    return std::move(loaded.front());
  } catch (const std::exception& e) {
    base::TraceLog::write("could not load " + base::utf16ToUtf8Lenient(with) + ": " + e.what(),
                          base::kTraceError);
    return nullptr;
  }
}

}  // namespace qent::job
