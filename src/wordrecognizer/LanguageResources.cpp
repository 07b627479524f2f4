// LanguageResources.cpp - finding and loading a language's resource files.
#include "wordrecognizer/LanguageResources.h"

#include "base/FileIo.h"
#include "base/QentException.h"
#include "base/TraceLog.h"
#include "base/platform/platform.h"
#include "wordrecognizer/Language.h"
#include "wordrecognizer/WordListReader.h"

namespace qent::text::wordrecognizer {

namespace fs = std::filesystem;

namespace {

std::unique_ptr<Speller> loadSpeller(const ResourceFolders& folders, const std::string& language) {
  const std::vector<std::string> stems = dictionaryStems(language);
  const std::vector<fs::path> searched = folders.dictionaryFolders();
  for (const fs::path& folder : searched) {
    for (const std::string& stem : stems) {
      const fs::path base = folder / stem;
      if (ResourceFolders::isFile(fs::path(base).concat(".aff")) &&
          ResourceFolders::isFile(fs::path(base).concat(".dic"))) {
        return std::make_unique<Speller>(base);
      }
    }
  }
  throw base::QentException(base::kErrorOption,
                            "WordRecognizer: no dictionary for language '" + language + "' in " +
                                ResourceFolders::describe(searched) + " (expected " +
                                stems.front() + ".aff/.dic)");
}

}  // namespace

LanguageResources::LanguageResources(ResourceFolders folders, fs::path digramTable)
    : folders_(std::move(folders)), digramTable_(std::move(digramTable)) {}

LanguageData& LanguageResources::get(const std::string& language) {
  auto found = languages_.find(language);
  if (found == languages_.end()) found = languages_.emplace(language, load(language)).first;
  return *found->second;
}

std::unique_ptr<LanguageData> LanguageResources::load(const std::string& language) const {
  auto data = std::make_unique<LanguageData>();
  data->speller = loadSpeller(folders_, language);

  const std::vector<std::string> stopNames = {language + ".stop",
                                              "stopwords-" + twoLetterCode(language) + ".txt"};
  if (const auto stopFile = folders_.findData(stopNames)) {
    const std::string name = base::platform::pathToUtf8(*stopFile);
    for (std::u16string& word : parseStopWords(base::readFile(*stopFile), name)) {
      data->stopWords.insert(std::move(word));
    }
  } else {
    base::TraceLog::write("WordRecognizer: no stop-word list for language '" + language + "' in " +
                              ResourceFolders::describe(folders_.dataSearchFolders()) +
                              "; no word counts as a stop word",
                          base::kTraceWarning);
  }

  if (!digramTable_.empty()) {
    data->digrams = DigramTable::load(digramTable_);
  } else if (const auto digramFile = folders_.findData({language + ".digram"})) {
    data->digrams = DigramTable::load(*digramFile);
  }

  if (const auto userFile = folders_.findData({language + ".user.txt"})) {
    data->speller->addWords(
        parseWordList(base::readFile(*userFile), base::platform::pathToUtf8(*userFile)));
  }
  return data;
}

}  // namespace qent::text::wordrecognizer
