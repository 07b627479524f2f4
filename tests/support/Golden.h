// Golden.h - test data files, and outputs compared byte for byte with golden files.
// ORMIDA_UPDATE_GOLDEN=1 (tools/update-golden) rewrites the golden files instead, for a
// deliberate change of output whose diff is reviewed before it is committed.
#pragma once

#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <string_view>

namespace qent::test {

inline std::filesystem::path testData(std::string_view relative) {
  return std::filesystem::path(ORMIDA_TEST_DATA_DIR) / relative;
}

inline std::string readTestData(std::string_view relative) { return readAll(testData(relative)); }

// The real files of another project's format folder ("hocr", "webanno"): the shared samples
// beside the repository, where present, and the copies the repository may hold, by name.
inline std::map<std::string, std::filesystem::path> realSamples(const std::string& format) {
  std::map<std::string, std::filesystem::path> files;
  for (const auto& folder : {std::filesystem::path(ORMIDA_SOURCE_DIR) / ".." / "shared" /
                                 "samples" / format, testData("third_party/" + format)}) {
    if (!std::filesystem::exists(folder)) continue;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
      if (entry.path().extension() != ".md") files.emplace(entry.path().filename().string(), entry.path());
    }
  }
  return files;
}

inline void expectGolden(std::string_view relative, const std::string& actual) {
  const std::filesystem::path file = testData(relative);
  if (const char* update = std::getenv("ORMIDA_UPDATE_GOLDEN");
      update != nullptr && std::string_view(update) == "1") {
    std::ofstream(file, std::ios::binary) << actual;
    GTEST_SKIP() << "rewrote " << file;
  }
  ASSERT_TRUE(std::filesystem::exists(file)) << file;
  EXPECT_EQ(actual, readAll(file)) << "differs from " << file;
}

}  // namespace qent::test
