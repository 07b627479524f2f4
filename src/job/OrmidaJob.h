// OrmidaJob.h - the job of this library: properties, results, documents and tracing.
#pragma once

#include "job/InputLoader.h"
#include "job/JobImplementationBase.h"

#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace qent::job {

class OrmidaJob : public JobImplementationBase {
public:
  // Opens the trace log when the environment variable QENT_TEXTTRACE names a file.
  OrmidaJob();
  // Closes the trace log once for every time this job opened it.
  ~OrmidaJob() override;

  // Catches TraceFilename, which opens the trace log instead of being stored.
  bool setPropertyById(std::uint32_t number, const std::u16string& value) override;
  void execute() override;
  void prepareErrorText() override;
  bool getSubProperty(const std::u16string& name, std::u16string& value) override;
  bool getResultProperty(std::uint32_t number, std::u16string& value) override;

  void setResult(std::uint32_t number, std::u16string value);
  void setSubResult(std::uint32_t mainNumber, std::uint32_t subNumber, std::u16string value);
  std::uint64_t traceOpenings() const { return traceOpenings_; }
  // The loaded documents; index 0 is the main document. Each execute replaces them.
  DocumentList& documents() { return documents_; }

private:
  void openTrace(const std::u16string& fileName);

  std::unordered_map<std::uint32_t, std::u16string> results_;
  std::unordered_map<std::uint32_t, std::u16string> subResults_;
  DocumentList documents_;
  std::vector<std::u16string> scratch_;  // the small list the operations share
  // TransformLayout is computed on its first read after an execute and kept while the
  // properties stay as they were, so asking for the size and then the text transforms once.
  std::optional<std::u16string> transformResult_;
  std::uint64_t transformRevision_ = 0;
  std::uint64_t traceOpenings_ = 0;
};

}  // namespace qent::job
