// CharacterAlignment.cpp - the edit-distance alignment with its back trace.
#include "layout/comparison/report/CharacterAlignment.h"

#include "layout/comparison/EditDistance.h"

#include <algorithm>
#include <cstdint>

namespace qent::text::layout::comparison::report {

namespace {

// Appends one unit of an edit, joining it to the last run when that is of the same kind.
void push(std::vector<EditRun>& runs, EditKind kind, std::size_t truth, std::size_t truthLength,
          std::size_t recognised, std::size_t recognisedLength) {
  if (!runs.empty() && runs.back().kind == kind &&
      runs.back().truthStart + runs.back().truthLength == truth &&
      runs.back().recognisedStart + runs.back().recognisedLength == recognised) {
    runs.back().truthLength += truthLength;
    runs.back().recognisedLength += recognisedLength;
    return;
  }
  runs.push_back(EditRun{kind, truth, truthLength, recognised, recognisedLength});
}

enum Step : std::uint8_t { kDiagonal, kUp, kLeft };  // up: deletion, left: insertion

// The middle of the two texts (after prefix and suffix) aligned by the full table, appended
// to `runs` with offsets shifted by `offset`.
void alignMiddle(std::u16string_view a, std::u16string_view b, std::size_t offset,
                 std::vector<EditRun>& runs) {
  const std::size_t m = a.size(), n = b.size();
  // Steps are kept for the back trace; costs need only one row. Among paths of equal cost
  // the one keeping most units wins: "mxri" -> "rnxn" keeps the "x" ("m" -> "rn", "ri" ->
  // "n") instead of substituting all four, which would hide both confusions.
  struct Cost {
    std::size_t edits;
    std::size_t kept;
    bool operator<(const Cost& other) const {
      return edits != other.edits ? edits < other.edits : kept > other.kept;
    }
  };
  std::vector<std::uint8_t> steps((m + 1) * (n + 1));
  std::vector<Cost> row(n + 1);
  for (std::size_t j = 0; j <= n; ++j) {
    row[j] = Cost{j, 0};
    steps[j] = kLeft;
  }
  for (std::size_t i = 1; i <= m; ++i) {
    Cost diagonal = row[0];
    row[0] = Cost{i, 0};
    steps[i * (n + 1)] = kUp;
    for (std::size_t j = 1; j <= n; ++j) {
      const bool same = a[i - 1] == b[j - 1];
      const Cost viaDiagonal{diagonal.edits + (same ? 0 : 1), diagonal.kept + (same ? 1 : 0)};
      const Cost viaUp{row[j].edits + 1, row[j].kept};
      const Cost viaLeft{row[j - 1].edits + 1, row[j - 1].kept};
      diagonal = row[j];
      Cost best = viaDiagonal;
      std::uint8_t step = kDiagonal;
      if (viaUp < best) best = viaUp, step = kUp;
      if (viaLeft < best) best = viaLeft, step = kLeft;
      row[j] = best;
      steps[i * (n + 1) + j] = step;
    }
  }
  // The trace runs backwards; collect it, then append in text order.
  std::vector<EditRun> reversed;
  for (std::size_t i = m, j = n; i > 0 || j > 0;) {
    const std::uint8_t step = steps[i * (n + 1) + j];
    if (i > 0 && j > 0 && step == kDiagonal) {
      --i, --j;
      reversed.push_back(
          EditRun{a[i] == b[j] ? EditKind::Match : EditKind::Substitution, i, 1, j, 1});
    } else if (i > 0 && (j == 0 || step == kUp)) {
      --i;
      reversed.push_back(EditRun{EditKind::Deletion, i, 1, j, 0});
    } else {
      --j;
      reversed.push_back(EditRun{EditKind::Insertion, i, 0, j, 1});
    }
  }
  for (auto it = reversed.rbegin(); it != reversed.rend(); ++it) {
    push(runs, it->kind, it->truthStart + offset, it->truthLength, it->recognisedStart + offset,
         it->recognisedLength);
  }
}

}  // namespace

CharacterAlignment alignCharacters(std::u16string_view truth, std::u16string_view recognised) {
  CharacterAlignment result;
  std::size_t prefix = 0;
  const std::size_t shorter = std::min(truth.size(), recognised.size());
  while (prefix < shorter && truth[prefix] == recognised[prefix]) ++prefix;
  std::size_t suffix = 0;
  while (suffix < shorter - prefix &&
         truth[truth.size() - 1 - suffix] == recognised[recognised.size() - 1 - suffix]) {
    ++suffix;
  }
  const std::u16string_view a = truth.substr(prefix, truth.size() - prefix - suffix);
  const std::u16string_view b = recognised.substr(prefix, recognised.size() - prefix - suffix);
  if (prefix > 0) push(result.runs, EditKind::Match, 0, prefix, 0, prefix);
  const bool aligned = (a.size() + 1) * (b.size() + 1) <= kMaxAlignedCells;
  if (aligned) {
    alignMiddle(a, b, prefix, result.runs);
  } else {
    push(result.runs, EditKind::Deletion, prefix, a.size(), prefix, 0);
    push(result.runs, EditKind::Insertion, prefix + a.size(), 0, prefix, b.size());
  }
  if (suffix > 0) {
    push(result.runs, EditKind::Match, truth.size() - suffix, suffix, recognised.size() - suffix,
         suffix);
  }
  if (aligned) {
    for (const EditRun& run : result.runs) {
      if (run.kind != EditKind::Match)
        result.edits += std::max(run.truthLength, run.recognisedLength);
    }
  } else {
    result.edits = editDistance(a, b);
  }
  return result;
}

}  // namespace qent::text::layout::comparison::report
