// Job.cpp - the C interface calls, with the buffer-size protocol of the result reads.
#include "Job.h"

#include <utf8.h>

#include <iterator>

namespace ormida::cli {

namespace {

// A job the tool leaves to the operating system at exit; kept here so that leak checkers
// count its memory as still reachable rather than lost.
OrmidaJobHandle jobLeftToExit = nullptr;

}  // namespace

std::basic_string<OrmidaChar> toOrmida(const std::string& utf8) {
  std::u16string wide;
  utf8::utf8to16(utf8.begin(), utf8.end(), std::back_inserter(wide));
  return std::basic_string<OrmidaChar>(wide.begin(), wide.end());
}

std::string fromOrmida(const std::basic_string<OrmidaChar>& text) {
  const std::u16string wide(text.begin(), text.end());
  std::string out;
  utf8::utf16to8(wide.begin(), wide.end(), std::back_inserter(out));
  return out;
}

Job::Job() { OrmidaJobCreate(&job_); }

Job::~Job() {
  if (leaveToExit_) {
    jobLeftToExit = job_;
  } else {
    OrmidaJobFree(&job_);
  }
}

std::uint32_t Job::set(const std::string& name, const std::string& value) {
  const auto wideName = toOrmida(name);
  const auto wideValue = toOrmida(value);
  return OrmidaJobSetProperty(job_, wideName.c_str(), wideValue.c_str(), wideValue.size());
}

std::uint32_t Job::execute() { return OrmidaJobExecute(job_); }

std::optional<std::string> Job::get(const std::string& name) {
  const auto wideName = toOrmida(name);
  size_t size = 0;
  std::basic_string<OrmidaChar> value;
  lastCode_ = OrmidaJobGetProperty(job_, wideName.c_str(), nullptr, &size);
  if (lastCode_ == ORMIDA_BUFFER_TOO_SMALL) {
    value.resize(size);
    lastCode_ = OrmidaJobGetProperty(job_, wideName.c_str(), value.data(), &size);
    value.resize(size - 1);
  }
  if (lastCode_ != ORMIDA_OK) return std::nullopt;
  return fromOrmida(value);
}

std::string Job::errorText() const {
  size_t size = 0;
  OrmidaJobGetErrorText(job_, nullptr, &size);
  std::string text(size, '\0');
  OrmidaJobGetErrorText(job_, text.data(), &size);
  if (!text.empty()) text.pop_back();
  return text;
}

}  // namespace ormida::cli
