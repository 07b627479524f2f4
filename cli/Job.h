// Job.h - one library job driven through the public C header: the tool's only way into the
// library. Text crosses as UTF-8 here and as UTF-16 at the C interface.
#pragma once

#include "ormida/ormida.h"

#include <cstdint>
#include <optional>
#include <string>

namespace ormida::cli {

std::basic_string<OrmidaChar> toOrmida(const std::string& utf8);
std::string fromOrmida(const std::basic_string<OrmidaChar>& text);

// Owns a job handle and frees it on destruction, unless leaveToExit() was called.
class Job {
public:
  Job();
  ~Job();
  Job(const Job&) = delete;
  Job& operator=(const Job&) = delete;

  OrmidaJobHandle handle() const { return job_; }
  // The library's code: ORMIDA_OK, ORMIDA_UNKNOWN_PROPERTY, ...
  std::uint32_t set(const std::string& name, const std::string& value);
  std::uint32_t execute();
  // The result property's text, or nothing when the job holds no such result; the code of
  // the last read is in lastCode().
  std::optional<std::string> get(const std::string& name);
  std::uint32_t lastCode() const { return lastCode_; }
  std::string errorText() const;
  // The process ends right after this job: freeing it would visit every node of its
  // documents, one free each, for memory the system takes back at once anyway.
  void leaveToExit() { leaveToExit_ = true; }

private:
  OrmidaJobHandle job_ = nullptr;
  std::uint32_t lastCode_ = ORMIDA_OK;
  bool leaveToExit_ = false;
};

}  // namespace ormida::cli
