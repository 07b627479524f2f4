// JobExecutionFuzz.cpp - fuzz target of a whole execution through the C interface: the input
// is a property list (NAME=VALUE lines) up to a line "%%", then the main document, handed over
// from memory; without that line the whole input is the document. Every execution ends with
// success or one of the documented return codes and an error text, and a job that failed
// runs again to the same answer.
//
// Properties that name files, folders, addresses or callbacks are left out, and so is every
// value holding a path separator: the fuzzer must neither write files nor read the machine's
// (a device file would only measure the disk). The output goes to a callback of our own.
#include "base/Unicode.h"
#include "ormida/ormida.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

using qent::base::toLowerAscii;

bool allowed(std::string_view name, std::string_view value) {
  const std::string lower = toLowerAscii(name);
  if (lower == "outputfilename.format") return true;  // the formats, written to memory
  for (const char* banned : {"filename", "memory", "directory", "workspace", "trace"}) {
    if (lower.find(banned) != std::string::npos) return false;
  }
  return value.find_first_of("/\\") == std::string_view::npos;
}

std::vector<std::pair<std::string, std::string>> parseProperties(std::string_view list) {
  std::vector<std::pair<std::string, std::string>> properties;
  while (!list.empty()) {
    const std::size_t end = list.find('\n');
    const std::string_view line = list.substr(0, end);
    list = end == std::string_view::npos ? std::string_view() : list.substr(end + 1);
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos) continue;
    const std::string_view name = line.substr(0, equals), value = line.substr(equals + 1);
    if (allowed(name, value)) properties.emplace_back(name, value);
  }
  return properties;
}

std::size_t outputBytes = 0;
void collect(const char*, std::size_t count, std::uint64_t, std::uint32_t) { outputBytes += count; }

const OrmidaChar* c(const std::u16string& text) {
  return reinterpret_cast<const OrmidaChar*>(text.c_str());
}

uint32_t set(OrmidaJobHandle job, std::string_view name, std::string_view value) {
  const std::u16string n = qent::base::utf8ToUtf16Lenient(name);
  const std::u16string v = qent::base::utf8ToUtf16Lenient(value);
  return OrmidaJobSetProperty(job, c(n), c(v), v.size());
}

std::string errorText(OrmidaJobHandle job) {
  std::size_t size = 0;
  OrmidaJobGetErrorText(job, nullptr, &size);
  std::string text(size, '\0');
  OrmidaJobGetErrorText(job, text.data(), &size);
  if (!text.empty()) text.pop_back();
  return text;
}

bool documented(uint32_t code) {
  return code == ORMIDA_OK || code == ORMIDA_FAILED || code == ORMIDA_ERROR_HOCR ||
         code == ORMIDA_ERROR_OPTION || code == ORMIDA_ERROR_JSON;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  std::string_view list, document = input;
  const std::size_t mark = input.find("%%\n");
  if (mark == 0 || (mark != std::string_view::npos && input[mark - 1] == '\n')) {
    list = input.substr(0, mark);
    document = input.substr(mark + 3);
  }
  OrmidaJobHandle job = nullptr;
  if (OrmidaJobCreate(&job) != ORMIDA_OK) std::abort();
  for (const auto& [name, value] : parseProperties(list)) set(job, name, value);
  // An empty document is an address of size 0, which the library refuses with its error.
  const std::string address = std::to_string(reinterpret_cast<std::uintptr_t>(document.data())) +
                              ":" + std::to_string(document.size());
  set(job, "InputMemoryAddress", address);
  set(job, "MemoryOutputCallback", std::to_string(reinterpret_cast<std::uintptr_t>(&collect)));

  const uint32_t code = OrmidaJobExecute(job);
  const std::string text = errorText(job);
  if (!documented(code) || (code != ORMIDA_OK && text.empty())) {
    std::fprintf(stderr, "execute returned %u with the error text \"%s\"\n", code, text.c_str());
    std::abort();
  }
  // Nothing of a failed execution may stick to the job: the next one says the same.
  if (code != ORMIDA_OK) {
    const uint32_t again = OrmidaJobExecute(job);
    if (again != code || errorText(job) != text) {
      std::fprintf(stderr, "a second execute returned %u \"%s\" after %u \"%s\"\n", again,
                   errorText(job).c_str(), code, text.c_str());
      std::abort();
    }
  }
  OrmidaJobFree(&job);
  return 0;
}
