// LetterCorpusTest.cpp - precision and recall of the address recognition on whole letters:
// 200 clean layouts made by tools/letters.py, and the bundled Tesseract recognitions of
// rendered letters.
#include "support/JobApi.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <map>
#include <string>

namespace {

using qent::test::Job;
using qent::test::readAll;
using qent::test::TempDir;

const char* const kFields[] = {"name", "company", "street", "houseNumber", "postalCode", "town",
                               "country"};

struct Counts {
  int predicted = 0, truth = 0, correct = 0;
  double precision() const { return predicted == 0 ? 1.0 : double(correct) / predicted; }
  double recall() const { return truth == 0 ? 1.0 : double(correct) / truth; }
};

std::string textOf(const rapidjson::Value& object, const char* key) {
  if (!object.IsObject() || !object.HasMember(key) || !object[key].IsString()) return "";
  return object[key].GetString();
}

// Recognises every hOCR file of `dir` in one job and counts, per block and field, what was
// found against truth.json. A block counts as detected when its postal code is the truth's
// (the generated codes differ between recipient and sender of a letter).
std::map<std::string, Counts> measure(const std::filesystem::path& dir) {
  Job job;
  job.set("InputFilename", (dir / "*.hocr").string());
  job.set("AddressRecognition", "true");
  job.set("TolerantHocr", "true");  // Tesseract writes ocr_textfloat lines
  EXPECT_EQ(job.execute(), ORMIDA_OK) << job.errorText();
  std::string output = job.get("AddressRecognition.Output").second;
  // The output keeps a comma after its last entry; JSON readers want it gone.
  const std::size_t last = output.rfind(", \n}");
  if (last != std::string::npos) output.erase(last, 1);
  rapidjson::Document results, truth;
  results.Parse(output.c_str());
  truth.Parse(readAll(dir / "truth.json").c_str());
  std::map<std::string, Counts> counts;
  if (!results.IsObject() || !truth.IsObject()) {
    ADD_FAILURE() << "not JSON: " << output;
    return counts;
  }
  for (const auto& entry : results.GetObject()) {
    const std::string name = std::filesystem::path(entry.name.GetString()).stem().string();
    EXPECT_TRUE(truth.HasMember(name.c_str())) << name;
    if (!truth.HasMember(name.c_str())) continue;
    for (const char* block : {"recipient", "sender"}) {
      const rapidjson::Value& want = truth[name.c_str()][block];
      const rapidjson::Value& got = entry.value[block];
      Counts& detected = counts[std::string(block) + " detected"];
      detected.truth += 1;
      detected.predicted += got.IsObject() ? 1 : 0;
      detected.correct += got.IsObject() && textOf(got, "postalCode") == textOf(want, "postalCode");
      for (const char* field : kFields) {
        Counts& c = counts[std::string(block) + " " + field];
        const std::string found = textOf(got, field), wanted = textOf(want, field);
        c.predicted += !found.empty();
        c.truth += !wanted.empty();
        c.correct += !found.empty() && found == wanted;
      }
    }
  }
  for (const auto& [what, c] : counts) {
    std::cout << "  " << what << ": precision " << c.precision() << ", recall " << c.recall()
              << " (" << c.correct << " of " << c.predicted << " found, " << c.truth << " true)\n";
  }
  return counts;
}

void expectAtLeast(const std::map<std::string, Counts>& counts, double recipient, double sender) {
  for (const auto& [what, c] : counts) {
    const double target = what.rfind("recipient", 0) == 0 ? recipient : sender;
    EXPECT_GE(c.precision(), target) << what;
    EXPECT_GE(c.recall(), target) << what;
  }
}

TEST(LetterCorpusTest, FindsRecipientsAndSendersOfGeneratedLetters) {
  const std::string generator = std::string(ORMIDA_SOURCE_DIR) + "/tools/letters.py";
  if (std::system("python3 --version > /dev/null 2>&1") != 0) {
    GTEST_SKIP() << "python3 is not installed: it runs " << generator;
  }
  TempDir dir;
  const std::string command = "python3 \"" + generator + "\" hocr --count 200 --seed 1 --out \"" +
                              dir.path().string() + "\"";
  ASSERT_EQ(std::system(command.c_str()), 0) << command;
  std::cout << "200 generated letters:\n";
  expectAtLeast(measure(dir.path()), 0.97, 0.97);
}

TEST(LetterCorpusTest, FindsRecipientsInTesseractRecognitions) {
  std::cout << "Tesseract recognitions of rendered letters:\n";
  expectAtLeast(measure(std::filesystem::path(ORMIDA_SOURCE_DIR) / "data/samples/letters"), 0.90,
                0.90);
}

}  // namespace
