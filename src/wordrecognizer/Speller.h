// Speller.h - one Hunspell dictionary with a cache of its verdicts.
//
// A Hunspell lookup costs microseconds and OCR text repeats its words, so every distinct
// form is checked once per speller; a speller lives for one execution.
#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

class Hunspell;

namespace qent::text::wordrecognizer {

class Speller {
public:
  // Loads `stem`.aff and `stem`.dic. A .dic whose first line is not its word count, or a
  // dictionary encoding the speller cannot convert to, is a QentException naming the file.
  explicit Speller(const std::filesystem::path& stem);
  Speller(const Speller&) = delete;
  Speller& operator=(const Speller&) = delete;

  // Adds words that the dictionary should accept (a user's own word list).
  void addWords(const std::vector<std::u16string>& words);
  bool accepts(const std::u16string& word);

private:
  // Frees a dictionary under the lock that its loading took (Speller.cpp says why).
  struct Unload {
    void operator()(Hunspell* hunspell) const;
  };

  bool lookup(const std::u16string& word);

  std::unique_ptr<Hunspell, Unload> hunspell_;
  bool latin1_ = false;  // the dictionary's encoding: ISO8859-1, else UTF-8
  std::unordered_map<std::u16string, bool> verdicts_;
};

}  // namespace qent::text::wordrecognizer
