// JobExecution.h - one execution of a job: load the documents, run the switched-on
// operations in their fixed order, then recognise addresses or write the output.
//
// Each step that runs stores its results before the next starts, so a later failure
// leaves earlier results readable. Operations that this build does not contain fail with
// QentException 20020 naming the operation; none pretends to have run.
#pragma once

#include "job/InputLoader.h"

#include <filesystem>
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

private:
  void loadMainDocuments();
  void entityExtraction();
  void extractionComparison();
  void regionTemplates();
  void comparison();
  void wordRecognition();
  void bestOfMerge();
  void addressRecognition();
  void writeOutput();

  // The first document loaded from a "With" value, or nothing when it is unset or fails to
  // load (the failure goes to the trace log; the caller then falls back to document 1).
  std::unique_ptr<text::layout::format::Document> loadOptional(const std::u16string& with);
  std::filesystem::path resolve(const std::u16string& path) const;
  void writeResultFile(const std::u16string& path, const std::string& text) const;

  OrmidaJob& job_;
  const PropertyStore& properties_;
  InputLoader loader_;
};

}  // namespace qent::job
