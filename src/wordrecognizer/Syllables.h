// Syllables.h - German syllable counting by rule lists, with a cache per distinct word.
//
// The walk runs over the word's lower-cased Latin-1 form (characters beyond Latin-1 are
// neither vowel nor consonant). Each vowel nucleus (one vowel, or two that form one sound:
// a listed vowel group or a doubled vowel) opens a syllable; between two nuclei the
// consonant groups decide where the split falls. A split is recorded as the position of
// the last character before it and kept only when it lies before the last two characters,
// so a final syllable never has fewer than two characters ("Idee" has two, not three). The
// count is the number of kept splits plus one.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

namespace qent::text::wordrecognizer {

// The split positions of a word (ascending, already limited as described above).
std::vector<std::size_t> syllableSplits(const std::u16string& word);

class SyllableCounter {
public:
  std::uint32_t count(const std::u16string& word);

private:
  std::unordered_map<std::u16string, std::uint32_t> cache_;
};

}  // namespace qent::text::wordrecognizer
