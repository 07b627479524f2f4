// JobApi.h - small C++ conveniences over the C interface for tests: UTF-8 in and out,
// the job freed at the end of the scope.
#pragma once

#include "ormida/ormida.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace qent::test {

std::u16string u16(std::string_view utf8);
std::string u8(std::u16string_view text);

class Job {
public:
  Job() { OrmidaJobCreate(&handle_); }
  ~Job() {
    if (handle_ != nullptr) OrmidaJobFree(&handle_);
  }
  Job(const Job&) = delete;
  Job& operator=(const Job&) = delete;

  OrmidaJobHandle handle() const { return handle_; }
  uint32_t set(std::string_view name, std::string_view value);
  uint32_t execute() { return OrmidaJobExecute(handle_); }
  // Code and value of a result property.
  std::pair<uint32_t, std::string> get(std::string_view name);
  std::string errorText();

private:
  OrmidaJobHandle handle_ = nullptr;
};

// Sets an environment variable for the lifetime of the object (restoring it afterwards).
class ScopedEnvironment {
public:
  ScopedEnvironment(std::string name, const std::string& value);
  ~ScopedEnvironment();

private:
  std::string name_;
  std::string previous_;
  bool hadPrevious_;
};

}  // namespace qent::test
