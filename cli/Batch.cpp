// Batch.cpp - folder pairing and the thread pool. Each thread runs one job at a time: the
// library lets separate jobs run at once, never one job on two threads.
#include "Batch.h"

#include "Progress.h"

#include <algorithm>
#include <atomic>
#include <map>
#include <thread>

namespace ormida::cli {

std::filesystem::path utf8Path(const std::string& utf8) {
  return std::filesystem::path(std::u8string(utf8.begin(), utf8.end()));
}

std::string utf8Name(const std::filesystem::path& path) {
  const std::u8string name = path.u8string();
  return std::string(name.begin(), name.end());
}

std::vector<std::filesystem::path> filesOf(const std::filesystem::path& folder) {
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (!entry.is_regular_file()) continue;
    if (utf8Name(entry.path().filename()).rfind('.', 0) == 0) continue;
    files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

std::string stemOf(const std::filesystem::path& file) { return utf8Name(file.stem()); }

Pairing pairByStem(const std::filesystem::path& truthFolder,
                   const std::filesystem::path& recognitionFolder) {
  Pairing pairing;
  // The files of each stem, per folder; a stem with two files in one folder is ambiguous.
  const auto byStem = [&pairing](const std::filesystem::path& folder) {
    std::map<std::string, std::vector<std::filesystem::path>> stems;
    for (const auto& file : filesOf(folder)) stems[stemOf(file)].push_back(file);
    return stems;
  };
  const auto truth = byStem(truthFolder);
  const auto recognition = byStem(recognitionFolder);
  for (const auto& [stem, files] : truth) {
    const auto other = recognition.find(stem);
    if (files.size() > 1 || (other != recognition.end() && other->second.size() > 1)) {
      pairing.problems.push_back("\"" + stem + "\" names several files in one folder; skipped");
    } else if (other == recognition.end()) {
      pairing.problems.push_back(utf8Name(files.front()) + " has no recognition; skipped");
    } else {
      pairing.pairs.push_back({stem, files.front(), other->second.front()});
    }
  }
  for (const auto& [stem, files] : recognition) {
    if (truth.count(stem) == 0) {
      pairing.problems.push_back(utf8Name(files.front()) + " has no ground truth; skipped");
    }
  }
  return pairing;
}

void runOnThreads(std::size_t count, unsigned threads, const std::function<void(std::size_t)>& task,
                  Progress& progress) {
  std::atomic<std::size_t> next{0};
  const auto worker = [&] {
    for (std::size_t i = next++; i < count; i = next++) {
      task(i);
      progress.advance();
    }
  };
  const unsigned extra = std::min<std::size_t>(std::max(threads, 1u), std::max<std::size_t>(count, 1)) - 1;
  std::vector<std::thread> pool;
  pool.reserve(extra);
  for (unsigned i = 0; i < extra; ++i) pool.emplace_back(worker);
  worker();
  for (std::thread& thread : pool) thread.join();
  progress.finish();
}

unsigned defaultThreads() { return std::max(1u, std::thread::hardware_concurrency()); }

}  // namespace ormida::cli
