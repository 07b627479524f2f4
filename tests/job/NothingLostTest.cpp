// NothingLostTest.cpp - an execution that fails while writing, at any step, leaves the output
// files and result properties of the earlier execution as they were: nothing truncated, no
// temporary file left behind, no result cleared.
#include "ormida/ormida.h"

#include "support/JobApi.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <string>
#include <vector>

// Linux only for now: the samples are named by their source path and the word recognizer
// finds the system's dictionaries, neither of which the Wine run of the suite resolves.
#if !defined(_WIN32)

namespace {

using qent::test::Job;
using qent::test::readAll;
using qent::test::TempDir;

const std::filesystem::path kSamples = std::filesystem::path(ORMIDA_SOURCE_DIR) / "data" / "samples";

// Every operation that writes a file, each into the test's folder.
void everyStep(Job& job, const TempDir& dir) {
  job.set("WorkSpace", dir.path().string());
  job.set("InputFilename", (kSamples / "notice-ocr.json").string());
  const std::string truth = (kSamples / "notice-truth.json").string();
  job.set("EntityExtraction", "true");
  job.set("EntityExtraction.OutputFilename", "entities.json");
  job.set("ExtractFromLayout", "true");
  job.set("ExtractFromLayout.With", truth);
  job.set("ExtractFromLayout.OutputFilename", "extraction.json");
  job.set("CheckMask", "true");
  job.set("CheckMask.Regions", readAll(kSamples / "form-invoice.template.json"));
  job.set("CheckMask.OutputFilename", "regions.json");
  job.set("Compare", "true");
  job.set("Compare.With", truth);
  job.set("Compare.OutputFilename", "compare.json");
  job.set("WordRecognizer", "true");
  job.set("WordRecognizer.Options", "Language=eng");
  job.set("WordRecognizer.StatisticsFilename", "words.txt");
  job.set("OutputFilename", "out.hocr");
}

std::map<std::string, std::string> filesIn(const TempDir& dir) {
  std::map<std::string, std::string> files;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(dir.path())) {
    files[std::filesystem::relative(entry.path(), dir.path()).string()] = readAll(entry.path());
  }
  return files;
}

std::map<std::string, std::string> resultsOf(Job& job) {
  std::map<std::string, std::string> results;
  for (const char* name : {"EntityExtraction.Result", "CompareErrorRate", "CheckMask.Result",
                           "Compare.Result", "WordRecognizer.Result"}) {
    results[name] = job.get(name).second;
  }
  return results;
}

TEST(NothingLostTest, AFailedWriteAtAnyStepKeepsEarlierFilesAndResults) {
  const char* fileProperties[] = {
      "EntityExtraction.OutputFilename", "ExtractFromLayout.OutputFilename",
      "CheckMask.OutputFilename",        "Compare.OutputFilename",
      "WordRecognizer.StatisticsFilename", "OutputFilename"};
  struct Target {
    const char* path;
    const char* error;  // how the error text begins after "error in OrmidaJobExecute: "
  };
  std::vector<Target> targets = {
      {"missing-folder/out.txt", "file is busy or not exist or its path is too long (errno: 2)"}};
  // A full disk, reached through a link: were the device ever replaced instead of written,
  // only the link would go.
  TempDir devices;
  const std::string fullDisk = (devices / "full-disk").string();
  std::filesystem::create_symlink("/dev/full", fullDisk);
  targets.push_back({fullDisk.c_str(), "writing error (errno 28)"});
  for (const char* property : fileProperties) {
    for (const Target& target : targets) {
      TempDir dir;
      Job job;
      everyStep(job, dir);
      ASSERT_EQ(job.execute(), ORMIDA_OK) << job.errorText();
      const auto files = filesIn(dir);
      const auto results = resultsOf(job);
      ASSERT_EQ(files.size(), 6u);
      for (const auto& [name, value] : results) EXPECT_FALSE(value.empty()) << name;

      job.set(property, target.path);
      EXPECT_NE(job.execute(), ORMIDA_OK) << property << " " << target.path;
      EXPECT_EQ(job.errorText().rfind(std::string("error in OrmidaJobExecute: ") + target.error, 0),
                0u)
          << property << ": " << job.errorText();
      EXPECT_EQ(filesIn(dir), files) << property << " " << target.path;
      EXPECT_EQ(resultsOf(job), results) << property << " " << target.path;
    }
  }
}

}  // namespace

#endif
