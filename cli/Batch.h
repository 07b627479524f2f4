// Batch.h - a corpus as pairs of files, and running one job per item on a pool of threads.
#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace ormida::cli {

class Progress;

// File names cross as UTF-8, as the library takes them. std::filesystem's narrow strings
// are the ANSI code page on Windows, so paths convert through char8_t here instead.
std::filesystem::path utf8Path(const std::string& utf8);
std::string utf8Name(const std::filesystem::path& path);

struct FilePair {
  std::string name;  // the shared stem
  std::filesystem::path truth;
  std::filesystem::path recognition;
};

struct Pairing {
  std::vector<FilePair> pairs;  // sorted by name
  // Files without a partner, and stems that name more than one file in a folder.
  std::vector<std::string> problems;
};

// The regular files of a folder (not its subfolders), sorted by name; hidden files left out.
std::vector<std::filesystem::path> filesOf(const std::filesystem::path& folder);

// The name of a file without its last extension: "p1.hocr" and "p1.json" pair as "p1".
std::string stemOf(const std::filesystem::path& file);

// Pairs the files of two folders by stem, whatever their formats.
Pairing pairByStem(const std::filesystem::path& truthFolder,
                   const std::filesystem::path& recognitionFolder);

// Runs task(i) for i in [0, count) on `threads` threads (at least one), each item once;
// every finished item advances the progress. A task reports its own failures: this only
// schedules.
void runOnThreads(std::size_t count, unsigned threads, const std::function<void(std::size_t)>& task,
                  Progress& progress);

// The default number of threads: the machine's cores.
unsigned defaultThreads();

}  // namespace ormida::cli
