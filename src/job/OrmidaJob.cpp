// OrmidaJob.cpp - the concrete job: tracing, results and the execute entry.
#include "job/OrmidaJob.h"

#include "base/TraceLog.h"
#include "base/Unicode.h"
#include "base/Version.h"
#include "base/platform/platform.h"
#include "job/JobExecution.h"
#include "job/property_table.h"

namespace qent::job {

OrmidaJob::OrmidaJob() : subResults_(8) {
  subResults_.max_load_factor(1.0f);
  const auto trace = base::platform::environmentVariable(u"QENT_TEXTTRACE");
  if (trace && !trace->empty()) {
    // A trace file that cannot be opened must not make job creation fail: the caller could
    // not even learn why. The job simply runs without tracing.
    try {
      openTrace(*trace);
    } catch (const std::exception&) {
    }
  }
}

OrmidaJob::~OrmidaJob() {
  for (; traceOpenings_ > 0; --traceOpenings_) base::TraceLog::close();
}

void OrmidaJob::openTrace(const std::u16string& fileName) {
  base::TraceLog::open(base::utf16ToUtf8(fileName), "");
  ++traceOpenings_;
  base::TraceLog::write(base::kVersionTraceLine, base::kTraceInit);
}

bool OrmidaJob::setPropertyById(std::uint32_t number, const std::u16string& value) {
  if (number == kTraceFilename) {
    openTrace(value);
    return true;
  }
  return JobImplementationBase::setPropertyById(number, value);
}

void OrmidaJob::execute() {
  transformResult_.reset();
  JobExecution(*this).run();
}

void OrmidaJob::prepareErrorText() {}

bool OrmidaJob::getSubProperty(const std::u16string& name, std::u16string& value) {
  const std::size_t dot = name.find(u'.');
  if (dot == std::u16string::npos) return false;
  const std::uint32_t mainNumber = propertyNumber(base::utf16ToUtf8Lenient(name.substr(0, dot)));
  const std::uint32_t subNumber = propertyNumber(base::utf16ToUtf8Lenient(name.substr(dot + 1)));
  if (mainNumber == kUnknownProperty || subNumber == kUnknownProperty) return false;
  const auto found = subResults_.find(subPropertyKey(mainNumber, subNumber));
  if (found == subResults_.end()) return false;
  value = found->second;
  return true;
}

bool OrmidaJob::getResultProperty(std::uint32_t number, std::u16string& value) {
  if (const auto found = results_.find(number); found != results_.end()) {
    value = found->second;
    return true;
  }
  if (number == kTransformLayout) {
    if (!transformResult_ || transformRevision_ != properties().revision()) {
      transformResult_.reset();
      transformResult_ = JobExecution(*this).transformLayout();
      transformRevision_ = properties().revision();
    }
    value = *transformResult_;
    return true;
  }
  return false;
}

void OrmidaJob::setResult(std::uint32_t number, std::u16string value) {
  results_[number] = std::move(value);
}

void OrmidaJob::setSubResult(std::uint32_t mainNumber, std::uint32_t subNumber,
                             std::u16string value) {
  subResults_[subPropertyKey(mainNumber, subNumber)] = std::move(value);
}

}  // namespace qent::job
