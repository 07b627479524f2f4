// CorpusCompareBench.cpp - `ormida compare GT_DIR OCR_DIR` over a generated corpus of 2,000
// one-page document pairs (40 lines x 10 words, word level), with one thread and with two:
// the whole process timed by the wall clock, pages per second as items. The ratio of the two
// rates is what the thread pool gains on a two-core machine.
#include "support/DocumentPair.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace {

namespace fs = std::filesystem;

constexpr int kPages = 2000;
// Distinct generated pages; the corpus repeats them under other names, which costs the
// comparison the same and keeps setting up quick.
constexpr int kDistinct = 50;

class Corpus {
public:
  Corpus() {
    dir_ = fs::temp_directory_path() / ("ormida-bench-corpus-" + std::to_string(getpid()));
    fs::create_directories(dir_ / "gt");
    fs::create_directories(dir_ / "ocr");
    std::vector<std::pair<std::string, std::string>> pages;
    for (int i = 0; i < kDistinct; ++i) {
      ormida::bench::DocumentPairOptions options;
      options.pages = 1;
      options.seed = 20261125 + static_cast<std::uint64_t>(i);
      const auto pair = ormida::bench::generateDocumentPair(options);
      pages.emplace_back(ormida::bench::writeJson(pair.truth, false, "gt"),
                         ormida::bench::writeJson(pair.recognition, false, "ocr"));
    }
    for (int i = 0; i < kPages; ++i) {
      const std::string name = "page" + std::to_string(i) + ".json";
      std::ofstream(dir_ / "gt" / name, std::ios::binary) << pages[i % kDistinct].first;
      std::ofstream(dir_ / "ocr" / name, std::ios::binary) << pages[i % kDistinct].second;
    }
  }
  ~Corpus() {
    std::error_code ignored;
    fs::remove_all(dir_, ignored);
  }
  std::string path(const char* name) const { return (dir_ / name).string(); }

private:
  fs::path dir_;
};

// Runs the program with its output discarded; true when it exited with 0.
bool run(const std::vector<std::string>& arguments) {
  std::vector<char*> argv;
  for (const std::string& a : arguments) argv.push_back(const_cast<char*>(a.c_str()));
  argv.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
  posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
  pid_t child = 0;
  const int spawned = posix_spawn(&child, argv[0], &actions, nullptr, argv.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  int status = 0;
  return spawned == 0 && waitpid(child, &status, 0) == child && WIFEXITED(status) &&
         WEXITSTATUS(status) == 0;
}

void BM_CompareCorpus(benchmark::State& state) {
  static const Corpus corpus;
  const std::vector<std::string> arguments = {
      ORMIDA_BENCH_TOOL, "compare", corpus.path("gt"), corpus.path("ocr"), "--level", "word",
      "-j", std::to_string(state.range(0))};
  for (auto _ : state) {
    const auto start = std::chrono::steady_clock::now();
    if (!run(arguments)) {
      state.SkipWithError("ormida compare failed");
      return;
    }
    state.SetIterationTime(
        std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
  }
  state.SetItemsProcessed(state.iterations() * kPages);
  state.SetLabel("pages; items/s = pages per second");
}
BENCHMARK(BM_CompareCorpus)->ArgName("threads")->Arg(1)->Arg(2)->UseManualTime()
    ->Unit(benchmark::kSecond)->Iterations(1);

}  // namespace
