// platform_win32.cpp - the platform layer on Windows (Win32 wide-character calls).
#include "base/platform/platform.h"

#include "base/Unicode.h"

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <vector>

namespace qent::base::platform {

namespace {

std::wstring wide(std::u16string_view text) { return std::wstring(text.begin(), text.end()); }
std::u16string narrowWide(std::wstring_view text) {
  return std::u16string(text.begin(), text.end());
}

}  // namespace

std::optional<std::u16string> environmentVariable(std::u16string_view name) {
  const std::wstring key = wide(name);
  SetLastError(ERROR_SUCCESS);
  const DWORD needed = GetEnvironmentVariableW(key.c_str(), nullptr, 0);
  if (needed == 0) {
    if (GetLastError() == ERROR_ENVVAR_NOT_FOUND) return std::nullopt;
    return std::u16string();
  }
  std::vector<wchar_t> buffer(needed);
  const DWORD length = GetEnvironmentVariableW(key.c_str(), buffer.data(), needed);
  return narrowWide(std::wstring_view(buffer.data(), length));
}

std::filesystem::path modulePath() {
  HMODULE module = nullptr;
  static const int anchor = 0;
  if (!GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS |
                              GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                          reinterpret_cast<LPCWSTR>(&anchor), &module)) {
    return {};
  }
  std::vector<wchar_t> buffer(MAX_PATH);
  for (;;) {
    const DWORD length = GetModuleFileNameW(module, buffer.data(),
                                            static_cast<DWORD>(buffer.size()));
    if (length == 0) return {};
    if (length < buffer.size()) break;
    buffer.resize(buffer.size() * 2);
  }
  std::vector<wchar_t> longName(32768);
  const DWORD longLength = GetLongPathNameW(buffer.data(), longName.data(),
                                            static_cast<DWORD>(longName.size()));
  if (longLength == 0 || longLength >= longName.size()) {
    return std::filesystem::path(buffer.data());
  }
  return std::filesystem::path(std::wstring(longName.data(), longLength));
}

std::uint64_t threadNumber() {
  thread_local char marker = 0;
  return reinterpret_cast<std::uintptr_t>(&marker);
}

LocalTime localTimeWithMilliseconds() {
  SYSTEMTIME now{};
  GetLocalTime(&now);
  return {now.wYear, now.wMonth, now.wDay, now.wHour, now.wMinute, now.wSecond,
          now.wMilliseconds};
}

std::filesystem::path pathFromUtf8(std::string_view utf8) {
  return std::filesystem::path(wide(utf8ToUtf16Lenient(utf8)));
}

std::string pathToUtf8(const std::filesystem::path& path) {
  return utf16ToUtf8Lenient(narrowWide(path.native()));
}

}  // namespace qent::base::platform
