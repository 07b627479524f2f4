// ResourceFolders.cpp - the lookup order of the recognizer's resource files.
#include "wordrecognizer/ResourceFolders.h"

#include "base/platform/platform.h"

namespace qent::text::wordrecognizer {

namespace fs = std::filesystem;

bool ResourceFolders::isFile(const fs::path& path) {
  std::error_code ec;
  return fs::is_regular_file(path, ec);
}

ResourceFolders::ResourceFolders(fs::path dictionaryWorkSpace, fs::path workSpace,
                                 std::vector<fs::path> dataFolders)
    : dictionaryWorkSpace_(std::move(dictionaryWorkSpace)),
      workSpace_(std::move(workSpace)),
      dataFolders_(std::move(dataFolders)) {}

std::vector<fs::path> ResourceFolders::dataFoldersOf(const fs::path& modulePath) {
  if (modulePath.empty()) return {};
  const fs::path directory = modulePath.parent_path();
  // lib/ and lib/<multiarch>/ both sit below the prefix that holds share/.
  return {directory / "data", directory.parent_path() / "share" / "ormida",
          directory.parent_path().parent_path() / "share" / "ormida"};
}

std::vector<fs::path> ResourceFolders::dataSearchFolders() const {
  std::vector<fs::path> folders;
  const fs::path& named = dictionaryWorkSpace_.empty() ? workSpace_ : dictionaryWorkSpace_;
  if (!named.empty()) folders.push_back(named);
  folders.insert(folders.end(), dataFolders_.begin(), dataFolders_.end());
  return folders;
}

std::optional<fs::path> ResourceFolders::findData(const std::vector<std::string>& names) const {
  for (const fs::path& folder : dataSearchFolders()) {
    for (const std::string& name : names) {
      const fs::path candidate = folder / base::platform::pathFromUtf8(name);
      if (isFile(candidate)) return candidate;
    }
  }
  return std::nullopt;
}

std::vector<fs::path> ResourceFolders::dictionaryFolders() const {
  // A named folder is the caller's choice of dictionaries: falling back to others would
  // judge the text with a dictionary nobody asked for.
  if (!dictionaryWorkSpace_.empty()) return {dictionaryWorkSpace_};
  std::vector<fs::path> folders = dataSearchFolders();
#if !defined(_WIN32)
  // Debian's hunspell-* packages install here, so a plain job finds their dictionaries.
  folders.emplace_back("/usr/share/hunspell");
#endif
  return folders;
}

std::string ResourceFolders::describe(const std::vector<fs::path>& folders) {
  std::string text;
  for (const fs::path& folder : folders) {
    if (!text.empty()) text += ", ";
    // Appended piece by piece: GCC 12 at -O3 takes "'" + std::string&& for an overlapping copy.
    text.append("'").append(base::platform::pathToUtf8(folder)).append("'");
  }
  return text.empty() ? "no folder" : text;
}

}  // namespace qent::text::wordrecognizer
