// CharacterAlignment.h - how a recognised text differs from its ground truth, character by
// character: the edit-distance alignment as runs of kept, substituted, inserted and deleted
// UTF-16 code units.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace qent::text::layout::comparison::report {

enum class EditKind { Match, Substitution, Insertion, Deletion };

// A run of one kind of edit. `truth` and `recognised` are offsets and lengths into the two
// texts: a substitution has the same length on both sides, an insertion (a unit only the
// recognition has) none in the truth, a deletion none in the recognition.
struct EditRun {
  EditKind kind;
  std::size_t truthStart, truthLength;
  std::size_t recognisedStart, recognisedLength;
};

struct CharacterAlignment {
  std::vector<EditRun> runs;  // in text order, neighbouring runs of different kinds
  std::size_t edits = 0;      // the edit distance: units substituted, inserted or deleted
};

// One alignment of minimal cost with unit costs (the Levenshtein distance of the comparison),
// so `edits` always equals the comparison's edit distance. Among alignments of equal cost
// one that keeps the most units is chosen (so differences stay local), and among those the
// back trace, from the ends of the texts, prefers a substitution, then a deletion, so the
// same pair of texts is always shown the same way.
//
// The common prefix and suffix are matched first; what remains is aligned by the full
// dynamic programme, one byte per cell. Above kMaxAlignedCells cells (texts of several
// thousand differing units each: a page without lines, say) no alignment is stored: the
// remainder is reported as one deletion followed by one insertion, while `edits` still
// holds the exact distance.
inline constexpr std::size_t kMaxAlignedCells = std::size_t{1} << 24;
CharacterAlignment alignCharacters(std::u16string_view truth, std::u16string_view recognised);

}  // namespace qent::text::layout::comparison::report
