// PatternMatch.cpp - "*"/"?" file-name patterns, shared by both platforms so that the
// same pattern finds the same files everywhere.
#include "base/platform/platform.h"

#include <algorithm>
#include <iterator>

namespace qent::base::platform {

namespace {

struct CaseRun {
  char16_t first, last;
  int delta, stride;
};

// The shell compares letters through their uppercase forms where two letters form a case
// pair ("ĺ" matches "Ĺ"; the dotless "ı" and final "ς" stay apart from "I" and "σ"). One
// table of the whole BMP gives the same answer on every platform.
constexpr CaseRun kUppercaseRuns[] = {
#include "base/platform/CaseTable.inc"
};

char16_t fold(char16_t c) {
  const auto* run = std::upper_bound(
      std::begin(kUppercaseRuns), std::end(kUppercaseRuns), c,
      [](char16_t value, const CaseRun& r) { return value < r.first; });
  if (run == std::begin(kUppercaseRuns)) return c;
  --run;
  if (c > run->last || (c - run->first) % run->stride != 0) return c;
  return static_cast<char16_t>(c + run->delta);
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
  // The shell's old spelling of "every file", whether or not the name has a dot.
  if (pattern == u"*.*") return true;
  std::size_t start = 0;
  while (start < pattern.size()) {
    std::size_t end = pattern.find(u';', start);
    if (end == std::u16string_view::npos) end = pattern.size();
    std::u16string_view one = pattern.substr(start, end - start);
    while (!one.empty() && one.front() == u' ') one.remove_prefix(1);
    if (matchOne(name, one)) return true;
    start = end + 1;
  }
  return false;
}

}  // namespace qent::base::platform
