// platform_posix.cpp - the platform layer on Linux and other POSIX systems.
#include "base/platform/platform.h"

#include "base/Unicode.h"

#include <dlfcn.h>
#include <sys/time.h>

#include <cstdlib>
#include <ctime>

namespace qent::base::platform {

std::optional<std::u16string> environmentVariable(std::u16string_view name) {
  const char* value = std::getenv(utf16ToUtf8Lenient(name).c_str());
  if (value == nullptr) return std::nullopt;
  return utf8ToUtf16Lenient(value);
}

std::filesystem::path modulePath() {
  Dl_info info{};
  static const int anchor = 0;
  if (dladdr(&anchor, &info) == 0 || info.dli_fname == nullptr) return {};
  std::error_code ec;
  auto path = std::filesystem::canonical(info.dli_fname, ec);
  return ec ? std::filesystem::path(info.dli_fname) : path;
}

std::uint64_t threadNumber() {
  thread_local char marker = 0;
  return reinterpret_cast<std::uintptr_t>(&marker);
}

LocalTime localTimeWithMilliseconds() {
  timeval now{};
  gettimeofday(&now, nullptr);
  tm local{};
  const time_t seconds = now.tv_sec;
  localtime_r(&seconds, &local);
  return {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour,
          local.tm_min, local.tm_sec, static_cast<int>(now.tv_usec / 1000)};
}

std::from_chars_result longDoubleFromChars(const char* first, const char* last,
                                           long double& value) {
  return std::from_chars(first, last, value, std::chars_format::general);
}

std::filesystem::path pathFromUtf8(std::string_view utf8) {
  return std::filesystem::path(std::string(utf8));
}

std::string pathToUtf8(const std::filesystem::path& path) { return path.string(); }

std::string hunspellFilePath(const std::filesystem::path& path) { return path.string(); }

}  // namespace qent::base::platform
