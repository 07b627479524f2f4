// HunspellPathTest.cpp - Hunspell loads dictionaries from folders with non-ASCII names
// through the path form the platform layer gives it (on Windows this needs Hunspell's
// wide-path branch, which the cross build enables).
#include "base/platform/platform.h"

#include "support/TempDir.h"

#include <hunspell/hunspell.hxx>

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace {

namespace platform = qent::base::platform;
using qent::test::TempDir;

// Debian's German dictionary (hunspell-de-de, installed by tools/install-deps) has
// words with umlauts and sharp s, so a wrong encoding would show as well.
const std::filesystem::path kSystemDictionaries = "/usr/share/hunspell";

struct FolderCase {
  const char* title;
  const char* name;  // UTF-8
};
void PrintTo(const FolderCase& k, std::ostream* out) { *out << k.title; }

class HunspellPathTest : public ::testing::TestWithParam<FolderCase> {};

TEST_P(HunspellPathTest, LoadsADictionaryFromTheFolder) {
  ASSERT_TRUE(std::filesystem::exists(kSystemDictionaries / "de_DE.dic"))
      << "the German dictionary is missing: run tools/install-deps";
  TempDir dir;
  const std::filesystem::path folder = dir.path() / platform::pathFromUtf8(GetParam().name);
  std::filesystem::create_directories(folder);
  for (const char* file : {"de_DE.aff", "de_DE.dic"}) {
    std::filesystem::copy_file(kSystemDictionaries / file, folder / file);
  }
  const std::string aff = platform::hunspellFilePath(folder / "de_DE.aff");
  const std::string dic = platform::hunspellFilePath(folder / "de_DE.dic");

  Hunspell speller(aff.c_str(), dic.c_str());
  EXPECT_EQ(speller.get_dic_encoding(), std::string("UTF-8")) << "the .aff file was not read";
  EXPECT_TRUE(speller.spell(std::string("Haus"))) << "the .dic file was not read: " << dic;
  EXPECT_TRUE(speller.spell(std::string("Straße")));
  EXPECT_TRUE(speller.spell(std::string("Bücher")));
  EXPECT_FALSE(speller.spell(std::string("Hxqzrtw")));
}

INSTANTIATE_TEST_SUITE_P(Folders, HunspellPathTest,
                         ::testing::Values(FolderCase{"Ascii", "dictionaries"},
                                           FolderCase{"German", "Wörterbücher"},
                                           FolderCase{"CyrillicAndCjk", "словари 辞書"}),
                         [](const auto& p) { return std::string(p.param.title); });

TEST(HunspellPathTest, PathFormOnThisPlatform) {
  TempDir dir;
  const std::string path = platform::hunspellFilePath(dir.path() / "de_DE.dic");
#if defined(_WIN32)
  EXPECT_EQ(path.rfind("\\\\?\\", 0), 0u) << path;
  EXPECT_EQ(path.find('/'), std::string::npos) << path;
  // A relative path becomes a full one; "\\?\" paths take no "." or "..".
  const std::string relative = platform::hunspellFilePath("sub/../de_DE.dic");
  EXPECT_EQ(relative.rfind("\\\\?\\", 0), 0u) << relative;
  EXPECT_EQ(relative.find(".."), std::string::npos) << relative;
  EXPECT_EQ(platform::hunspellFilePath(platform::pathFromUtf8(path)), path);
#else
  EXPECT_EQ(path, (dir.path() / "de_DE.dic").string());
#endif
}

}  // namespace
