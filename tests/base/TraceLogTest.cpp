// TraceLogTest.cpp - the shared trace log: line format, levels, and how jobs open and
// close it. Each test leaves the log closed again, so tests do not see each other.
#include "base/TraceLog.h"

#include "base/platform/platform.h"
#include "job/OrmidaJob.h"
#include "job/PropertyValues.h"
#include "support/JobApi.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <regex>
#include <thread>

namespace {

using qent::base::TraceLog;
using qent::test::Job;
using qent::test::readAll;
using qent::test::ScopedEnvironment;
using qent::test::TempDir;

// The message of each line, after the time stamp, tag and thread number (a line without
// them is kept whole); every line must end with CRLF.
std::vector<std::string> messagesOf(const std::string& text) {
  std::vector<std::string> messages;
  std::size_t start = 0;
  for (std::size_t end; (end = text.find("\r\n", start)) != std::string::npos; start = end + 2) {
    const std::string line = text.substr(start, end - start);
    const std::size_t close = line.find("] ", line.find(" [", 24));
    messages.push_back(close == std::string::npos ? line : line.substr(close + 2));
  }
  if (start < text.size()) messages.push_back(text.substr(start) + "<no CRLF>");
  return messages;
}

TEST(TraceLogTest, ThresholdFromName) {
  const std::pair<const char*, std::uint32_t> cases[] = {
      {"info", 6}, {"DEBUG", 7}, {"Warn", 4},  {"error", 3},  {"verbose", 8},
      {"", 5},     {"2", 3},     {"7", 7},     {"99", 8},     {"5x", 5},
      {"x5", 5},   {"fatal", 5}, {"123456789012345678901234567890", 8}};
  for (const auto& [name, expected] : cases) {
    EXPECT_EQ(TraceLog::thresholdFromName(name, 5), expected) << '"' << name << '"';
  }
}

TEST(TraceLogTest, LineFormat) {
  const std::string line = TraceLog::formatLine("hello world", qent::base::kTraceWarning);
  const std::regex pattern(
      R"(^\d\d\.\d\d\.\d{4} \d\d:\d\d:\d\d,\d{3} \[WARN\] \[(\d+)\] hello world\r\n$)");
  std::smatch match;
  ASSERT_TRUE(std::regex_match(line, match, pattern)) << line;
  EXPECT_EQ(match[1].str(), std::to_string(qent::base::platform::threadNumber()));
  std::string other;
  std::thread([&] { other = TraceLog::formatLine("x", 6); }).join();
  EXPECT_EQ(other.find("[" + match[1].str() + "]"), std::string::npos)
      << "another thread writes another number";
}

TEST(TraceLogTest, EnvironmentVariableOpensTheLogForEachJob) {
  TempDir dir;
  const auto first = dir / "first.log";
  const auto second = dir / "second.log";
  {
    ScopedEnvironment env("QENT_TEXTTRACE", first.string());
    auto a = std::make_unique<Job>();
    ScopedEnvironment env2("QENT_TEXTTRACE", second.string());
    auto b = std::make_unique<Job>();
    EXPECT_TRUE(TraceLog::isOn());
    EXPECT_EQ(TraceLog::openCount(), 2u);
    a.reset();
    EXPECT_TRUE(TraceLog::isOn()) << "the second job keeps the log open";
    b.reset();
    EXPECT_FALSE(TraceLog::isOn());
  }
  EXPECT_FALSE(std::filesystem::exists(second)) << "the second file is never created";
  EXPECT_EQ(messagesOf(readAll(first)),
            (std::vector<std::string>{"LOG INIT called and we have now 1 logs active",
                                      "Ormida 1.7.0 64 bit",
                                      "LOG INIT called and we have now 2 logs active",
                                      "Ormida 1.7.0 64 bit",
                                      "LOG SHUTDOWN called and we have now 2 logs active",
                                      "LOG SHUTDOWN called and we have now 1 logs active"}));
  EXPECT_NE(readAll(first).find(" [INIT] "), std::string::npos);

  ScopedEnvironment empty("QENT_TEXTTRACE", "");
  Job job;
  EXPECT_FALSE(TraceLog::isOn()) << "an empty variable leaves tracing off";
}

TEST(TraceLogTest, JobsAndLevelsDecideWhatReachesTheFile) {
  TempDir dir;
  const auto file = dir.write("old.log", "earlier line\r\n");
  const std::string thread = "[" + std::to_string(qent::base::platform::threadNumber()) + "] ";
  std::string address;
  {
    qent::job::OrmidaJob job;
    address = std::to_string(reinterpret_cast<std::uintptr_t>(&job));
    ASSERT_TRUE(job.setProperty(u"TraceFilename", qent::test::u16(file.string())));
    ASSERT_TRUE(job.setProperty(u"TraceFilename", qent::test::u16(file.string())));
    EXPECT_EQ(job.traceOpenings(), 2u) << "each setting opens once more";
    EXPECT_FALSE(job.properties().plain(740).has_value()) << "the file name is not stored";
    ASSERT_TRUE(job.setProperty(u"Compare.Level", u"Glyph"));
    EXPECT_FLOAT_EQ(qent::job::toFloatOr(u"abc", 0.7f), 0.7f);
    EXPECT_FLOAT_EQ(qent::job::toFloatOr(u"1e50", 0.7f), 0.7f);
    TraceLog::write("chatty", qent::base::kTraceVerbose);
    TraceLog::writeFormatted(qent::base::kTraceDebug, "%s=%d", "n", 5);
  }
  EXPECT_FALSE(TraceLog::isOn());
  TraceLog::open(file.string(), "warn");
  TraceLog::write("dropped", qent::base::kTraceInfo);
  TraceLog::write("kept", qent::base::kTraceError);
  TraceLog::open("ignored-second-name.log", "verbose");  // only counts
  TraceLog::write("still dropped", qent::base::kTraceVerbose);
  for (int i = 0; i < 3; ++i) TraceLog::close();  // one close too many does nothing
  EXPECT_FALSE(std::filesystem::exists("ignored-second-name.log"));

  const std::string text = readAll(file);
  const auto messages = messagesOf(text);
  ASSERT_GE(messages.size(), 4u);
  EXPECT_EQ(messages[0], "earlier line");
  EXPECT_EQ(messages[1], "============== Appending to old log file");
  EXPECT_EQ(messages[2], "LOG INIT called and we have now 1 logs active");
  for (const std::string& line :
       {"] setting property for job [" + address + "]: Compare.Level value: \"Glyph\"\r\n",
        " [ERROR] " + thread + "invalid argument in float property invalid stof argument\r\n",
        std::string("] float property out of range stof argument out of range\r\n"),
        " [INFO] " + thread + "chatty\r\n", " [DEBUG] " + thread + "n=5\r\n",
        " [ERROR] " + thread + "kept\r\n"}) {
    EXPECT_NE(text.find(line), std::string::npos) << line << "in\n" << text;
  }
  EXPECT_EQ(text.find("dropped"), std::string::npos) << text;
}

TEST(TraceLogTest, UnopenableTraceFileIsABadArgument) {
  TempDir dir;
  Job job;
  EXPECT_EQ(job.set("TraceFilename", (dir / "no" / "such" / "dir.log").string()),
            ORMIDA_BAD_ARGUMENT);
  EXPECT_FALSE(TraceLog::isOn());
  EXPECT_THROW(TraceLog::open((dir / "missing" / "x.log").string(), ""), std::runtime_error);
}

}  // namespace
