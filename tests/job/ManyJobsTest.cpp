// ManyJobsTest.cpp - jobs of every kind run at once on several threads, all tracing into one
// log, give exactly what each gives when it runs alone, and the log holds only whole lines.
// Built into the suite and, under ThreadSanitizer, into ormida_thread_tests, where a data
// race fails the run.
#include "ormida/ormida.h"

#include "support/JobApi.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <functional>
#include <latch>
#include <regex>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

// Linux only for now: the samples are named by their source path and the word recognizer
// finds the system's dictionaries, neither of which the Wine run of the suite resolves.
#if !defined(_WIN32)

namespace {

using qent::test::Job;
using qent::test::readAll;
using qent::test::TempDir;

const std::filesystem::path kSamples = std::filesystem::path(ORMIDA_SOURCE_DIR) / "data" / "samples";

void collect(const char* bytes, size_t count, uint64_t userdata, uint32_t) {
  reinterpret_cast<std::string*>(static_cast<uintptr_t>(userdata))->append(bytes, count);
}

// One job of kind `number % 4` (reading and converting, comparing, word recognition,
// writing a file), traced into `trace`; returns everything it produced.
std::string runJob(int number, const TempDir& dir, const std::string& trace) {
  Job job;
  job.set("TraceFilename", trace);
  std::string memory;
  job.set("MemoryOutputCallback", std::to_string(reinterpret_cast<uintptr_t>(&collect)));
  job.set("MemoryOutputUserdata", std::to_string(reinterpret_cast<uintptr_t>(&memory)));
  const std::string output = (dir / ("out-" + std::to_string(number) + ".json")).string();
  switch (number % 4) {
    case 0:
      job.set("InputFilename", (kSamples / "two-columns.hocr").string());
      job.set("OutputFilename.Format", "json;webanno;txtutf8;html");
      break;
    case 1:
      job.set("InputFilename", (kSamples / "notice-ocr.json").string());
      job.set("Compare", "true");
      job.set("Compare.With", (kSamples / "notice-truth.json").string());
      break;
    case 2:
      job.set("InputFilename", (kSamples / "hocr-letter-eng-tesseract.hocr").string());
      job.set("WordRecognizer", "true");
      job.set("WordRecognizer.Options", "Language=eng;ALL");
      break;
    default:
      job.set("InputFilename", (kSamples / "hocr-letter-deu-tesseract.hocr").string());
      job.set("OutputFilename", output);
      job.set("OutputFilename.Format", "json");
  }
  const uint32_t code = job.execute();
  return std::to_string(code) + job.errorText() + memory + job.get("Compare.Result").second +
         job.get("WordRecognizer.Result").second +
         (std::filesystem::exists(output) ? readAll(output) : "");
}

TEST(ManyJobsTest, SixteenJobsOnEightThreadsGiveWhatEachGivesAlone) {
  constexpr int kJobs = 16, kThreads = 8;
  TempDir dir;
  const std::string trace = (dir / "trace.log").string();
  std::vector<std::string> alone(kJobs);
  for (int i = 0; i < kJobs; ++i) alone[i] = runJob(i, dir, trace);
  for (int kind = 0; kind < 4; ++kind) {
    EXPECT_EQ(alone[kind].rfind("0", 0), 0u) << "job kind " << kind << ": " << alone[kind];
  }

  std::vector<std::string> together(kJobs);
  std::atomic<int> next{0};
  std::latch start(kThreads);
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t) {
    threads.emplace_back([&] {
      start.arrive_and_wait();  // all threads begin at once, so the jobs overlap
      for (int i = next++; i < kJobs; i = next++) together[i] = runJob(i, dir, trace);
    });
  }
  for (std::thread& thread : threads) thread.join();
  for (int i = 0; i < kJobs; ++i) EXPECT_EQ(together[i], alone[i]) << "job " << i;

  // Every line of the shared log is one whole line: its time stamp, level and thread, once.
  const std::regex line(R"(\d\d\.\d\d\.\d{4} \d\d:\d\d:\d\d,\d{3} \[[A-Z]+\] \[\d+\] [^\r]*\r)");
  std::istringstream log(readAll(trace));
  int lines = 0;
  for (std::string text; std::getline(log, text); ++lines) {
    EXPECT_TRUE(std::regex_match(text, line)) << "line " << lines + 1 << ": " << text;
  }
  EXPECT_GE(lines, 2 * kJobs);  // at least every job's opening line, twice
}

}  // namespace

#endif
