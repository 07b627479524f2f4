// PatternMatch.cpp - "*"/"?" file-name patterns, shared by both platforms so that the
// same pattern finds the same files everywhere.
#include "base/platform/platform.h"

#include <vector>

namespace qent::base::platform {

namespace {

// Simple case folding for the Latin, Greek and Cyrillic letters that file names use;
// the shell folds the same way for these ranges.
char16_t fold(char16_t c) {
  if (c >= u'A' && c <= u'Z') return static_cast<char16_t>(c + 32);
  if ((c >= 0xC0 && c <= 0xDE && c != 0xD7)) return static_cast<char16_t>(c + 32);
  if (c >= 0x391 && c <= 0x3AB && c != 0x3A2) return static_cast<char16_t>(c + 32);
  if (c >= 0x410 && c <= 0x42F) return static_cast<char16_t>(c + 32);
  if (c >= 0x400 && c <= 0x40F) return static_cast<char16_t>(c + 80);
  if (c >= 0x100 && c <= 0x17F && c % 2 == 0 && c != 0x130 && c != 0x138) {
    return static_cast<char16_t>(c + 1);
  }
  return c;
}

// Iterative wildcard match with single-star backtracking: linear in practice and never
// recursive, so a hostile pattern cannot exhaust the stack.
bool matchOne(std::u16string_view name, std::u16string_view pattern) {
  std::size_t n = 0, p = 0;
  std::size_t starP = std::u16string_view::npos, starN = 0;
  while (n < name.size()) {
    if (p < pattern.size() && (pattern[p] == u'?' || fold(pattern[p]) == fold(name[n]))) {
      ++n;
      ++p;
    } else if (p < pattern.size() && pattern[p] == u'*') {
      starP = p++;
      starN = n;
    } else if (starP != std::u16string_view::npos) {
      p = starP + 1;
      n = ++starN;
    } else {
      return false;
    }
  }
  while (p < pattern.size() && pattern[p] == u'*') ++p;
  return p == pattern.size();
}

}  // namespace

bool matchesPattern(std::u16string_view name, std::u16string_view pattern) {
  std::size_t start = 0;
  while (start <= pattern.size()) {
    std::size_t end = pattern.find(u';', start);
    if (end == std::u16string_view::npos) end = pattern.size();
    std::u16string_view one = pattern.substr(start, end - start);
    while (!one.empty() && one.front() == u' ') one.remove_prefix(1);
    if (!one.empty() && matchOne(name, one)) return true;
    start = end + 1;
  }
  return false;
}

}  // namespace qent::base::platform
