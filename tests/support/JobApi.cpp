// JobApi.cpp - test conveniences over the C interface.
#include "support/JobApi.h"

#include "base/Unicode.h"

#include <cstdlib>
#include <vector>

namespace qent::test {

std::u16string u16(std::string_view utf8) { return base::utf8ToUtf16(utf8); }
std::string u8(std::u16string_view text) { return base::utf16ToUtf8(text); }

namespace {
const OrmidaChar* c(const std::u16string& text) {
  return reinterpret_cast<const OrmidaChar*>(text.c_str());
}
}  // namespace

uint32_t Job::set(std::string_view name, std::string_view value) {
  const std::u16string n = u16(name);
  const std::u16string v = u16(value);
  return OrmidaJobSetProperty(handle_, c(n), c(v), v.size());
}

std::pair<uint32_t, std::string> Job::get(std::string_view name) {
  const std::u16string n = u16(name);
  size_t size = 0;
  uint32_t code = OrmidaJobGetProperty(handle_, c(n), nullptr, &size);
  if (code != ORMIDA_BUFFER_TOO_SMALL) return {code, {}};
  std::vector<OrmidaChar> buffer(size);
  code = OrmidaJobGetProperty(handle_, c(n), buffer.data(), &size);
  return {code, u8(std::u16string(reinterpret_cast<const char16_t*>(buffer.data()), size - 1))};
}

std::string Job::errorText() {
  size_t size = 0;
  OrmidaJobGetErrorText(handle_, nullptr, &size);
  std::string text(size, '\0');
  OrmidaJobGetErrorText(handle_, text.data(), &size);
  text.resize(size - 1);
  return text;
}

#if defined(_WIN32)
// The narrow CRT calls would pass the value through the ANSI code page and lose every
// character outside it; the wide ones reach the process environment intact.
namespace {
std::wstring wide(const std::string& utf8) {
  const std::u16string text = u16(utf8);
  return std::wstring(text.begin(), text.end());
}
}  // namespace

ScopedEnvironment::ScopedEnvironment(std::string name, const std::string& value)
    : name_(std::move(name)) {
  const wchar_t* previous = _wgetenv(wide(name_).c_str());
  hadPrevious_ = previous != nullptr;
  if (hadPrevious_) {
    const std::wstring text(previous);
    previous_ = u8(std::u16string(text.begin(), text.end()));
  }
  _wputenv_s(wide(name_).c_str(), wide(value).c_str());
}

ScopedEnvironment::~ScopedEnvironment() {
  // An empty value removes the variable.
  _wputenv_s(wide(name_).c_str(), hadPrevious_ ? wide(previous_).c_str() : L"");
}
#else
ScopedEnvironment::ScopedEnvironment(std::string name, const std::string& value)
    : name_(std::move(name)) {
  const char* previous = std::getenv(name_.c_str());
  hadPrevious_ = previous != nullptr;
  if (hadPrevious_) previous_ = previous;
  setenv(name_.c_str(), value.c_str(), 1);
}

ScopedEnvironment::~ScopedEnvironment() {
  if (hadPrevious_) {
    setenv(name_.c_str(), previous_.c_str(), 1);
  } else {
    unsetenv(name_.c_str());
  }
}
#endif

}  // namespace qent::test
