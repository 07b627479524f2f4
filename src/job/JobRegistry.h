// JobRegistry.h - the jobs alive in this process, for checking the handles callers pass.
//
// A handle is answered from this set alone, never by reading the memory it points at: a
// freed job, a pointer into some other block or a made-up number is refused without being
// touched, so a caller's mistake costs an error code instead of undefined behaviour.
#pragma once

namespace qent::job {

class JobImplementationBase;

class JobRegistry {
public:
  static void add(JobImplementationBase* job);
  // Removes the job and returns it, or null when the handle is not a live job; whoever
  // gets it back owns the deletion, so two threads freeing one handle cannot both delete.
  static JobImplementationBase* remove(const void* handle) noexcept;
  // The live job at this handle, or null.
  static JobImplementationBase* find(const void* handle) noexcept;
};

}  // namespace qent::job
