// SmallStack.cpp - the thread with a chosen stack size, on POSIX threads and on Windows.
#include "support/SmallStack.h"

#include <algorithm>
#include <exception>
#include <stdexcept>

#if defined(_WIN32)
#include <process.h>
#include <windows.h>
#else
#include <pthread.h>
#include <climits>
#endif

namespace qent::test {

namespace {

struct Call {
  const std::function<void()>* task;
  std::exception_ptr error;

  void run() {
    try {
      (*task)();
    } catch (...) {
      error = std::current_exception();
    }
  }
};

#if defined(_WIN32)
unsigned __stdcall start(void* call) {
  static_cast<Call*>(call)->run();
  return 0;
}
#else
void* start(void* call) {
  static_cast<Call*>(call)->run();
  return nullptr;
}
#endif

}  // namespace

void runWithStack(std::size_t bytes, const std::function<void()>& task) {
  Call call{&task, nullptr};
#if defined(_WIN32)
  // Without the flag the size would only be the committed part of a 1 MB reservation.
  const auto handle = reinterpret_cast<HANDLE>(_beginthreadex(
      nullptr, static_cast<unsigned>(bytes), start, &call, STACK_SIZE_PARAM_IS_A_RESERVATION,
      nullptr));
  if (handle == nullptr) throw std::runtime_error("cannot start a thread");
  WaitForSingleObject(handle, INFINITE);
  CloseHandle(handle);
#else
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  const int sized = pthread_attr_setstacksize(
      &attributes, std::max(bytes, static_cast<std::size_t>(PTHREAD_STACK_MIN)));
  pthread_t thread;
  const int started = sized == 0 ? pthread_create(&thread, &attributes, start, &call) : sized;
  pthread_attr_destroy(&attributes);
  if (started != 0) throw std::runtime_error("cannot start a thread with that stack size");
  pthread_join(thread, nullptr);
#endif
  if (call.error) std::rethrow_exception(call.error);
}

}  // namespace qent::test
