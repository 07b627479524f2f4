// PatternMatchSystemTest.cpp - on Windows, our file-name patterns answer as the system's
// PathMatchSpecW does (the reference that the shared implementation follows).
#if defined(_WIN32)

#include "base/platform/platform.h"

#define WIN32_LEAN_AND_MEAN
#include <windows.h>
#include <shlwapi.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <random>
#include <string>

namespace {

using qent::base::platform::matchesPattern;

bool systemMatches(const std::u16string& name, const std::u16string& pattern) {
  const std::wstring n(name.begin(), name.end());
  const std::wstring p(pattern.begin(), pattern.end());
  return PathMatchSpecW(n.c_str(), p.c_str()) != FALSE;
}

std::string hex(const std::u16string& text) {
  std::string out;
  for (const char16_t c : text) {
    char unit[8];
    std::snprintf(unit, sizeof unit, "%04X ", static_cast<unsigned>(c));
    out += unit;
  }
  return out;
}

char16_t systemCase(char16_t c, bool upper) {
  // CharUpperW/CharLowerW convert a single character passed in the pointer's low word.
  auto* value = reinterpret_cast<LPWSTR>(static_cast<ULONG_PTR>(c));
  return static_cast<char16_t>(reinterpret_cast<ULONG_PTR>(upper ? CharUpperW(value)
                                                                  : CharLowerW(value)));
}

// Every BMP character against its system upper- and lowercase and its neighbours (case
// pairs often sit side by side, odd or even first), then seeded random names and patterns
// over wildcards, separators, blanks, dots and letters with case partners.
TEST(PatternMatchSystemTest, AgreesWithTheSystem) {
  int differences = 0;
  auto check = [&](const std::u16string& name, const std::u16string& pattern) {
    if (matchesPattern(name, pattern) != systemMatches(name, pattern) && ++differences <= 10) {
      ADD_FAILURE() << "name " << hex(name) << "pattern " << hex(pattern) << "system says "
                    << systemMatches(name, pattern);
    }
  };
  for (unsigned c = 0x21; c <= 0xFFFF; ++c) {
    if ((c >= 0xD800 && c <= 0xDFFF) || c == u'*' || c == u'?' || c == u';') continue;
    for (const unsigned other : {unsigned(systemCase(char16_t(c), true)),
                                 unsigned(systemCase(char16_t(c), false)), c - 1, c + 1}) {
      if (other == c || other > 0xFFFF || (other >= 0xD800 && other <= 0xDFFF)) continue;
      check(std::u16string(1, static_cast<char16_t>(c)),
            std::u16string(1, static_cast<char16_t>(other)));
    }
  }
  const std::u16string nameLetters = u"aAbB.ÄäĺĹ Σσ";
  const std::u16string patternLetters = nameLetters + u"*?;";
  std::mt19937 random(20240601);
  for (int i = 0; i < 50000; ++i) {
    std::u16string name, pattern;
    for (int k = 1 + int(random() % 7); k > 0; --k) name += nameLetters[random() % nameLetters.size()];
    for (int k = int(random() % 8); k > 0; --k) {
      pattern += patternLetters[random() % patternLetters.size()];
    }
    check(name, pattern);
  }
  EXPECT_EQ(differences, 0);
}

}  // namespace

#endif  // _WIN32
