// Exports.cpp - the eight exported functions: argument checks, exception conversion and
// copying in and out. No exception ever leaves this file.
#include "ormida/ormida.h"

#include "base/QentException.h"
#include "base/TraceLog.h"
#include "base/Unicode.h"
#include "base/Version.h"
#include "job/JobRegistry.h"
#include "job/OrmidaJob.h"
#include "job/property_table.h"

#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <string>

namespace {

using qent::job::JobImplementationBase;
using qent::job::JobRegistry;
using qent::job::OrmidaJob;

std::u16string wide(const OrmidaChar* text, std::size_t length) {
  return std::u16string(reinterpret_cast<const char16_t*>(text), length);
}

std::u16string wide(const OrmidaChar* text) {
  std::size_t length = 0;
  while (text[length] != 0) ++length;
  return wide(text, length);
}

// The run-time type check of a handle: only jobs this library made and has not yet freed
// are jobs; anything else (zeroed memory, a freed job, a foreign pointer) is refused
// without reading it.
JobImplementationBase* asJob(OrmidaJobHandle handle) noexcept { return JobRegistry::find(handle); }

// Runs fn and turns an exception into a code and the job's error text:
// the library's exception keeps its code, other runtime errors give 9 with their text,
// anything else gives 9 with a fixed text. Logic errors (invalid argument, out of range)
// are not runtime errors and land in the last case; their text goes to the trace log.
// `undefinedText` is the text for the last case.
template <class Fn>
uint32_t guarded(JobImplementationBase& job, const char* where, const char* undefinedText,
                 Fn&& fn) noexcept {
  try {
    try {
      fn();
      return ORMIDA_OK;
    } catch (const qent::base::QentException& e) {
      job.setErrorText(std::string("error in ") + where + ": " + e.what());
      return e.code();
    } catch (const std::runtime_error& e) {
      job.setErrorText(std::string("error in ") + where + ": " + e.what());
      return ORMIDA_FAILED;
    } catch (const std::exception& e) {
      job.setErrorText(undefinedText);
      qent::base::TraceLog::write(std::string(where) + ": " + e.what(),
                                  qent::base::kTraceError);
      return ORMIDA_FAILED;
    } catch (...) {
      job.setErrorText(undefinedText);
      return ORMIDA_FAILED;
    }
  } catch (...) {
    // Building the error text itself failed (out of memory).
    return ORMIDA_FAILED;
  }
}

}  // namespace

extern "C" {

uint32_t OrmidaJobCreate(OrmidaJobHandle* job) {
  if (job == nullptr) return ORMIDA_BAD_ARGUMENT;
  try {
    auto instance = std::make_unique<OrmidaJob>();
    JobImplementationBase* base = instance.get();
    JobRegistry::add(base);
    // The handle is the address the registry knows the job by.
    *job = reinterpret_cast<OrmidaJobHandle>(base);
    instance.release();
    return ORMIDA_OK;
  } catch (...) {
    return ORMIDA_FAILED;
  }
}

uint32_t OrmidaJobFree(OrmidaJobHandle* job) {
  if (job == nullptr || *job == nullptr) return ORMIDA_BAD_ARGUMENT;
  // Taken out of the registry first, so a second free of the same handle, even from
  // another thread at the same moment, is refused instead of deleting twice.
  JobImplementationBase* instance = JobRegistry::remove(*job);
  if (instance == nullptr) return ORMIDA_BAD_ARGUMENT;
  delete instance;
  *job = nullptr;
  return ORMIDA_OK;
}

uint32_t OrmidaJobExecute(OrmidaJobHandle job) {
  JobImplementationBase* instance = asJob(job);
  if (instance == nullptr) return ORMIDA_BAD_ARGUMENT;
  return guarded(*instance, "OrmidaJobExecute", "undefined error in OrmidaJobExecute", [&] { instance->execute(); });
}

uint32_t OrmidaJobSetProperty(OrmidaJobHandle job, const OrmidaChar* name,
                              const OrmidaChar* value, size_t valueLength) {
  if (name == nullptr || value == nullptr) return ORMIDA_BAD_ARGUMENT;
  JobImplementationBase* instance = asJob(job);
  if (instance == nullptr) return ORMIDA_BAD_ARGUMENT;
  try {
    return instance->setProperty(wide(name), wide(value, valueLength)) ? ORMIDA_OK
                                                                       : ORMIDA_UNKNOWN_PROPERTY;
  } catch (...) {
    return ORMIDA_BAD_ARGUMENT;
  }
}

uint32_t OrmidaJobGetProperty(OrmidaJobHandle job, const OrmidaChar* name, OrmidaChar* buffer,
                              size_t* size) {
  if (name == nullptr || size == nullptr) return ORMIDA_BAD_ARGUMENT;
  JobImplementationBase* instance = asJob(job);
  if (instance == nullptr) return ORMIDA_BAD_ARGUMENT;
  std::u16string value;
  bool found = false;
  const uint32_t code = guarded(*instance, "OrmidaJobGetProperty",
                                "undefined error in OrmidaJobGetProperty", [&] {
    const std::u16string key = wide(name);
    const std::uint32_t number =
        qent::job::propertyNumber(qent::base::utf16ToUtf8Lenient(key));
    found = number != qent::job::kUnknownProperty ? instance->getResultProperty(number, value)
                                                  : instance->getSubProperty(key, value);
  });
  if (code != ORMIDA_OK) return code;
  if (!found) return ORMIDA_UNKNOWN_PROPERTY;
  const std::size_t capacity = *size;
  *size = value.size() + 1;
  // A null buffer has no room; the caller learns the size it needs.
  if (buffer == nullptr || capacity < value.size() + 1) return ORMIDA_BUFFER_TOO_SMALL;
  std::memcpy(buffer, value.c_str(), (value.size() + 1) * sizeof(OrmidaChar));
  return ORMIDA_OK;
}

uint32_t OrmidaJobGetErrorText(OrmidaJobHandle job, char* buffer, size_t* size) {
  if (size == nullptr) return ORMIDA_BAD_ARGUMENT;
  JobImplementationBase* instance = asJob(job);
  if (instance == nullptr) return ORMIDA_BAD_ARGUMENT;
  const uint32_t code = guarded(*instance, "getError", "error in getError", [&] { instance->prepareErrorText(); });
  (void)code;  // a failure of the preparation has become the error text itself
  const std::string& text = instance->errorText();
  // The capacity the caller passed is deliberately not consulted: the required size is
  // compared with the value just stored, so only an overflowing length gives 47.
  *size = text.size() + 1;
  if (*size < text.size() + 1 || *size == 0) return ORMIDA_BUFFER_TOO_SMALL;
  if (buffer != nullptr) std::memcpy(buffer, text.c_str(), text.size() + 1);
  return ORMIDA_OK;
}

uint32_t OrmidaGetVersion(void) { return qent::base::kVersionNumber; }

uint32_t OrmidaGetVersionText(char* buffer, size_t length) {
  if (buffer == nullptr || length == 0) return ORMIDA_BAD_ARGUMENT;
  std::strncpy(buffer, qent::base::kVersionText, length);
  buffer[length - 1] = '\0';
  return ORMIDA_OK;
}

}  // extern "C"

