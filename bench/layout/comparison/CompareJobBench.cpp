// CompareJobBench.cpp - the whole comparison job through the C interface, as a caller runs
// it: read a 300-page recognition and its ground truth from JSON files, compare them, store
// and write Compare.Result, write the annotated recognition as JSON. Reports CPU time and the
// process's peak resident memory during the job.
#include "ormida/ormida.h"
#include "base/FileIo.h"
#include "layout/Layout.h"
#include "layout/comparison/Comparator.h"
#include "layout/comparison/ComparisonResultWriter.h"
#include "layout/comparison/LayoutComparison.h"
#include "layout/comparison/PairSummary.h"
#include "layout/format/JSONReader.h"
#include "layout/format/JSONWriter.h"
#include "support/DocumentPair.h"
#include "support/NaiveComparison.h"

#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>

#if defined(__linux__)
#include <malloc.h>
#endif

namespace {

// The document pair written once per process into a temporary directory, removed at exit.
class PairFiles {
public:
  explicit PairFiles(bool glyphs) {
    dir_ = std::filesystem::temp_directory_path() /
           ("ormida-bench-compare-" + std::to_string(getpid()) + (glyphs ? "-glyphs" : "-words"));
    std::filesystem::create_directories(dir_);
    ormida::bench::DocumentPairOptions options;
    options.glyphs = glyphs;
    const auto pair = ormida::bench::generateDocumentPair(options);
    words_ = pair.truth.wordCount();
    write("ocr.json", ormida::bench::writeJson(pair.recognition, glyphs, "ocr"));
    write("truth.json", ormida::bench::writeJson(pair.truth, glyphs, "gt"));
  }
  ~PairFiles() {
    std::error_code ignored;
    std::filesystem::remove_all(dir_, ignored);
  }
  const std::filesystem::path& dir() const { return dir_; }
  std::size_t words() const { return words_; }
  double megabytes(const char* name) const {
    return static_cast<double>(std::filesystem::file_size(dir_ / name)) / 1e6;
  }

private:
  void write(const char* name, const std::string& text) {
    std::ofstream(dir_ / name, std::ios::binary) << text;
  }
  std::filesystem::path dir_;
  std::size_t words_ = 0;
};

const PairFiles& files(bool glyphs) {
  static PairFiles words(false);
  if (!glyphs) return words;
  static PairFiles withGlyphs(true);
  return withGlyphs;
}

void set(OrmidaJobHandle job, const std::u16string& name, const std::u16string& value) {
  OrmidaJobSetProperty(job, name.c_str(), value.c_str(), value.size());
}

std::u16string wide(const std::string& text) { return std::u16string(text.begin(), text.end()); }

#if defined(__linux__)
long statusKb(const char* field) {
  std::ifstream status("/proc/self/status");
  std::string line;
  while (std::getline(status, line)) {
    if (line.rfind(field, 0) == 0) return std::stol(line.substr(std::string(field).size() + 1));
  }
  return -1;
}
#endif

void runJob(benchmark::State& state, const char* level, bool glyphs) {
  const PairFiles& pair = files(glyphs);
  double peakMb = 0;
  std::size_t resultSize = 0;
  for (auto _ : state) {
#if defined(__linux__)
    state.PauseTiming();
    malloc_trim(0);
    std::ofstream("/proc/self/clear_refs") << "5";  // restart the peak mark
    state.ResumeTiming();
#endif
    OrmidaJobHandle job = nullptr;
    OrmidaJobCreate(&job);
    set(job, u"WorkSpace", wide(pair.dir().string()));
    set(job, u"InputFilename", u"ocr.json");
    set(job, u"Compare", u"true");
    set(job, u"Compare.With", u"truth.json");
    set(job, u"Compare.Level", wide(level));
    set(job, u"Compare.OutputFilename", u"result.json");
    set(job, u"OutputFilename", u"annotated.json");
    set(job, u"OutputFilename.Format", u"json");
    if (OrmidaJobExecute(job) != ORMIDA_OK) {
      state.SkipWithError("the comparison job failed");
      OrmidaJobFree(&job);
      break;
    }
    std::size_t size = 0;
    OrmidaJobGetProperty(job, u"Compare.Result", nullptr, &size);
    resultSize = size;
    OrmidaJobFree(&job);
#if defined(__linux__)
    state.PauseTiming();
    peakMb = std::max(peakMb, static_cast<double>(statusKb("VmHWM:")) / 1024.0);
    state.ResumeTiming();
#endif
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * pair.words()));
  state.counters["words"] = static_cast<double>(pair.words());
  state.counters["input_MB"] = pair.megabytes("ocr.json") + pair.megabytes("truth.json");
  state.counters["peak_MB"] = peakMb;
  state.counters["result_chars"] = static_cast<double>(resultSize);
}

// The same steps as the job, in process, so that the comparison's algorithms can be swapped
// for their quadratic forms: the end-to-end figure of a naive implementation.
void runSteps(benchmark::State& state, bool naive) {
  using namespace qent::text::layout;
  const PairFiles& pair = files(false);
  for (auto _ : state) {
    auto left = format::JSONReader().read(qent::base::readFile(pair.dir() / "ocr.json"));
    auto right = format::JSONReader().read(qent::base::readFile(pair.dir() / "truth.json"));
    comparison::CompareOptions options;
    auto comparator = comparison::makeComparator(options, *left, *right);
    if (naive) comparator->setKernels(ormida::bench::naiveKernels());
    comparator->compare();
    comparator->createStatistics(true, false);
    const std::string result = comparison::writeComparisonResult(
        options.level, comparison::summarizeRoots(*comparator),
        comparison::summarizePages(*comparator));
    qent::base::writeFileAtomic(pair.dir() / "result.json", result);
    qent::base::writeFileAtomic(pair.dir() / "annotated.json", format::JSONWriter().write(*left));
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * pair.words()));
}

void BM_CompareStepsWords(benchmark::State& state) { runSteps(state, false); }
void BM_CompareStepsWordsNaive(benchmark::State& state) { runSteps(state, true); }
void BM_CompareJobWords(benchmark::State& state) { runJob(state, "Word", false); }
void BM_CompareJobGlyphs(benchmark::State& state) { runJob(state, "Glyph", true); }
void BM_CompareJobWordsWithGlyphs(benchmark::State& state) { runJob(state, "Word", true); }

}  // namespace

BENCHMARK(BM_CompareJobWords)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime();
BENCHMARK(BM_CompareStepsWords)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime();
BENCHMARK(BM_CompareStepsWordsNaive)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime();
BENCHMARK(BM_CompareJobWordsWithGlyphs)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime();
BENCHMARK(BM_CompareJobGlyphs)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime()->Iterations(2);
