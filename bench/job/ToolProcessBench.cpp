// ToolProcessBench.cpp - the `ormida` tool as whole processes on generated documents of
// 40 lines x 10 words a page (300 and 1,500 pages): load a JSON layout, load the same layout
// as hOCR written by our writer, compare two JSON layouts at word level. Each run is a child
// process, timed by the wall clock (manual time) with its user and system time and its peak
// resident memory from the kernel, so start-up, reading the file, freeing and exit all
// count. The bare parse programs (bench/bare/) run on the same files beside them: the floors
// the loads are measured against.
#include "hocr/HocrWriter.h"
#include "layout/Layout.h"
#include "layout/format/JSONReader.h"
#include "support/DocumentPair.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace {

namespace fs = std::filesystem;

// The documents of one page count, written once per process into a temporary directory that
// is removed at exit.
class Documents {
public:
  explicit Documents(int pages) {
    dir_ = fs::temp_directory_path() /
           ("ormida-bench-tool-" + std::to_string(getpid()) + "-" + std::to_string(pages));
    fs::create_directories(dir_);
    ormida::bench::DocumentPairOptions options;
    options.pages = pages;
    const auto pair = ormida::bench::generateDocumentPair(options);
    const std::string ocr = ormida::bench::writeJson(pair.recognition, false, "ocr");
    write("ocr.json", ocr);
    write("truth.json", ormida::bench::writeJson(pair.truth, false, "gt"));
    write("ocr.hocr", qent::text::hocr::HocrWriter().write(
                          *qent::text::layout::format::JSONReader().read(ocr)));
  }
  ~Documents() {
    std::error_code ignored;
    fs::remove_all(dir_, ignored);
  }
  fs::path path(const char* name) const { return dir_ / name; }
  double megabytes(const char* name) const {
    return static_cast<double>(fs::file_size(dir_ / name)) / 1e6;
  }

private:
  void write(const char* name, const std::string& text) {
    std::ofstream(dir_ / name, std::ios::binary) << text;
  }
  fs::path dir_;
};

const Documents& documents(int pages) {
  static std::map<int, std::unique_ptr<Documents>> made;
  auto& slot = made[pages];
  if (!slot) slot = std::make_unique<Documents>(pages);
  return *slot;
}

struct ProcessUse {
  bool ok = false;
  double wallSeconds = 0;
  double userSeconds = 0;
  double systemSeconds = 0;
  double peakMb = 0;
};

// Runs the program with its output discarded and waits for it.
ProcessUse spawnAndWait(const std::vector<std::string>& arguments) {
  std::vector<char*> argv;
  for (const std::string& a : arguments) argv.push_back(const_cast<char*>(a.c_str()));
  argv.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
  posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
  ProcessUse use;
  const auto start = std::chrono::steady_clock::now();
  pid_t child = 0;
  const int spawned = posix_spawn(&child, argv[0], &actions, nullptr, argv.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  if (spawned != 0) return use;
  int status = 0;
  rusage usage{};
  if (wait4(child, &status, 0, &usage) != child) return use;
  use.wallSeconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  auto seconds = [](const timeval& t) { return static_cast<double>(t.tv_sec) + t.tv_usec / 1e6; };
  use.userSeconds = seconds(usage.ru_utime);
  use.systemSeconds = seconds(usage.ru_stime);
  use.peakMb = static_cast<double>(usage.ru_maxrss) / 1024.0;  // kilobytes on Linux
  use.ok = WIFEXITED(status) && WEXITSTATUS(status) == 0;
  return use;
}

// Linux hands a new program the peak memory of the process it replaces, and a spawned child
// starts as a copy of (or inside) its parent: started from this process, which holds the
// generated documents and whatever earlier benchmarks left, every child would report at
// least that. So the children are started by a helper forked before any benchmark runs,
// while this process is still small; it gets argument lists through one pipe and answers
// through another.
class Launcher {
public:
  Launcher() {
    int toHelper[2], fromHelper[2];
    if (pipe(toHelper) != 0 || pipe(fromHelper) != 0) return;
    helper_ = fork();
    if (helper_ == 0) {
      close(toHelper[1]);
      close(fromHelper[0]);
      serve(toHelper[0], fromHelper[1]);
      _exit(0);
    }
    close(toHelper[0]);
    close(fromHelper[1]);
    requests_ = toHelper[1];
    answers_ = fromHelper[0];
  }
  ~Launcher() {
    if (helper_ <= 0) return;
    close(requests_);
    close(answers_);
    waitpid(helper_, nullptr, 0);
  }

  ProcessUse run(const std::vector<std::string>& arguments) {
    ProcessUse use;
    if (helper_ <= 0) return use;
    std::string request;
    for (const std::string& a : arguments) request.append(a).push_back('\0');
    const std::uint64_t size = request.size();
    if (!writeAll(requests_, &size, sizeof size) ||
        !writeAll(requests_, request.data(), request.size()) ||
        !readAll(answers_, &use, sizeof use)) {
      return ProcessUse{};
    }
    return use;
  }

private:
  static bool writeAll(int fd, const void* data, std::size_t size) {
    const char* at = static_cast<const char*>(data);
    while (size > 0) {
      const ssize_t n = write(fd, at, size);
      if (n <= 0) return false;
      at += n;
      size -= static_cast<std::size_t>(n);
    }
    return true;
  }
  static bool readAll(int fd, void* data, std::size_t size) {
    char* at = static_cast<char*>(data);
    while (size > 0) {
      const ssize_t n = read(fd, at, size);
      if (n <= 0) return false;
      at += n;
      size -= static_cast<std::size_t>(n);
    }
    return true;
  }
  static void serve(int requests, int answers) {
    std::uint64_t size = 0;
    while (readAll(requests, &size, sizeof size)) {
      std::string request(size, '\0');
      if (!readAll(requests, request.data(), request.size())) return;
      std::vector<std::string> arguments;
      for (std::size_t at = 0; at < request.size();) {
        const std::size_t end = request.find('\0', at);
        arguments.push_back(request.substr(at, end - at));
        at = end + 1;
      }
      const ProcessUse use = spawnAndWait(arguments);
      if (!writeAll(answers, &use, sizeof use)) return;
    }
  }

  pid_t helper_ = -1;
  int requests_ = -1;
  int answers_ = -1;
};

Launcher launcher;  // forked during static initialisation, before any benchmark runs

void measure(benchmark::State& state, const std::vector<std::string>& arguments,
             double inputMb) {
  ProcessUse worst;
  double user = 0, system = 0;
  for (auto _ : state) {
    const ProcessUse use = launcher.run(arguments);
    if (!use.ok) {
      state.SkipWithError(("the process failed: " + arguments.front()).c_str());
      return;
    }
    state.SetIterationTime(use.wallSeconds);
    user += use.userSeconds;
    system += use.systemSeconds;
    worst.peakMb = std::max(worst.peakMb, use.peakMb);
  }
  const double runs = static_cast<double>(state.iterations());
  state.counters["input_MB"] = inputMb;
  state.counters["peak_MB"] = worst.peakMb;
  state.counters["peak_per_input"] = worst.peakMb * 1.048576 / inputMb;
  state.counters["user_s"] = user / runs;
  state.counters["sys_s"] = system / runs;
}

// ORMIDA_BENCH_TOOL in the environment names another build of the tool to measure (with
// LD_LIBRARY_PATH pointing at its library), for figures before and after a change.
std::string tool() {
  const char* other = std::getenv("ORMIDA_BENCH_TOOL");
  return other != nullptr && *other != '\0' ? other : ORMIDA_BENCH_TOOL;
}

std::string setting(const char* name, const fs::path& path) {
  return std::string(name) + "=" + path.string();
}

void BM_ToolJsonLoad(benchmark::State& state) {
  const Documents& d = documents(static_cast<int>(state.range(0)));
  measure(state, {tool(), setting("InputFilename", d.path("ocr.json"))},
          d.megabytes("ocr.json"));
}

void BM_BareRapidjsonParse(benchmark::State& state) {
  const Documents& d = documents(static_cast<int>(state.range(0)));
  measure(state, {ORMIDA_BENCH_BARE_RAPIDJSON, d.path("ocr.json").string()},
          d.megabytes("ocr.json"));
}

void BM_ToolHocrLoad(benchmark::State& state) {
  const Documents& d = documents(static_cast<int>(state.range(0)));
  measure(state, {tool(), setting("InputFilename", d.path("ocr.hocr"))},
          d.megabytes("ocr.hocr"));
}

void BM_BarePugixmlParse(benchmark::State& state) {
  const Documents& d = documents(static_cast<int>(state.range(0)));
  measure(state, {ORMIDA_BENCH_BARE_PUGIXML, d.path("ocr.hocr").string()},
          d.megabytes("ocr.hocr"));
}

void BM_ToolCompareWords(benchmark::State& state) {
  const Documents& d = documents(static_cast<int>(state.range(0)));
  measure(state,
          {tool(), setting("InputFilename", d.path("ocr.json")), "Compare=true",
           setting("Compare.With", d.path("truth.json")), "Compare.Level=Word"},
          d.megabytes("ocr.json") + d.megabytes("truth.json"));
}

// Loading a JSON layout and writing it again as JSON or hOCR: beside BM_ToolJsonLoad, the
// difference in peak memory is what writing costs on top of the loaded tree.
void writeAs(benchmark::State& state, const char* format, const char* name) {
  const Documents& d = documents(static_cast<int>(state.range(0)));
  measure(state,
          {tool(), setting("InputFilename", d.path("ocr.json")),
           setting("OutputFilename", d.path(name)), std::string("OutputFilename.Format=") + format},
          d.megabytes("ocr.json"));
  state.counters["output_MB"] = d.megabytes(name);
}

void BM_ToolJsonWriteJson(benchmark::State& state) { writeAs(state, "json", "out.json"); }
void BM_ToolJsonWriteHocr(benchmark::State& state) { writeAs(state, "hocr", "out.hocr"); }

void pageCounts(benchmark::internal::Benchmark* b) {
  b->Arg(300)->Arg(1500)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(3);
}

}  // namespace

// Each load beside its floor, so the ratios come from one run on one machine state.
BENCHMARK(BM_ToolJsonLoad)->Apply(pageCounts);
BENCHMARK(BM_BareRapidjsonParse)->Apply(pageCounts);
BENCHMARK(BM_ToolHocrLoad)->Apply(pageCounts);
BENCHMARK(BM_BarePugixmlParse)->Apply(pageCounts);
BENCHMARK(BM_ToolCompareWords)->Apply(pageCounts);
BENCHMARK(BM_ToolJsonWriteJson)->Apply(pageCounts);
BENCHMARK(BM_ToolJsonWriteHocr)->Apply(pageCounts);
