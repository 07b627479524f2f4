// PlatformTest.cpp - the operating-system layer behaves the same on Linux and Windows:
// environment, local time and non-ASCII file names (thread numbers are tested
// with the trace log's lines).
#include "base/platform/platform.h"

#include "base/FileIo.h"
#include "base/Unicode.h"
#include "support/JobApi.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <ctime>
#include <set>
#include <string>
#include <tuple>

namespace {

namespace platform = qent::base::platform;
using qent::base::readFile;
using qent::base::utf8ToUtf16;
using qent::base::writeFileAtomic;
using qent::test::ScopedEnvironment;
using qent::test::TempDir;

TEST(PlatformTest, EnvironmentVariablesReadAsSet) {
  // Latin, Cyrillic, CJK and a character outside the BMP (a surrogate pair in UTF-16), and a
  // value longer than the usual first buffer guesses (MAX_PATH, a page).
  for (const std::string& value : {std::string("trace.log"),
                                   std::string("Grüße/Журнал/日本語/\xF0\x9D\x84\x9E.log"),
                                   std::string(5000, 'x') + "ä"}) {
    const ScopedEnvironment variable("ORMIDA_PLATFORM_TEST", value);
    EXPECT_EQ(platform::environmentVariable(u"ORMIDA_PLATFORM_TEST"), utf8ToUtf16(value));
  }
  EXPECT_FALSE(platform::environmentVariable(u"ORMIDA_PLATFORM_TEST_NEVER_SET").has_value());
}

using DateTime = std::tuple<int, int, int, int, int, int>;

DateTime fromTm(const std::tm& t) {
  return {t.tm_year + 1900, t.tm_mon + 1, t.tm_mday, t.tm_hour, t.tm_min, t.tm_sec};
}

TEST(PlatformTest, LocalTimeAgreesWithTheRuntimesClock) {
  // Bracket the call with the C runtime's local time; both read the same zone.
  const std::time_t before = std::time(nullptr);
  const platform::LocalTime now = platform::localTimeWithMilliseconds();
  const std::time_t after = std::time(nullptr) + 1;
  const DateTime got{now.year, now.month, now.day, now.hour, now.minute, now.second};
  EXPECT_LE(fromTm(*std::localtime(&before)), got);
  EXPECT_GE(fromTm(*std::localtime(&after)), got);
  EXPECT_GE(now.millisecond, 0);
  EXPECT_LE(now.millisecond, 999);
}

// Latin, Japanese and a character outside the BMP, in a folder with a non-ASCII name.
TEST(PlatformTest, NonAsciiFileNamesAreWrittenReadAndListed) {
  for (const std::string name : {"Grüße.txt", "日本語 ファイル.hocr", "clef \xF0\x9D\x84\x9E.txt"}) {
    TempDir dir;
    const std::filesystem::path folder = dir.path() / platform::pathFromUtf8("Ordner Größe");
    std::filesystem::create_directories(folder);
    const std::filesystem::path file = folder / platform::pathFromUtf8(name);
    const std::string bytes = "Inhalt: " + name + std::string("\r\n\0\xFF", 4);
    writeFileAtomic(file, bytes);
    EXPECT_EQ(readFile(file), bytes);
    writeFileAtomic(file, "replaced");
    EXPECT_EQ(readFile(file), "replaced");
    std::set<std::string> listed;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
      listed.insert(platform::pathToUtf8(entry.path().filename()));
    }
    EXPECT_EQ(listed, std::set<std::string>{name}) << "and no temporary file is left";
    EXPECT_EQ(platform::pathToUtf8(platform::pathFromUtf8(name)), name);
    EXPECT_NE(platform::pathToUtf8(file).find("Ordner Größe"), std::string::npos);
  }
}

}  // namespace
