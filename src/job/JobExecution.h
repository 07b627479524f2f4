// JobExecution.h - one execution of a job: load the documents, run the switched-on
// operations in their fixed order, then recognise addresses or write the output.
//
// Each operation is a step of its own (job/steps/) that reads its options and calls into
// its subsystem; this class only orders the steps and gives them what they share: the job,
// its properties, the workspace and loading of a reference document. Each step that runs
// stores its results before the next starts, so a later failure leaves earlier results
// readable.
#pragma once

#include "job/InputLoader.h"

#include <filesystem>
#include <memory>
#include <string>

namespace qent::job {

class OrmidaJob;
class PropertyStore;

class JobExecution {
public:
  explicit JobExecution(OrmidaJob& job);

  void run();
  // The on-demand TransformLayout result.
  std::u16string transformLayout();

  OrmidaJob& job() { return job_; }
  const PropertyStore& properties() const { return properties_; }
  // The first document loaded from a "With" value, or nothing when it is unset or fails to
  // load (the failure goes to the trace log; the caller then falls back to document 1).
  std::unique_ptr<text::layout::format::Document> loadOptional(const std::u16string& with);
  // A path relative to the job's WorkSpace.
  std::filesystem::path resolve(const std::u16string& path) const;
  // Writes a result file atomically; an empty path writes nothing.
  void writeResultFile(const std::u16string& path, const std::string& text) const;

private:
  void loadMainDocuments();

  OrmidaJob& job_;
  const PropertyStore& properties_;
  InputLoader loader_;
};

}  // namespace qent::job
