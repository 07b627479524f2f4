// PatternMatchTest.cpp - file-name patterns with the Windows shell's rules.
#include "base/platform/platform.h"

#include <gtest/gtest.h>

namespace {

using qent::base::platform::matchesPattern;

struct PatternCase {
  const char16_t* name;
  const char16_t* pattern;
  bool matches;
};

TEST(PatternMatchTest, MatchesLikeTheShell) {
  for (const PatternCase& k : {
           PatternCase{u"page1.json", u"*.json", true},
           PatternCase{u"page1.JSON", u"*.json", true},
           PatternCase{u"page1.json.bak", u"*.json", false},
           PatternCase{u"page1.json", u"page?.json", true},
           PatternCase{u"page12.json", u"page?.json", false},
           PatternCase{u"a.txt", u"*.json;*.txt", true},
           PatternCase{u"a.txt", u"*.json; *.txt", true},
           PatternCase{u"abc", u"*", true},
           PatternCase{u"", u"*", true},
           PatternCase{u"abc", u"", false},
           PatternCase{u"ÄRGER.txt", u"ärger*", true},
           PatternCase{u"aXbXc", u"a*b*c", true},
           PatternCase{u"aXbX", u"a*b*c", false},
           PatternCase{u"mississippi", u"*sip*", true},
           PatternCase{u"x.hocr", u"*.h?cr", true},
       }) {
    EXPECT_EQ(matchesPattern(k.name, k.pattern), k.matches)
        << std::string(k.name, k.name + std::char_traits<char16_t>::length(k.name)).size();
  }
}

TEST(PatternMatchTest, HostilePatternEndsQuickly) {
  const std::u16string name(5000, u'a');
  const std::u16string pattern = std::u16string(2000, u'*') + u"b";
  EXPECT_FALSE(matchesPattern(name, pattern));
}

}  // namespace
