// PlatformTest.cpp - the operating-system layer behaves the same on Linux and Windows:
// environment, module path, local time, thread numbers and non-ASCII file names.
#include "base/platform/platform.h"

#include "base/FileIo.h"
#include "base/Unicode.h"
#include "support/JobApi.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <condition_variable>
#include <ctime>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <tuple>

namespace {

namespace platform = qent::base::platform;
using qent::base::readFile;
using qent::base::utf8ToUtf16;
using qent::base::writeFileAtomic;
using qent::test::ScopedEnvironment;
using qent::test::TempDir;

struct EnvironmentCase {
  const char* title;
  std::string value;  // UTF-8
};
void PrintTo(const EnvironmentCase& k, std::ostream* out) { *out << k.title; }

class EnvironmentTest : public ::testing::TestWithParam<EnvironmentCase> {};

TEST_P(EnvironmentTest, ReadsTheValueAsSet) {
  const ScopedEnvironment variable("ORMIDA_PLATFORM_TEST", GetParam().value);
  const auto value = platform::environmentVariable(u"ORMIDA_PLATFORM_TEST");
  ASSERT_TRUE(value.has_value());
  EXPECT_EQ(*value, utf8ToUtf16(GetParam().value));
}

INSTANTIATE_TEST_SUITE_P(
    Values, EnvironmentTest,
    ::testing::Values(
        EnvironmentCase{"Ascii", "trace.log"},
        // Latin, Cyrillic, CJK and a character outside the BMP (a surrogate pair in UTF-16).
        EnvironmentCase{"NonAscii", "Grüße/Журнал/日本語/\xF0\x9D\x84\x9E.log"},
        // Longer than the usual first buffer guesses (MAX_PATH, a page).
        EnvironmentCase{"Long", std::string(5000, 'x') + "ä"}),
    [](const auto& p) { return std::string(p.param.title); });

TEST(EnvironmentTest, UnsetVariableIsAbsent) {
  EXPECT_FALSE(platform::environmentVariable(u"ORMIDA_PLATFORM_TEST_NEVER_SET").has_value());
}

TEST(PlatformTest, ModulePathNamesThisExistingProgram) {
  const std::filesystem::path path = platform::modulePath();
  ASSERT_FALSE(path.empty());
  EXPECT_TRUE(path.is_absolute()) << platform::pathToUtf8(path);
  EXPECT_TRUE(std::filesystem::is_regular_file(path)) << platform::pathToUtf8(path);
  // The tests link the library statically, so the module is the test program itself.
  EXPECT_EQ(path.stem(), std::filesystem::path("ormida_tests")) << platform::pathToUtf8(path);
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

TEST(PlatformTest, ThreadNumbersDifferBetweenLiveThreadsAndStayWithinOne) {
  const std::uint64_t mine = platform::threadNumber();
  EXPECT_EQ(platform::threadNumber(), mine);
  // Both threads wait until both have their number, so they are alive at the same time
  // and a number could not be reused. A mutex and condition variable, not std::latch:
  // with MinGW's GCC 12 a latch now and then misses its wake-up and hangs (about once in
  // 2,000 rounds under Wine).
  std::mutex mutex;
  std::condition_variable changed;
  int recorded = 0;
  std::uint64_t numbers[2] = {};
  auto record = [&](int i) {
    std::unique_lock lock(mutex);
    numbers[i] = platform::threadNumber();
    ++recorded;
    changed.notify_all();
    changed.wait(lock, [&] { return recorded == 2; });
  };
  std::thread first(record, 0);
  std::thread second(record, 1);
  first.join();
  second.join();
  EXPECT_NE(numbers[0], numbers[1]);
  EXPECT_NE(numbers[0], mine);
  EXPECT_NE(numbers[1], mine);
}

struct FileNameCase {
  const char* title;
  const char* name;  // UTF-8
};
void PrintTo(const FileNameCase& k, std::ostream* out) { *out << k.title; }

class NonAsciiFileTest : public ::testing::TestWithParam<FileNameCase> {};

TEST_P(NonAsciiFileTest, WritesReadsAndListsTheName) {
  TempDir dir;
  const std::string name = GetParam().name;
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
  EXPECT_EQ(listed, std::set<std::string>{name});
  EXPECT_EQ(platform::pathToUtf8(platform::pathFromUtf8(name)), name);
  EXPECT_NE(platform::pathToUtf8(file).find("Ordner Größe"), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(
    Names, NonAsciiFileTest,
    ::testing::Values(FileNameCase{"Latin", "Grüße.txt"},
                      FileNameCase{"Japanese", "日本語 ファイル.hocr"},
                      FileNameCase{"OutsideTheBmp", "clef \xF0\x9D\x84\x9E.txt"}),
    [](const auto& p) { return std::string(p.param.title); });

}  // namespace
