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
           PatternCase{u"", u"*", true},
           PatternCase{u"abc", u"", false},
           PatternCase{u"ÄRGER.txt", u"ärger*", true},
           PatternCase{u"aXbXc", u"a*b*c", true},
           PatternCase{u"aXbX", u"a*b*c", false},
           // "*.*" alone means every file, also one without a dot; in a list it does not.
           PatternCase{u"README", u"*.*", true},
           PatternCase{u"README", u"*.txt;*.*", false},
           PatternCase{u"a.txt", u"*.txt ", false},
           // Case pairs beyond ASCII, odd or even first; variant letters stay themselves.
           PatternCase{u"Ĺ.txt", u"ĺ.TXT", true},
           PatternCase{u"Ļ.txt", u"ĺ.txt", false},
           PatternCase{u"Ÿ", u"ÿ", true},
           PatternCase{u"ΣΟΦΊΑ", u"σοφία", true},
           PatternCase{u"ς", u"σ", false},
           PatternCase{u"ı", u"I", false},
           PatternCase{u"Ǆ", u"ǆ", true},
           PatternCase{u"Ӂ", u"ӂ", true},
           PatternCase{u"Ａ", u"ａ", true},
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
