// ResourceFolders.h - where the word recognizer looks for dictionaries, stop-word lists and
// digram tables, in order: the folder the job names, then the library's own data folder,
// then (for dictionaries only) the system's Hunspell folder. A DictionaryWorkSpace is the
// only folder searched for dictionaries.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace qent::text::wordrecognizer {

class ResourceFolders {
public:
  // `dictionaryWorkSpace` and `workSpace` as the job names them (either may be empty);
  // `dataFolders` are the library's own folders, searched after them.
  ResourceFolders(std::filesystem::path dictionaryWorkSpace, std::filesystem::path workSpace,
                  std::vector<std::filesystem::path> dataFolders);

  // The library's data folders for the module at `modulePath`: "data" beside it (the build
  // tree, a Windows installation) and "share/ormida" of the installation prefix.
  static std::vector<std::filesystem::path> dataFoldersOf(const std::filesystem::path& modulePath);

  // The first existing regular file among the names, searched folder by folder.
  std::optional<std::filesystem::path> findData(const std::vector<std::string>& names) const;
  // The folders searched for dictionaries.
  std::vector<std::filesystem::path> dictionaryFolders() const;
  // The folders searched, joined for messages ("a", "b").
  static std::string describe(const std::vector<std::filesystem::path>& folders);
  // A regular file there; an unreadable folder counts as no file, so the search goes on.
  static bool isFile(const std::filesystem::path& path);
  std::vector<std::filesystem::path> dataSearchFolders() const;

private:
  std::filesystem::path dictionaryWorkSpace_;
  std::filesystem::path workSpace_;
  std::vector<std::filesystem::path> dataFolders_;
};

}  // namespace qent::text::wordrecognizer
