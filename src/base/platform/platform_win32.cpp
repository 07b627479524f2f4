// platform_win32.cpp - the platform layer on Windows (Win32 wide-character calls).
#include "base/platform/platform.h"

#include "base/Unicode.h"

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <cerrno>
#include <cfloat>
#include <clocale>
#include <cmath>
#include <cstdlib>
#include <string>
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
  std::vector<wchar_t> buffer(256);
  for (;;) {
    SetLastError(ERROR_SUCCESS);
    const DWORD length =
        GetEnvironmentVariableW(key.c_str(), buffer.data(), static_cast<DWORD>(buffer.size()));
    if (length == 0) {
      if (GetLastError() == ERROR_ENVVAR_NOT_FOUND) return std::nullopt;
      return std::u16string();
    }
    // A copied value's length excludes the zero; a result as large as the buffer is the
    // size it needs. Ask again rather than trust one answer: another thread may change
    // the variable between the two calls.
    if (length < buffer.size()) return narrowWide(std::wstring_view(buffer.data(), length));
    buffer.resize(length);
  }
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

std::from_chars_result longDoubleFromChars(const char* first, const char* last,
                                           long double& value) {
  // from_chars for double finds what the number is (its extent, or that there is none);
  // MinGW's own strtold then reads those characters exactly. strtold follows the C
  // locale's decimal point, so the point is given in the locale's spelling.
  double approximate = 0;
  const std::from_chars_result extent =
      std::from_chars(first, last, approximate, std::chars_format::general);
  if (extent.ec == std::errc::invalid_argument) return extent;
  const char* start = first != extent.ptr && *first == '-' ? first + 1 : first;
  const bool finite = start != extent.ptr && ((*start >= '0' && *start <= '9') || *start == '.');
  if (!finite) {  // "inf", "nan": nothing is lost through double
    value = approximate;
    return extent;
  }
  const char* point = std::localeconv()->decimal_point;
  std::string text;
  for (const char* c = first; c != extent.ptr; ++c) {
    if (*c == '.') {
      text += point != nullptr && *point != '\0' ? point : ".";
    } else {
      text += *c;
    }
  }
  errno = 0;
  char* end = nullptr;
  const long double exact = std::strtold(text.c_str(), &end);
  if (end != text.c_str() + text.size()) {
    // The locale changed under us (another thread); double's answer is still a number.
    if (extent.ec == std::errc()) value = approximate;
    return extent;
  }
  // As libstdc++ on Linux: overflow and underflow (also to a subnormal number) are out of
  // range, and the value stays as it was.
  if (errno == ERANGE || std::isinf(exact) || (exact != 0 && std::fabs(exact) < LDBL_MIN)) {
    return {extent.ptr, std::errc::result_out_of_range};
  }
  value = exact;
  return {extent.ptr, std::errc()};
}

std::filesystem::path pathFromUtf8(std::string_view utf8) {
  return std::filesystem::path(wide(utf8ToUtf16Lenient(utf8)));
}

std::string pathToUtf8(const std::filesystem::path& path) {
  return utf16ToUtf8Lenient(narrowWide(path.native()));
}

std::string hunspellFilePath(const std::filesystem::path& path) {
  const std::wstring& given = path.native();
  if (given.rfind(L"\\\\?\\", 0) == 0) return pathToUtf8(path);
  // The "\\?\" form takes no relative parts and no forward slashes: let the system
  // resolve them first.
  std::vector<wchar_t> full(MAX_PATH);
  for (;;) {
    const DWORD length = GetFullPathNameW(given.c_str(), static_cast<DWORD>(full.size()),
                                          full.data(), nullptr);
    if (length == 0) return pathToUtf8(path);
    if (length < full.size()) {
      full.resize(length);
      break;
    }
    full.resize(length);
  }
  std::wstring result(full.begin(), full.end());
  if (result.rfind(L"\\\\?\\", 0) == 0 || result.rfind(L"\\\\.\\", 0) == 0) {
    // Already a device or long path.
  } else if (result.rfind(L"\\\\", 0) == 0) {
    result = L"\\\\?\\UNC\\" + result.substr(2);  // \\server\share\...
  } else {
    result = L"\\\\?\\" + result;
  }
  return utf16ToUtf8Lenient(narrowWide(result));
}

}  // namespace qent::base::platform
