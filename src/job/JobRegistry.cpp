// JobRegistry.cpp - a process-wide set of live jobs under one mutex.
#include "job/JobRegistry.h"

#include <mutex>
#include <unordered_map>

namespace qent::job {

namespace {

struct Registry {
  std::mutex mutex;
  // Keyed by the address the caller holds as its handle.
  std::unordered_map<const void*, JobImplementationBase*> jobs;
};

// Never destroyed, so a job freed from another static destructor at process exit still
// finds the registry in place.
Registry& registry() {
  static Registry* const instance = new Registry();
  return *instance;
}

}  // namespace

void JobRegistry::add(JobImplementationBase* job) {
  Registry& r = registry();
  const std::lock_guard lock(r.mutex);
  r.jobs.emplace(job, job);
}

JobImplementationBase* JobRegistry::remove(const void* handle) noexcept {
  Registry& r = registry();
  const std::lock_guard lock(r.mutex);
  const auto found = r.jobs.find(handle);
  if (found == r.jobs.end()) return nullptr;
  JobImplementationBase* job = found->second;
  r.jobs.erase(found);
  return job;
}

JobImplementationBase* JobRegistry::find(const void* handle) noexcept {
  Registry& r = registry();
  const std::lock_guard lock(r.mutex);
  const auto found = r.jobs.find(handle);
  return found == r.jobs.end() ? nullptr : found->second;
}

}  // namespace qent::job
