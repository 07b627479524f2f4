// Speller.cpp - Hunspell behind a cache, with the dictionary checked before loading.
#include "wordrecognizer/Speller.h"

#include "base/QentException.h"
#include "base/Unicode.h"
#include "base/platform/platform.h"

#include <hunspell/hunspell.hxx>

#include <fstream>
#include <mutex>

namespace qent::text::wordrecognizer {

namespace fs = std::filesystem;

namespace {

[[noreturn]] void fail(const fs::path& file, const std::string& what) {
  throw base::QentException(base::kErrorOption, "WordRecognizer: dictionary '" +
                                                    base::platform::pathToUtf8(file) + "' " + what);
}

// Hunspell reads a broken .dic without complaint and then accepts nothing, which would
// report every word as rejected; its first line must be the word count.
void checkWordFile(const fs::path& dic) {
  std::ifstream in(dic, std::ios::binary);
  std::string line;
  if (!in || !std::getline(in, line)) fail(dic, "cannot be read");
  if (line.starts_with("\xEF\xBB\xBF")) line.erase(0, 3);
  const std::size_t digits = line.find_first_not_of("0123456789");
  if (digits == 0 || line.empty()) fail(dic, "is broken: its first line is not the word count");
}

// Hunspell keeps its Unicode case table in a process-wide global, allocated by the first
// dictionary that loads and freed by the last that goes, with a plain counter: jobs on
// several threads loading or dropping dictionaries at once would free it under each other.
// Lookups only read the table, and it cannot go while a dictionary lives, so only loading
// and freeing (Unload, also when a constructor fails) take this lock.
std::mutex& hunspellLifetimeLock() {
  static std::mutex lock;
  return lock;
}

std::string toLatin1(const std::u16string& word, bool& representable) {
  std::string text;
  text.reserve(word.size());
  for (char16_t c : word) {
    if (c > 0xFF) {
      representable = false;
      return {};
    }
    text.push_back(static_cast<char>(c));
  }
  representable = true;
  return text;
}

}  // namespace

Speller::Speller(const fs::path& stem) {
  fs::path aff = stem;
  aff += ".aff";
  fs::path dic = stem;
  dic += ".dic";
  checkWordFile(dic);
  std::ifstream affIn(aff, std::ios::binary);
  if (!affIn) fail(aff, "cannot be read");
  {
    const std::lock_guard<std::mutex> guard(hunspellLifetimeLock());
    hunspell_.reset(new Hunspell(base::platform::hunspellFilePath(aff).c_str(),
                                 base::platform::hunspellFilePath(dic).c_str()));
  }
  const std::string encoding = base::toLowerAscii(hunspell_->get_dict_encoding());
  if (encoding == "iso8859-1" || encoding == "iso-8859-1") {
    latin1_ = true;
  } else if (encoding != "utf-8" && encoding != "utf8") {
    fail(aff, "uses the encoding " + hunspell_->get_dict_encoding() +
                  "; supported are UTF-8 and ISO8859-1");
  }
}

void Speller::Unload::operator()(Hunspell* hunspell) const {
  const std::lock_guard<std::mutex> guard(hunspellLifetimeLock());
  delete hunspell;
}

void Speller::addWords(const std::vector<std::u16string>& words) {
  for (const std::u16string& word : words) {
    bool representable = true;
    const std::string text = latin1_ ? toLatin1(word, representable) : base::utf16ToUtf8(word);
    if (representable) hunspell_->add(text);
  }
  verdicts_.clear();
}

bool Speller::accepts(const std::u16string& word) {
  const auto found = verdicts_.find(word);
  if (found != verdicts_.end()) return found->second;
  const bool verdict = lookup(word);
  verdicts_.emplace(word, verdict);
  return verdict;
}

bool Speller::lookup(const std::u16string& word) {
  if (!latin1_) return hunspell_->spell(base::utf16ToUtf8Lenient(word));
  bool representable = true;
  const std::string text = toLatin1(word, representable);
  return representable && hunspell_->spell(text);
}

}  // namespace qent::text::wordrecognizer
