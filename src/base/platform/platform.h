// platform.h - the few operating-system calls the library makes, behind one interface.
//
// platform_posix.cpp and platform_win32.cpp implement it; nothing else in the code base
// includes <windows.h> or POSIX headers. Paths are UTF-8 on both sides; the Windows
// branch converts them to wide paths so that non-ASCII file names work.
#pragma once

#include <charconv>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace qent::base::platform {

// The variable's value, or nothing when it is unset.
std::optional<std::u16string> environmentVariable(std::u16string_view name);

// The full path of the module (shared library or executable) that holds this code,
// with short names expanded; empty when it cannot be determined.
std::filesystem::path modulePath();

// A number that identifies the calling thread: the address of a per-thread variable.
std::uint64_t threadNumber();

struct LocalTime {
  int year, month, day, hour, minute, second, millisecond;
};
LocalTime localTimeWithMilliseconds();

// File-name pattern matching with the rules of the Windows shell: "*" matches any run of
// characters, "?" exactly one, letters compare without regard to case; several patterns
// may be joined by ";". The same on every platform, so a job finds the same files.
bool matchesPattern(std::u16string_view name, std::u16string_view pattern);

// std::from_chars for long double in chars_format::general, with long double's full
// precision and range on every platform. (MinGW's libstdc++ reads a long double through
// double, so "12345678901234567890" lost its last digits and "1e400" was out of range.)
std::from_chars_result longDoubleFromChars(const char* first, const char* last,
                                           long double& value);

// std::to_chars for long double with a precision, always with a decimal point. (libstdc++
// prints some of these through printf, which follows the C locale: "3,250000" in a German
// application; MinGW's for every format, glibc's for some.)
std::to_chars_result longDoubleToChars(char* first, char* last, long double value,
                                       std::chars_format format, int precision);

// Converts between UTF-8 text and the platform's native path form.
std::filesystem::path pathFromUtf8(std::string_view utf8);
std::string pathToUtf8(const std::filesystem::path& path);

// The path in the form Hunspell's file opening takes: UTF-8, and on Windows the "\\?\"
// form of the full path, which Hunspell (built with its wide-path branch) opens through
// the wide API, so dictionaries in folders with non-ASCII names load.
std::string hunspellFilePath(const std::filesystem::path& path);

}  // namespace qent::base::platform
