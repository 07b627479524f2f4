// ConfusionCounter.h - which pieces of text a recognition reads as which other pieces, and
// how often: "m" read as "rn", "l" as "1".
#pragma once

#include "layout/comparison/report/CharacterAlignment.h"

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qent::text::layout::comparison::report {

struct Confusion {
  std::u16string truth;       // what the ground truth has (empty: the recognition added text)
  std::u16string recognised;  // what the recognition read (empty: it lost text)
  std::size_t count = 0;
};

// Counts the confusions of many aligned text pairs. A confusion is everything between two
// kept units: the alignment may split "m" -> "rn" into a substitution and an insertion in
// either order, but the piece between the kept neighbours is "m" -> "rn" either way.
// Pieces longer than kMaxConfusionLength on either side are left out: they are lost or
// garbled text, not a confusion a reader can learn anything from.
class ConfusionCounter {
public:
  static constexpr std::size_t kMaxConfusionLength = 4;

  void add(std::u16string_view truth, std::u16string_view recognised,
           const CharacterAlignment& alignment);
  // The `limit` most frequent, most frequent first; equal counts in code-unit order of the
  // truth, then the recognition, so the list never depends on the order of adding.
  std::vector<Confusion> mostFrequent(std::size_t limit) const;

private:
  std::map<std::pair<std::u16string, std::u16string>, std::size_t> counts_;
};

}  // namespace qent::text::layout::comparison::report
